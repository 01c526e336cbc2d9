#pragma once

#include <object_model/ComparisonHelper.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ObjectModel/ComparisonHelper/Samples.h"

namespace quillon::test {

/// Values of each type at which comparisons tend to go wrong, the simplest first.
template <class T>
const std::vector<T>& palette();
template <>
inline const std::vector<unsigned long>& palette() {
  static const std::vector<unsigned long> VALUES = {
      0, 1, 2, 10, 11, 9007199254740992, 9007199254740993, 18446744073709551615UL};
  return VALUES;
}
template <>
inline const std::vector<long>& palette() {
  static const std::vector<long> VALUES = {0,
                                           1,
                                           -1,
                                           10,
                                           11,
                                           -11,
                                           9007199254740993,
                                           std::numeric_limits<long>::max(),
                                           std::numeric_limits<long>::min()};
  return VALUES;
}
template <>
inline const std::vector<double>& palette() {
  static const std::vector<double> VALUES = {
      0,     1,     -1,     1.05,  1.5,      -0.0,      1e-9,         std::nextafter(1e-9, 1),
      -2e-9, 1e-12, 5e-324, 1e300, INFINITE, -INFINITE, NOT_A_NUMBER, -NOT_A_NUMBER};
  return VALUES;
}
template <>
inline const std::vector<std::string>& palette() {
  static const std::vector<std::string> VALUES = {
      "", "a", "b", "ab", std::string("a\0b", 3), std::string(40, 'x')};
  return VALUES;
}

/// The modes that there are, then some that there are not.
inline const std::vector<ComparisonType> MODES = {
    ComparisonType::Exact,          ComparisonType::Absolute,
    ComparisonType::Relative,       static_cast<ComparisonType>(3),
    static_cast<ComparisonType>(7), static_cast<ComparisonType>(-1)};

inline const std::vector<double> TOLERANCES = {0,    0.05, 0.1,      0.5,         1,
                                               1e-9, -1,   INFINITE, NOT_A_NUMBER};

}  // namespace quillon::test
