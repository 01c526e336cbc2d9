#include "ValueText.h"

#include <quillon/memory/Wording.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace quillon::tools {

using memory::inQuotes;

namespace {

constexpr int FEWEST_DIGITS = 6;
constexpr int MOST_DIGITS = std::numeric_limits<double>::max_digits10;
constexpr std::size_t LONGEST_TEXT = 40;
constexpr std::size_t SHARED_TEXT = 10;

/// Both values in the fewest digits in which their texts differ.
template <class Write>
TextPair inFewestDigits(const Write& write) {
  TextPair texts;
  for (int digits = FEWEST_DIGITS; digits <= MOST_DIGITS && texts.first == texts.second; ++digits) {
    texts = write(digits);
  }
  return texts;
}

std::string complexInDigits(const std::complex<double>& number, int digits) {
  return "(" + inDigits(number.real(), digits) + ";" + inDigits(number.imag(), digits) + ")";
}

/// The last start of a UTF-8 character that is not behind `position`.
std::size_t characterStart(const std::string& text, std::size_t position) {
  while (position > 0 && position < text.size() &&
         (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80U) {
    --position;
  }
  return std::min(position, text.size());
}

std::string excerpt(const std::string& text, std::size_t start) {
  const std::size_t first = characterStart(text, start);
  const std::size_t last = characterStart(text, std::min(text.size(), first + LONGEST_TEXT));
  return (first == 0 ? "" : "...") + inQuotes(text.substr(first, last - first)) +
         (last == text.size() ? "" : "...");
}

}  // namespace

std::string inDigits(double number, int digits) {
  std::array<char, 64> text = {};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), number,
                                     std::chars_format::general, digits);
  return {text.data(), written.ptr};
}

TextPair toldApart(double a, double b) {
  return inFewestDigits(
      [&](int digits) { return TextPair(inDigits(a, digits), inDigits(b, digits)); });
}

TextPair toldApart(const std::complex<double>& a, const std::complex<double>& b) {
  return inFewestDigits(
      [&](int digits) { return TextPair(complexInDigits(a, digits), complexInDigits(b, digits)); });
}

TextPair toldApart(unsigned long a, unsigned long b) {
  return {std::to_string(a), std::to_string(b)};
}

TextPair toldApart(long a, long b) { return {std::to_string(a), std::to_string(b)}; }

TextPair toldApart(bool a, bool b) { return {a ? "true" : "false", b ? "true" : "false"}; }

TextPair toldApart(const std::string& a, const std::string& b) {
  const auto shared = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  const bool isShort = std::max(a.size(), b.size()) <= LONGEST_TEXT;
  const std::size_t start = isShort || shared < 2 * SHARED_TEXT ? 0 : shared - SHARED_TEXT;
  return {excerpt(a, start), excerpt(b, start)};
}

}  // namespace quillon::tools
