#pragma once

#include <object_model/ComparisonHelper.h>

#include <cmath>
#include <complex>
#include <string>

#include "ComparisonHelper/Report.h"

namespace object_model::helper {

/// What two numbers are compared under. `type` may be outside its enumeration.
struct Criterion {
  ComparisonType type;
  double tolerance;
};

/// Throws the `InvalidCall` of one of the comparison's throw sites, each known by its line.
[[noreturn]] void throwInvalidComparison(int line);

/// The comparison under `ComparisonType::Exact`, and of elements that are no numbers.
struct ExactRule {
  template <class Element, class Value>
  bool same(const Value& a, const Value& b) const {
    return a == b;
  }
  /// What the sentence for a difference goes on with.
  static std::string remark() { return {}; }
};

/// The comparison under `ComparisonType::Absolute`.
struct AbsoluteRule {
  double tolerance;

  template <class Element, class Value>
  bool same(const Value& a, const Value& b) const {
    // A delta of NaN fails the second test: it must not be turned round into "<".
    return a == b || tolerance >= std::abs(Element::number(a) - Element::number(b));
  }
  std::string remark() const {
    return sentenceOf(" The absolute delta is greater than ", tolerance);
  }
};

/// The signed value: a negative reference deliberately makes the relative delta negative.
inline double reference(double number) { return number; }
inline double reference(const std::complex<double>& number) { return std::abs(number); }

/// The comparison under `ComparisonType::Relative`.
struct RelativeRule {
  /// What is not above this is no reference to divide by.
  static constexpr double SMALLEST_REFERENCE = 1e-9;

  double tolerance;

  template <class Element, class Value>
  bool same(const Value& a, const Value& b) const {
    return a == b || tolerance >= delta(Element::number(a), Element::number(b));
  }
  std::string remark() const {
    return sentenceOf(" The relative delta is greater than ", tolerance);
  }

 private:
  template <class Number>
  static double delta(const Number& a, const Number& b) {
    const double distance = std::abs(a - b);
    if (std::abs(b) > SMALLEST_REFERENCE) {
      return distance / reference(b);
    }
    if (std::abs(a) > SMALLEST_REFERENCE) {
      return distance / reference(a);
    }
    return distance;
  }
};

/// Numbers cannot be compared under a type outside the enumeration: not even equal ones.
struct UnknownRule {
  template <class Element, class Value>
  bool same(const Value& /*a*/, const Value& /*b*/) const {
    throwInvalidComparison(Element::UNKNOWN_TYPE_LINE);
  }
  static std::string remark() { return {}; }  // never run: no difference is found
};

}  // namespace object_model::helper
