#include <quillon/memory/JsonText.h>
#include <quillon/memory/Utf8.h>

namespace quillon::memory {
namespace {

/// A unit of UTF-16, of which JSON's escapes are made.
std::string unitInJson(char32_t unit) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  return {'\\',
          'u',
          DIGITS[(unit >> 12U) & 0xFU],
          DIGITS[(unit >> 8U) & 0xFU],
          DIGITS[(unit >> 4U) & 0xFU],
          DIGITS[unit & 0xFU]};
}

/// A character of one byte as it stands in a JSON string.
std::string escapeInJson(char character) {
  switch (character) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  const auto byte = static_cast<unsigned char>(character);
  if (byte >= 0x20 && byte != 0x7F) {
    return {character};
  }
  return unitInJson(byte);
}

/// A character that nobody would see, which readers get back as it is.
std::string escapeInJson(char32_t point) {
  if (point <= 0xFFFF) {
    return unitInJson(point);
  }
  const char32_t rest = point - 0x10000;
  return unitInJson(0xD800 + (rest >> 10U)) + unitInJson(0xDC00 + (rest & 0x3FFU));
}

}  // namespace

std::string jsonText(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    const std::size_t length = character.length;
    result += length == 0                    ? "\\ufffd"
              : length == 1                  ? escapeInJson(text[0])
              : isInvisible(character.point) ? escapeInJson(character.point)
                                             : std::string(text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result + '"';
}

}  // namespace quillon::memory
