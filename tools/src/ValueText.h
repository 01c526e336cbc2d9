#pragma once

#include <complex>
#include <string>
#include <utility>

namespace quillon::tools {

/// Two values as text.
using TextPair = std::pair<std::string, std::string>;

/// A number in so many significant digits.
std::string inDigits(double number, int digits);

/// Both numbers in the fewest significant digits that tell them apart, but at least 6.
TextPair toldApart(double a, double b);
TextPair toldApart(const std::complex<double>& a, const std::complex<double>& b);
/// Whole numbers in full.
TextPair toldApart(unsigned long a, unsigned long b);
TextPair toldApart(long a, long b);
TextPair toldApart(bool a, bool b);
/// Texts escaped and in quotes, cut to a few characters from where they differ.
TextPair toldApart(const std::string& a, const std::string& b);

}  // namespace quillon::tools
