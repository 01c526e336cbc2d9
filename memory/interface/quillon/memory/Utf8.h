/// @file
/// The characters of UTF-8 text.
///
/// Threads: any function may run concurrently.
#pragma once

#include <cstddef>
#include <string_view>

namespace quillon::memory {

/// What a text starts with.
struct Character {
  std::size_t length = 0;  ///< in bytes; 0 where the text starts with no UTF-8 character
  char32_t point = 0;      ///< its code point
};

/// The character that `text` starts with. Overlong forms, surrogates and points behind U+10FFFF are
/// none; an empty text has none.
[[nodiscard]] Character firstCharacter(std::string_view text);

/// U+FFFD, which stands for a byte that is not part of a character.
inline constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";

/// How many bytes of `text`, from the first on, are characters of UTF-8. A byte that is not part of
/// one follows, unless the text ends there.
[[nodiscard]] std::size_t utf8Length(std::string_view text);

/// How many places of a terminal a character takes: 2 for wide ones, such as those of Chinese and
/// Japanese, 0 for those that go on top of the one before and for those that show nothing, else 1.
/// No locale plays a part.
[[nodiscard]] int widthOf(char32_t point);

/// Whether a character beyond ASCII shows nothing of its own but may change how the text around it
/// looks: the controls of U+0080 to U+009F, those of the writing direction, joiners and spaces of
/// no width, line separators and tags. Variation selectors and what combines are none of these.
[[nodiscard]] bool isInvisible(char32_t point);

}  // namespace quillon::memory
