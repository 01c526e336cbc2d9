#include <quillon/memory/NumberText.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace quillon::memory {
namespace {

template <class T>
struct IsComplex : std::false_type {};
template <class T>
struct IsComplex<std::complex<T>> : std::true_type {};

char* write(std::string_view text, char* to) { return std::copy(text.begin(), text.end(), to); }

/// Writes a number that is not NaN, whose sign no reader wants to see, by `convert`.
template <class T, class Convert>
char* writeNumber(T value, char* to, const Convert& convert) {
  return std::isnan(value) ? write("nan", to) : convert(value, to);
}

template <class T, class Convert>
char* writeParts(const std::complex<T>& value, char* to, const Convert& convert) {
  *to++ = '(';
  to = writeNumber(value.real(), to, convert);
  *to++ = ';';
  to = writeNumber(value.imag(), to, convert);
  *to++ = ')';
  return to;
}

template <class T, class Convert>
char* writeReal(const T& value, char* to, const Convert& convert) {
  if constexpr (IsComplex<T>::value) {
    return writeParts(value, to, convert);
  } else {
    return writeNumber(value, to, convert);
  }
}

}  // namespace

template <class T>
char* writeShortest(T value, char* to) {
  if constexpr (std::is_same_v<T, bool>) {
    return write(value ? "true" : "false", to);
  } else if constexpr (std::is_integral_v<T>) {
    return std::to_chars(to, to + LONGEST_NUMBER, value).ptr;
  } else {
    return writeReal(value, to, [](auto part, char* end) {
      return std::to_chars(end, end + LONGEST_NUMBER / 2, part).ptr;
    });
  }
}

template <class T>
char* writeInDigits(T value, int digits, char* to) {
  const int shown = std::clamp(digits, 1, std::numeric_limits<double>::max_digits10);
  return writeReal(value, to, [shown](auto part, char* end) {
    return std::to_chars(end, end + LONGEST_NUMBER / 2, part, std::chars_format::general, shown)
        .ptr;
  });
}

template char* writeShortest(signed char value, char* to);
template char* writeShortest(short value, char* to);
template char* writeShortest(int value, char* to);
template char* writeShortest(long value, char* to);
template char* writeShortest(unsigned char value, char* to);
template char* writeShortest(unsigned short value, char* to);
template char* writeShortest(unsigned int value, char* to);
template char* writeShortest(unsigned long value, char* to);
template char* writeShortest(float value, char* to);
template char* writeShortest(double value, char* to);
template char* writeShortest(std::complex<float> value, char* to);
template char* writeShortest(std::complex<double> value, char* to);
template char* writeShortest(bool value, char* to);

template char* writeInDigits(float value, int digits, char* to);
template char* writeInDigits(double value, int digits, char* to);
template char* writeInDigits(std::complex<float> value, int digits, char* to);
template char* writeInDigits(std::complex<double> value, int digits, char* to);

}  // namespace quillon::memory
