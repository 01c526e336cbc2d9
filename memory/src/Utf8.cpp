#include <quillon/memory/Utf8.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "CharacterWidths.h"
#include "Text.h"

namespace quillon::memory {
namespace {

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

/// Sorted, as isIn() needs them.
constexpr PointRange INVISIBLE[] = {
    {0x80, 0x9F},     {0xAD, 0xAD},     {0x61C, 0x61C},   {0x180E, 0x180E}, {0x200B, 0x200F},
    {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};

bool isSurrogate(char32_t point) { return point >= 0xD800 && point < 0xE000; }

template <std::size_t N>
bool isIn(const PointRange (&ranges)[N], char32_t point) {
  const auto* const range =
      std::lower_bound(std::begin(ranges), std::end(ranges), point,
                       [](const PointRange& some, char32_t wanted) { return some.last < wanted; });
  return range != std::end(ranges) && range->first <= point;
}

}  // namespace

Character firstCharacter(std::string_view text) {
  if (text.empty()) {
    return {};
  }
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
  const bool valid = point >= form->first && point <= form->last && !isSurrogate(point);
  return valid ? Character{form->length, point} : Character();
}

std::size_t utf8Length(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size()) {
    const std::size_t next =
        byteAt(text, length) < 0x80 ? 1 : firstCharacter(text.substr(length)).length;
    if (next == 0) {
      break;
    }
    length += next;
  }
  return length;
}

int widthOf(char32_t point) {
  if (point < 0x300) {
    return 1;
  }
  if (isIn(ZERO_WIDTH, point)) {
    return 0;
  }
  return isIn(DOUBLE_WIDTH, point) ? 2 : 1;
}

bool isInvisible(char32_t point) { return isIn(INVISIBLE, point); }

}  // namespace quillon::memory
