/// @file
/// One value of an array, or what else there is to be said of one side.
#pragma once

#include <complex>
#include <string>
#include <variant>

namespace quillon::compare {

/// A value as it is stored (integers widened), a text, or nothing. A float stays one, so that it
/// prints as one.
using Value = std::variant<std::monostate, std::string, bool, long, unsigned long, float, double,
                           std::complex<float>, std::complex<double>>;

/// The value in plain text: the shortest number that reads back, `nan`, `inf`, `true`, `(RE;IM)`;
/// a text in single quotes, without anything that a terminal would obey; "none" for nothing.
[[nodiscard]] std::string textOf(const Value& value);

/// The value as JSON: null for nothing; NaN, infinities and complex numbers are strings.
[[nodiscard]] std::string jsonOf(const Value& value);

}  // namespace quillon::compare
