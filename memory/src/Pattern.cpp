#include <quillon/memory/Pattern.h>
#include <quillon/memory/Utf8.h>

#include <algorithm>
#include <utility>

namespace quillon::memory {
namespace {

/// The bytes of the character that `text` starts with, which is not empty.
std::string_view characterAtStart(std::string_view text) {
  return text.substr(0, std::max<std::size_t>(firstCharacter(text).length, 1));
}

/// The next character of a bracket's content, a backslash before it taken off.
std::string_view takeListed(std::string_view& content) {
  if (content[0] == '\\') {
    content.remove_prefix(1);  // not the last: bracketEnd() leaves in the bracket what it quotes
  }
  const std::string_view character = characterAtStart(content);
  content.remove_prefix(character.size());
  return character;
}

/// Where the bracket that `pattern` starts with is closed; npos where it is not. A `]` that comes
/// first is one of its characters.
std::size_t bracketEnd(std::string_view pattern) {
  std::size_t k = 1;
  if (k < pattern.size() && (pattern[k] == '!' || pattern[k] == '^')) {
    ++k;
  }
  for (bool isFirst = true; k < pattern.size(); ++k, isFirst = false) {
    if (pattern[k] == ']' && !isFirst) {
      return k;
    }
    if (pattern[k] == '\\') {
      ++k;
    }
  }
  return std::string_view::npos;
}

/// Whether a bracket's content, such as `!a-z`, stands for the character. Bytes of UTF-8 compare
/// like the characters that they stand for.
bool isListed(std::string_view content, std::string_view character) {
  const bool isNegated = content[0] == '!' || content[0] == '^';
  content.remove_prefix(isNegated ? 1 : 0);
  bool found = false;
  while (!content.empty()) {
    const std::string_view first = takeListed(content);
    std::string_view last = first;
    if (content.size() > 1 && content[0] == '-') {
      content.remove_prefix(1);
      last = takeListed(content);
    }
    found = found || (first <= character && character <= last);
  }
  return found != isNegated;
}

/// What one step of a pattern, other than `*`, takes: so much of the pattern, so much of the text.
struct Step {
  std::size_t pattern = 0;
  std::size_t text = 0;  ///< 0 where the text does not match
};

Step stepFor(std::string_view pattern, std::string_view text, Slash slash) {
  const std::string_view character = characterAtStart(text);
  const std::size_t taken = character == "/" && slash == Slash::Stops ? 0 : character.size();
  if (pattern[0] == '?') {
    return {1, taken};
  }
  if (pattern[0] == '[') {
    const std::size_t end = bracketEnd(pattern);
    if (end != std::string_view::npos) {
      return {end + 1, isListed(pattern.substr(1, end - 1), character) ? taken : 0};
    }
  }
  const std::size_t quote = pattern[0] == '\\' && pattern.size() > 1 ? 1 : 0;
  return {quote + 1, pattern[quote] == text[0] ? std::size_t{1} : 0};
}

/// Matches greedily; where that fails, the last `*` takes one character more.
bool matchesWhole(std::string_view pattern, std::string_view text, Slash slash) {
  std::string_view afterStar;
  std::string_view leftToStar;  // empty before the first star
  while (!text.empty() || !pattern.empty()) {
    if (!pattern.empty() && pattern[0] == '*') {
      pattern.remove_prefix(1);
      afterStar = pattern;
      leftToStar = text;
      continue;
    }
    const Step step = pattern.empty() || text.empty() ? Step() : stepFor(pattern, text, slash);
    if (step.text > 0) {
      pattern.remove_prefix(step.pattern);
      text.remove_prefix(step.text);
    } else if (!leftToStar.empty() && (slash == Slash::Passes || leftToStar[0] != '/')) {
      leftToStar.remove_prefix(characterAtStart(leftToStar).size());
      pattern = afterStar;
      text = leftToStar;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

Pattern::Pattern(std::string text, Slash slash) : m_text(std::move(text)), m_slash(slash) {}

bool Pattern::hasWildcards() const { return m_text.find_first_of("*?[\\") != std::string::npos; }

bool Pattern::matches(std::string_view name) const {
  return name == m_text || matchesWhole(m_text, name, m_slash);
}

std::vector<std::size_t> Pattern::find(const std::vector<std::string>& names) const {
  std::vector<std::size_t> exact;
  std::vector<std::size_t> matching;
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (names[k] == m_text) {
      exact.push_back(k);
    } else if (matches(names[k])) {
      matching.push_back(k);
    }
  }
  return exact.empty() ? matching : exact;
}

}  // namespace quillon::memory
