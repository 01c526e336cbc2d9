#pragma once

#include <object_model/TupleX.h>
#include <quillon/compare/Figures.h>

#include <algorithm>
#include <cmath>

#include "Support.h"

namespace quillon::compare {

__extension__ using Integer = __int128;

/// The values of a type that matter.
template <class T>
std::vector<T> specials() {
  if constexpr (std::is_floating_point_v<T>) {
    const T nan = std::numeric_limits<T>::quiet_NaN();
    const T infinite = std::numeric_limits<T>::infinity();
    return {0,
            T(-0.0),
            1,
            2,
            T(2.5),
            T(0.1),
            -3,
            nan,
            nan,
            infinite,
            -infinite,
            std::numeric_limits<T>::max(),
            std::numeric_limits<T>::lowest(),
            std::numeric_limits<T>::denorm_min()};
  } else if constexpr (std::is_integral_v<T>) {
    return {0,
            1,
            2,
            3,
            100,
            std::numeric_limits<T>::max(),
            std::numeric_limits<T>::min(),
            static_cast<T>(std::numeric_limits<T>::max() - 1),
            static_cast<T>(std::numeric_limits<T>::max() / 2)};
  } else {
    std::vector<T> values;
    using Part = typename T::value_type;
    for (const Part real : specials<Part>()) {
      values.emplace_back(real, Part(1));
      values.emplace_back(Part(1), real);
    }
    return values;
  }
}

/// In what the figures are others than expected; empty where they are the same. Sums are rounded as
/// the values come.
inline std::string differenceOf(const Figures& found, const Figures& expected) {
  const auto areEqual = [](double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
  };
  if (found.values != expected.values) {
    return "values";
  }
  if (found.count != expected.count || found.deltas != expected.deltas) {
    return "count";
  }
  if (found.missing != expected.missing) {
    return "missing";
  }
  if (!areEqual(found.largestRelative, expected.largestRelative)) {
    return "largestRelative";
  }
  if (!areEqual(found.sum, expected.sum) &&
      !(std::abs(found.sum - expected.sum) <= 1e-15 * expected.sum)) {
    return "sum";
  }
  const bool hasSamePairs =
      std::equal(found.largest.begin(), found.largest.end(), expected.largest.begin(),
                 expected.largest.end(), [&](const Pair& a, const Pair& b) {
                   return a.offset == b.offset && areEqual(a.delta, b.delta);
                 });
  return hasSamePairs ? "" : "largest";
}

/// The rule and the figures, plainly: a value at a time, by accessors, all differences kept.
class Oracle {
 public:
  Oracle(const object_model::Array& first, const object_model::Array& second,
         const Options& options)
      : m_first(first), m_second(second), m_options(options) {}

  Figures figures() {
    const object_model::Tuple& shape = m_first.size();
    unsigned long count = 1;
    for (unsigned long k = 0; k < shape.size(); ++k) {
      count *= shape[k];
    }
    for (unsigned long offset = 0; offset < count; ++offset) {
      object_model::TupleX position(shape.size());
      unsigned long rest = offset;
      for (unsigned long k = 0; k < shape.size(); ++k) {
        position[k] = rest % shape[k];
        rest /= shape[k];
      }
      ++m_figures.values;
      compareAt(offset, position);
    }
    m_figures.sum = static_cast<double>(m_sum);
    std::stable_sort(m_ranked.begin(), m_ranked.end(),
                     [](const Ranked& a, const Ranked& b) { return a.rank > b.rank; });
    for (const Ranked& some : m_ranked) {
      if (m_figures.largest.size() < m_options.largest) {
        m_figures.largest.push_back(some.pair);
      }
    }
    return m_figures;
  }

 private:
  using Complex = std::complex<long double>;

  struct Ranked {
    long double rank;  ///< the delta without rounding; -1 for none
    Pair pair;
  };

  /// A number with whatever it was.
  struct Number {
    Complex value;
    Integer integer = 0;
    object_model::ElementType type;
    bool isInteger() const {
      return type == object_model::ElementType::Int || type == object_model::ElementType::UInt;
    }
    bool isMissing() const { return std::isnan(value.real()) || std::isnan(value.imag()); }
    bool isFinite() const { return std::isfinite(value.real()) && std::isfinite(value.imag()); }
  };

  static Number read(const object_model::Array& array, const object_model::Tuple& at) {
    using object_model::ElementType;
    const ElementType type = array.getElementType();
    if (type == ElementType::Int) {
      const long value = array.getValueAsInt(at);
      return {static_cast<long double>(value), value, type};
    }
    if (type == ElementType::UInt) {
      const unsigned long value = array.getValueAsUInt(at);
      return {static_cast<long double>(value), value, type};
    }
    if (type == ElementType::Double) {
      return {static_cast<long double>(array.getValueAsDouble(at)), 0, type};
    }
    const std::complex<double> value = array.getValueAsComplex(at);
    return {Complex(value.real(), value.imag()), 0, type};
  }

  void compareAt(unsigned long offset, const object_model::Tuple& at) {
    const Number a = read(m_first, at);
    const Number b = read(m_second, at);
    if (a.value == b.value) {
      return;
    }
    if (a.isMissing() || b.isMissing()) {
      if (a.isMissing() != b.isMissing() || !m_options.nanEqual) {
        ++m_figures.count;
        m_figures.missing += a.isMissing() != b.isMissing() ? 1U : 0U;
        m_ranked.push_back({-1, {offset, NOT_A_NUMBER, {}, {}}});
      }
      return;
    }
    const long double exact = distance(a, b);
    const auto magnitude = static_cast<double>(std::abs(b.value));
    const double limit = m_options.tolerance.absolute + m_options.tolerance.relative * magnitude;
    if (a.isFinite() && b.isFinite() && exact <= static_cast<long double>(limit)) {
      return;
    }
    const auto delta = static_cast<double>(exact);
    ++m_figures.count;
    ++m_figures.deltas;
    m_sum += delta;
    const double relative = delta / magnitude;
    if (!std::isnan(relative)) {
      m_figures.largestRelative = std::isnan(m_figures.largestRelative)
                                      ? relative
                                      : std::max(m_figures.largestRelative, relative);
    }
    m_ranked.push_back({a.isInteger() && a.type == b.type ? exact : static_cast<long double>(delta),
                        {offset, delta, {}, {}}});
  }

  /// In integers between these, in double between floating-point numbers, else in long double.
  static long double distance(const Number& a, const Number& b) {
    if (a.type != b.type) {
      return std::hypot(gap(a.value.real(), b.value.real()), gap(a.value.imag(), b.value.imag()));
    }
    if (a.isInteger()) {
      const Integer difference = a.integer - b.integer;
      return static_cast<long double>(difference < 0 ? -difference : difference);
    }
    const auto gapInDouble = [](long double x, long double y) {
      return gap(static_cast<double>(x), static_cast<double>(y));
    };
    return std::hypot(gapInDouble(a.value.real(), b.value.real()),
                      gapInDouble(a.value.imag(), b.value.imag()));
  }

  template <class Real>
  static Real gap(Real a, Real b) {
    return a == b ? 0 : std::fabs(a - b);
  }

  const object_model::Array& m_first;
  const object_model::Array& m_second;
  const Options& m_options;
  Figures m_figures;
  std::vector<Ranked> m_ranked;
  long double m_sum = 0;
};

}  // namespace quillon::compare
