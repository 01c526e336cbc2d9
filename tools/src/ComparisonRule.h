#pragma once

#include <object_model/ComparisonHelper.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <type_traits>

namespace quillon::tools {

/// When two values count as the same: the mode and tolerance of the library's comparison.
struct ComparisonRule {
  object_model::helper::ComparisonType type = object_model::helper::ComparisonType::Exact;
  double tolerance = 0.0;
};

/// Why a value passed although the magnitude of its delta exceeds the tolerance.
enum class Loophole { None, NegativeReference, SmallReference, RoundedIntegers };

/// The size up to which the library's relative delta does not divide by a value.
inline constexpr double SMALLEST_REFERENCE = 1e-9;

template <class Value>
inline constexpr bool IS_COMPLEX = std::is_same_v<Value, std::complex<double>>;

/// Whether values of the type are compared under a tolerance.
template <class Value>
inline constexpr bool IS_NUMBER =
    (std::is_arithmetic_v<Value> && !std::is_same_v<Value, bool>) || IS_COMPLEX<Value>;

/// What the library calculates with: it takes deltas of integers as floating-point numbers.
template <class Number>
auto asReal(const Number& number) {
  if constexpr (IS_COMPLEX<Number>) {
    return number;
  } else {
    return static_cast<double>(number);
  }
}

template <class Number>
bool isNaN(const Number& number) {
  if constexpr (IS_COMPLEX<Number>) {
    return std::isnan(number.real()) || std::isnan(number.imag());
  } else {
    return std::isnan(asReal(number));
  }
}

/// |a - b|, exact for integers.
template <class Number>
auto distanceOf(const Number& a, const Number& b) {
  if constexpr (std::is_integral_v<Number>) {
    const Number high = std::max(a, b);
    const Number low = std::min(a, b);
    if constexpr (std::is_signed_v<Number>) {
      if (low < 0 && high >= 0) {  // their difference may be too large for a signed number
        return static_cast<unsigned long>(high) + static_cast<unsigned long>(-(low + 1)) + 1;
      }
    }
    return static_cast<unsigned long>(high - low);
  } else {
    return std::abs(a - b);
  }
}

/// The number that the library's relative delta is divided by, with its sign; 1 for none.
template <class Number>
double referenceOf(const Number& a, const Number& b) {
  for (const auto& number : {asReal(b), asReal(a)}) {
    if (std::abs(number) > SMALLEST_REFERENCE) {
      if constexpr (IS_COMPLEX<Number>) {
        return std::abs(number);
      } else {
        return number;
      }
    }
  }
  return 1.0;
}

/// The delta that the library holds against the tolerance.
template <class Number>
double deltaUnder(const ComparisonRule& rule, const Number& a, const Number& b) {
  const double distance = std::abs(asReal(a) - asReal(b));
  return rule.type == object_model::helper::ComparisonType::Relative ? distance / referenceOf(a, b)
                                                                     : distance;
}

/// Whether the library's comparison takes the values for the same.
template <class Value>
bool areSame(const ComparisonRule& rule, const Value& a, const Value& b) {
  if constexpr (IS_NUMBER<Value>) {
    // A delta of NaN is no match: it must not be turned round into "<".
    return a == b || (rule.type != object_model::helper::ComparisonType::Exact &&
                      rule.tolerance >= deltaUnder(rule, a, b));
  } else {
    return a == b;
  }
}

/// The delta as a reader expects it: without signs, relative to b however small, or to a where b is
/// 0.
template <class Number>
double plainDelta(const ComparisonRule& rule, const Number& a, const Number& b) {
  const auto distance = static_cast<double>(distanceOf(a, b));
  if (rule.type != object_model::helper::ComparisonType::Relative) {
    return distance;
  }
  return distance / std::abs(asReal(b == Number() ? a : b));
}

/// Why the library takes two numbers for the same that a reader would call different.
template <class Number>
Loophole loopholeOf(const ComparisonRule& rule, const Number& a, const Number& b) {
  const bool isMissed = a != b && areSame(rule, a, b) && plainDelta(rule, a, b) > rule.tolerance;
  if (!isMissed) {
    return Loophole::None;
  }
  if (rule.type != object_model::helper::ComparisonType::Relative) {
    return Loophole::RoundedIntegers;
  }
  if (std::abs(asReal(b)) <= SMALLEST_REFERENCE) {
    return Loophole::SmallReference;
  }
  return referenceOf(a, b) < 0 ? Loophole::NegativeReference : Loophole::RoundedIntegers;
}

/// Calls `use` with a test of two values that says yes only where they are the same under the rule,
/// or both NaN, through no loophole; it may say no for such. It has no branches, so that a compiler
/// can make it look at several pairs at a time.
template <class Stored, class Use>
void withPlainRule(const ComparisonRule& rule, const Use& use) {
  using object_model::helper::ComparisonType;
  if constexpr (std::is_integral_v<Stored>) {
    use([](Stored a, Stored b) { return a == b; });
  } else {
    const double tolerance = rule.tolerance;
    const auto isEqual = [](Stored a, Stored b) {
      return (a == b) | (int{isNaN(a)} & int{isNaN(b)});
    };
    const auto distance = [](Stored a, Stored b) { return std::abs(asReal(a) - asReal(b)); };
    if (rule.type == ComparisonType::Absolute) {
      use([=](Stored a, Stored b) { return isEqual(a, b) | (distance(a, b) <= tolerance); });
    } else if (rule.type == ComparisonType::Relative) {
      use([=](Stored a, Stored b) {
        const double reference = std::abs(asReal(b));
        return isEqual(a, b) |
               ((reference > SMALLEST_REFERENCE) & (distance(a, b) / reference <= tolerance));
      });
    } else {
      use(isEqual);
    }
  }
}

}  // namespace quillon::tools
