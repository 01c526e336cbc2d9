#pragma once

#include <quillon/compare/Options.h>
#include <quillon/memory/Facets.h>

#include <cmath>
#include <complex>
#include <limits>
#include <type_traits>

namespace quillon::compare {

template <class T>
struct IsComplex : std::false_type {};
template <class T>
struct IsComplex<std::complex<T>> : std::true_type {};

template <class T>
inline constexpr bool IS_COMPLEX = IsComplex<T>::value;

/// Whether values of the type have a delta.
template <class T>
inline constexpr bool IS_NUMBER = IS_COMPLEX<T> ||
                                  (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>);

/// Whether a double holds any value of the type, and any distance of two of them.
template <class T>
inline constexpr bool FITS_DOUBLE = std::is_floating_point_v<T> || sizeof(T) <= 4;

/// Whether distances are taken in integers.
template <class T, class U>
inline constexpr bool ARE_WIDE_INTEGERS =
    std::is_same_v<T, U>&& std::is_integral_v<T> && !FITS_DOUBLE<T>;

/// When two values are the same.
struct Rule {
  double absolute = 0;
  double relative = 0;
  bool nanEqual = true;
  bool lowestIsMissing = false;  ///< whether the lowest integer of 64 bits stands for none

  double limit(double reference) const { return absolute + relative * reference; }
  bool isExact() const { return absolute == 0 && relative == 0; }
};

template <class T>
bool isMissing(const T& value) {
  if constexpr (IS_COMPLEX<T>) {
    return std::isnan(value.real()) || std::isnan(value.imag());
  } else if constexpr (std::is_floating_point_v<T>) {
    return std::isnan(value);
  } else {
    return false;
  }
}

template <class T>
bool isMissing(const Rule& rule, const T& value) {
  if constexpr (std::is_same_v<T, long>) {
    return rule.lowestIsMissing && value == memory::MISSING_TIME;
  } else {
    return isMissing(value);
  }
}

template <class T>
bool isFinite(const T& value) {
  if constexpr (IS_COMPLEX<T>) {
    return std::isfinite(value.real()) && std::isfinite(value.imag());
  } else if constexpr (std::is_floating_point_v<T>) {
    return std::isfinite(value);
  } else {
    return true;
  }
}

/// The number in the type that holds it and any other without rounding: `long double`, which has
/// the 64 bits of an integer, or a complex of it.
template <class T>
auto widened(const T& value) {
  if constexpr (IS_COMPLEX<T>) {
    return std::complex<long double>(value.real(), value.imag());
  } else {
    return static_cast<long double>(value);
  }
}

template <class T>
double magnitudeOf(const T& value) {
  if constexpr (IS_COMPLEX<T>) {
    return std::abs(std::complex<double>(value));
  } else {
    return std::abs(static_cast<double>(value));
  }
}

/// The distance along one axis of the complex plane: none between two equal infinities.
template <class Real>
Real gapBetween(Real a, Real b) {
  return a == b ? Real(0) : std::abs(a - b);
}

/// |a - b| of values that are not missing: between integers of one type exactly, as an unsigned
/// one; between floating-point numbers in double; between numbers of different types in long
/// double.
template <class T, class U>
auto distanceOf(const T& a, const U& b) {
  if constexpr (ARE_WIDE_INTEGERS<T, U>) {
    const auto left = static_cast<unsigned long>(a);
    const auto right = static_cast<unsigned long>(b);
    unsigned long distance = 0;  // modulo 2^64, which it is below
    __builtin_sub_overflow(a > b ? left : right, a > b ? right : left, &distance);
    return distance;
  } else if constexpr (IS_COMPLEX<T> && std::is_same_v<T, U>) {
    return std::hypot(gapBetween(static_cast<double>(a.real()), static_cast<double>(b.real())),
                      gapBetween(static_cast<double>(a.imag()), static_cast<double>(b.imag())));
  } else if constexpr (std::is_same_v<T, U>) {
    return gapBetween(static_cast<double>(a), static_cast<double>(b));
  } else {
    const std::complex<long double> left = widened(a);
    const std::complex<long double> right = widened(b);
    return std::hypot(gapBetween(left.real(), right.real()), gapBetween(left.imag(), right.imag()));
  }
}

/// Whether an integer is at most `limit`, without rounding it.
inline bool isAtMost(unsigned long distance, double limit) {
  constexpr double BEYOND = 18446744073709551616.0;  // 2^64
  return limit >= BEYOND || (limit >= 0 && distance <= static_cast<unsigned long>(limit));
}
inline bool isAtMost(double distance, double limit) { return distance <= limit; }
inline bool isAtMost(long double distance, double limit) { return distance <= limit; }

/// Whether two numbers are equal as such, whatever their types.
template <class T, class U>
bool areEqual(const T& a, const U& b) {
  if constexpr (std::is_same_v<T, U>) {
    return a == b;
  } else {
    return std::complex<long double>(widened(a)) == std::complex<long double>(widened(b));
  }
}

/// Whether two values are the same under the rule.
template <class T, class U>
bool areSame(const Rule& rule, const T& a, const U& b) {
  if constexpr (IS_NUMBER<T>) {
    if constexpr (std::is_same_v<T, long>) {
      if (isMissing(rule, a) || isMissing(rule, b)) {
        return rule.nanEqual && areEqual(a, b);
      }
    }
    if (areEqual(a, b)) {
      return true;
    }
    if (isMissing(a) && isMissing(b)) {
      return rule.nanEqual;
    }
    return isFinite(a) && isFinite(b) && isAtMost(distanceOf(a, b), rule.limit(magnitudeOf(b)));
  } else {
    return a == b;
  }
}

/// Whether `same(a, b)` holds for all pairs. It has no branches, so that the compiler can look at
/// several pairs at a time.
template <class T, class Same>
bool holdsForAll(const T* a, const T* b, unsigned long count, const Same& same) {
  int others = 0;
  for (unsigned long k = 0; k < count; ++k) {
    others |= static_cast<int>(!same(a[k], b[k]));
  }
  return others == 0;
}

/// Whether all pairs of real numbers that a double holds are the same.
template <class T>
bool areAllWithin(const Rule& rule, const T* a, const T* b, unsigned long count) {
  const int nanEqual = rule.nanEqual ? 1 : 0;
  const double absolute = rule.absolute;
  const double relative = rule.relative;
  return holdsForAll(a, b, count, [=](T x, T y) {
    const auto left = static_cast<double>(x);
    const auto right = static_cast<double>(y);
    const double distance = std::abs(left - right);
    const int within = static_cast<int>(distance <= absolute + relative * std::abs(right)) &
                       static_cast<int>(distance <= std::numeric_limits<double>::max());
    const int missing = static_cast<int>(left != left) & static_cast<int>(right != right);
    return (static_cast<int>(left == right) | within | (missing & nanEqual)) != 0;
  });
}

/// True only where all pairs are the same; it may say no for such.
template <class T, class U>
bool areAllSame(const Rule& rule, const T* a, const U* b, unsigned long count) {
  if constexpr (!std::is_same_v<T, U> || !(IS_NUMBER<T> || std::is_same_v<T, bool>)) {
    return false;
  } else {
    if constexpr (std::is_arithmetic_v<T> && FITS_DOUBLE<T>) {
      // never true, never false: decided when compiled
      if (!std::is_integral_v<T> || !rule.isExact()) {
        return areAllWithin(rule, a, b, count);
      }
    }
    if constexpr (std::is_same_v<T, long>) {
      if (rule.lowestIsMissing && !rule.nanEqual) {
        return false;  // what is equal may be missing
      }
    }
    return holdsForAll(a, b, count, [](const T& x, const T& y) { return x == y; });
  }
}

}  // namespace quillon::compare
