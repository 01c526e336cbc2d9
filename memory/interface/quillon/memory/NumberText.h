/// @file
/// Numbers as text, alike wherever a number is shown or written.
///
/// NaN is `nan` whatever its sign, infinities are `inf` and `-inf`, truth values `true` and
/// `false`, complex numbers `(RE;IM)`. The locale plays no part.
///
/// Threads: any function may run concurrently.
#pragma once

#include <quillon/memory/ElementTypes.h>

#include <string>

namespace quillon::memory {

/// Room for any number that the functions below write.
inline constexpr unsigned long LONGEST_NUMBER = 64;

/// How many significant digits numbers that people look at are shown with.
inline constexpr int SHOWN_DIGITS = 6;

/// Writes the shortest text that reads back as `value` in its own type: 0.1 is `0.1`, as a float as
/// well as as a double. `T` is one of the stored types, see `StoredTraits`.
/// @param value the number or truth value.
/// @param to room for LONGEST_NUMBER characters.
/// @return the end of what was written; no zero follows it.
template <class T>
[[nodiscard]] char* writeShortest(T value, char* to);

/// Writes `value` with at most `digits` significant digits, as printf's "%g" does: without zeros at
/// the end of a fraction, and with an exponent where the number is very large or very small. `T`
/// is `float`, `double` or a complex of either.
/// @param value the number.
/// @param digits from 1 to 17; others are taken for the nearest of these.
/// @param to room for LONGEST_NUMBER characters.
/// @return the end of what was written; no zero follows it.
template <class T>
[[nodiscard]] char* writeInDigits(T value, int digits, char* to);

/// The shortest text that reads back as `value`, see writeShortest().
template <class T>
[[nodiscard]] std::string shortestText(T value) {
  char text[LONGEST_NUMBER];
  return {text, writeShortest(value, text)};
}

/// `value` with at most `digits` significant digits, see writeInDigits().
template <class T>
[[nodiscard]] std::string textInDigits(T value, int digits) {
  char text[LONGEST_NUMBER];
  return {text, writeInDigits(value, digits, text)};
}

}  // namespace quillon::memory
