#include <quillon/memory/Wording.h>

#include <algorithm>
#include <array>

namespace quillon::memory {

namespace {

constexpr std::size_t LONGEST_LIST = 40;

unsigned char byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

bool isContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

/// A form of UTF-8 sequence: its lead byte under a mask, and the code points that need this length.
struct Form {
  std::size_t length;
  unsigned char leadMask;
  unsigned char lead;
  char32_t first;
  char32_t last;
};

constexpr std::array<Form, 4> FORMS = {{{1, 0x80, 0x00, 0x0, 0x7F},
                                        {2, 0xE0, 0xC0, 0x80, 0x7FF},
                                        {3, 0xF0, 0xE0, 0x800, 0xFFFF},
                                        {4, 0xF8, 0xF0, 0x10000, 0x10FFFF}}};

bool isControl(char32_t point) { return point < 0x20 || (point >= 0x7F && point < 0xA0); }

bool isSurrogate(char32_t point) { return point >= 0xD800 && point < 0xE000; }

/// The character that a text starts with: so many bytes, or 0 where they are no UTF-8.
struct Character {
  std::size_t length = 0;
  char32_t point = 0;
};

Character characterAtStart(std::string_view text) {
  const unsigned char lead = byteAt(text, 0);
  const auto* form = std::find_if(FORMS.begin(), FORMS.end(), [lead](const Form& candidate) {
    return (lead & candidate.leadMask) == candidate.lead;
  });
  if (form == FORMS.end() || text.size() < form->length) {
    return {};
  }
  char32_t point = lead & ~static_cast<unsigned int>(form->leadMask);
  for (std::size_t i = 1; i < form->length; ++i) {
    if (!isContinuation(byteAt(text, i))) {
      return {};
    }
    point = (point << 6U) | (byteAt(text, i) & 0x3FU);
  }
  const bool isValid = point >= form->first && point <= form->last && !isSurrogate(point);
  return isValid ? Character{form->length, point} : Character();
}

/// The length of the printable character that `text` starts with, or 0 when it starts with none.
std::size_t printableLength(std::string_view text) {
  const Character character = characterAtStart(text);
  return isControl(character.point) ? 0 : character.length;
}

std::string escapeOf(unsigned char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      constexpr std::string_view DIGITS = "0123456789abcdef";
      return {'\\', 'x', DIGITS[byte >> 4U], DIGITS[byte & 0xFU]};
  }
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = printableLength(text);
    if (length == 0) {
      result += escapeOf(byteAt(text, 0));
    } else {
      result += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

std::size_t utf8Length(std::string_view text) {
  return text.empty() ? 0 : characterAtStart(text).length;
}

std::string inQuotes(std::string_view text) { return "'" + escaped(text) + "'"; }

std::string listed(const std::vector<std::string>& names) {
  std::string result;
  const std::size_t shown = std::min(names.size(), LONGEST_LIST);
  for (std::size_t i = 0; i < shown; ++i) {
    result += (i == 0 ? "" : ", ") + escaped(names[i]);
  }
  if (shown < names.size()) {
    result += " and " + std::to_string(names.size() - shown) + " more";
  }
  return result;
}

std::string counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::size_t displayWidth(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
    return !isContinuation(static_cast<unsigned char>(character));
  }));
}

}  // namespace quillon::memory
