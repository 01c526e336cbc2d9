#include <quillon/memory/JsonText.h>
#include <quillon/memory/Utf8.h>

namespace quillon::memory {
namespace {

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
  constexpr std::string_view DIGITS = "0123456789abcdef";
  return {'\\', 'u', '0', '0', DIGITS[byte >> 4U], DIGITS[byte & 0xFU]};
}

}  // namespace

std::string jsonText(std::string_view text) {
  std::string result = "\"";
  while (!text.empty()) {
    const std::size_t length = firstCharacter(text).length;
    if (length == 0) {
      result += "\\ufffd";
      text.remove_prefix(1);
      continue;
    }
    result += length == 1 ? escapeInJson(text[0]) : std::string(text.substr(0, length));
    text.remove_prefix(length);
  }
  return result + '"';
}

}  // namespace quillon::memory
