#include <quillon/memory/Utf8.h>
#include <quillon/memory/Wording.h>

#include <algorithm>

#include "Text.h"

namespace quillon::memory {

namespace {

constexpr std::size_t LONGEST_LIST = 40;

constexpr std::string_view DIGITS = "0123456789abcdef";

/// A backslash is escaped as well, so that no text can look like the escape of another.
std::string escapeOf(unsigned char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    case '\\':
      return "\\\\";
    default:
      return {'\\', 'x', DIGITS[byte >> 4U], DIGITS[byte & 0xFU]};
  }
}

/// "\u202e", or "\U000e0001" behind U+FFFF.
std::string escapeOf(char32_t point) {
  const unsigned digits = point > 0xFFFF ? 8 : 4;
  std::string text = digits == 8 ? "\\U" : "\\u";
  for (unsigned k = digits; k > 0; --k) {
    text += DIGITS[(point >> (4 * (k - 1))) & 0xFU];
  }
  return text;
}

/// Whether a byte is a character that takes one column, and stands for itself but for a backslash.
bool isPlain(char byte) { return byte >= ' ' && byte <= '~'; }

/// What stands for the character that `text` starts with; the bytes of none are escaped one by one.
std::string shown(const Character& character, std::string_view text, bool withBackslashes) {
  const bool isControl = character.point < 0x20 || character.point == 0x7F;
  if (character.length == 0 || isControl || (withBackslashes && character.point == '\\')) {
    return escapeOf(byteAt(text, 0));
  }
  return isInvisible(character.point) ? escapeOf(character.point)
                                      : std::string(text.substr(0, character.length));
}

std::string shown(std::string_view text, bool withBackslashes) {
  // Nearly all texts are such, and tables have many.
  if (std::all_of(text.begin(), text.end(), [withBackslashes](char byte) {
        return isPlain(byte) && !(withBackslashes && byte == '\\');
      })) {
    return std::string(text);
  }
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    result += shown(character, text, withBackslashes);
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return result;
}

}  // namespace

std::string escaped(std::string_view text) { return shown(text, true); }

std::string disarmed(std::string_view sentence) { return shown(sentence, false); }

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
  if (std::all_of(text.begin(), text.end(), isPlain)) {
    return text.size();
  }
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    // A byte that is part of no character takes one place.
    width += static_cast<std::size_t>(widthOf(character.point));
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return width;
}

}  // namespace quillon::memory
