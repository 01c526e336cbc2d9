#include <quillon/memory/Utf8.h>
#include <quillon/memory/Wording.h>

#include <algorithm>

namespace quillon::memory {

namespace {

constexpr std::size_t LONGEST_LIST = 40;

unsigned char byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// The length of the printable character that `text` starts with, or 0 when it starts with none.
std::size_t printableLength(std::string_view text) {
  const Character character = firstCharacter(text);
  const bool isControl =
      character.point < 0x20 || (character.point >= 0x7F && character.point < 0xA0);
  return isControl ? 0 : character.length;
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
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    width += character.length == 0 ? 1 : static_cast<std::size_t>(widthOf(character.point));
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return width;
}

}  // namespace quillon::memory
