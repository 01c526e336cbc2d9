#pragma once

#include <quillon/compare/Figures.h>

#include <algorithm>
#include <string>

#include "DeltaMap.h"
#include "Numbers.h"

namespace quillon::compare {

/// Adds to a sum that is kept without rounding, in two parts.
void addExactly(double number, Figures& figures);

/// How values of one side become those of a report.
template <class T>
Value valueOf(const T& value, bool isSingle) {
  if constexpr (std::is_same_v<T, double>) {
    return isSingle ? Value(static_cast<float>(value)) : Value(value);
  } else if constexpr (std::is_same_v<T, std::complex<double>>) {
    return isSingle ? Value(std::complex<float>(value)) : Value(value);
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    using Wide = std::conditional_t<std::is_signed_v<T>, long, unsigned long>;
    return static_cast<Wide>(value);
  } else {
    return value;
  }
}

/// Counts the differences between values of the types `T` and `U` as they come, in any order.
template <class T, class U>
class Tally {
 public:
  /// @param isSingle whether a side's values are floats that were widened.
  /// @param map takes where values differ; null where nobody wants to know.
  Tally(const Rule& rule, unsigned long kept, bool firstIsSingle, bool secondIsSingle,
        DeltaMap* map = nullptr)
      : m_rule(rule), m_firstIsSingle(firstIsSingle), m_secondIsSingle(secondIsSingle), m_map(map) {
    m_figures.kept = kept;
  }

  /// Compares values the first of which stands at `offset` and each other one `step` further.
  void addRun(unsigned long offset, unsigned long step, const T* a, const U* b,
              unsigned long count) {
    m_figures.values += count;
    for (unsigned long start = 0; start < count; start += BATCH) {
      const unsigned long length = std::min(BATCH, count - start);
      if (!areAllSame(m_rule, a + start, b + start, length)) {
        for (unsigned long k = start; k < start + length; ++k) {
          if (!areSame(m_rule, a[k], b[k])) {
            add(offset + k * step, a[k], b[k]);
          }
        }
      }
    }
  }

  /// Counts pairs that are known to be the same.
  void addSame(unsigned long count) { m_figures.values += count; }

  /// What was counted; nothing is added afterwards.
  Figures takeFigures() {
    std::sort_heap(m_figures.largest.begin(), m_figures.largest.end(), isBefore);
    return std::move(m_figures);
  }

 private:
  // So many values are looked at together before they are looked at one by one.
  static constexpr unsigned long BATCH = 128;

  void add(unsigned long offset, const T& a, const U& b) {
    ++m_figures.count;
    double delta = std::numeric_limits<double>::quiet_NaN();
    if constexpr (IS_NUMBER<T>) {
      const bool lacksFirst = isMissing(m_rule, a);
      const bool lacksSecond = isMissing(m_rule, b);
      if (lacksFirst || lacksSecond) {
        m_figures.missing += lacksFirst != lacksSecond ? 1U : 0U;
      } else {
        delta = static_cast<double>(distanceOf(a, b));
        addDelta(delta, magnitudeOf(b));
      }
    }
    if (m_map != nullptr) {
      m_map->add(offset, delta);
    }
    if (mayBeKept(offset, delta)) {
      keep({offset, delta, keptOf(a, m_firstIsSingle), keptOf(b, m_secondIsSingle)});
    }
  }

  /// Nothing for an integer that stands for none.
  template <class V>
  Value keptOf(const V& value, bool isSingle) const {
    if constexpr (std::is_same_v<V, long>) {
      return isMissing(m_rule, value) ? Value() : valueOf(value, isSingle);
    } else {
      return valueOf(value, isSingle);
    }
  }

  void addDelta(double delta, double reference) {
    ++m_figures.deltas;
    addExactly(delta, m_figures);
    const double relative = delta / reference;
    if (!(relative <= m_figures.largestRelative) && !std::isnan(relative)) {
      m_figures.largestRelative = relative;
    }
  }

  /// Says no to most pairs without making values of them.
  bool mayBeKept(unsigned long offset, double delta) const {
    if (m_figures.largest.size() < m_figures.kept) {
      return true;
    }
    if (m_figures.largest.empty()) {
      return false;
    }
    const Pair& last = m_figures.largest.front();
    if (std::isnan(last.delta) || std::isnan(delta)) {
      return !std::isnan(delta) || (std::isnan(last.delta) && offset < last.offset);
    }
    // never true, never false: decided when compiled
    const bool isTie = delta == last.delta && (ARE_WIDE_INTEGERS<T, U> || offset < last.offset);
    return delta > last.delta || isTie;
  }

  // Rare, and out of line: inlined, it costs the loops over equal values their registers.
  [[gnu::noinline]] void keep(Pair pair) {
    std::vector<Pair>& largest = m_figures.largest;
    largest.push_back(std::move(pair));
    std::push_heap(largest.begin(), largest.end(), isBefore);
    if (largest.size() > m_figures.kept) {
      std::pop_heap(largest.begin(), largest.end(), isBefore);
      largest.pop_back();
    }
  }

  Rule m_rule;
  bool m_firstIsSingle;
  bool m_secondIsSingle;
  DeltaMap* m_map;
  Figures m_figures;  // whose `largest` is a heap with the pair that is dropped first in front
};

}  // namespace quillon::compare
