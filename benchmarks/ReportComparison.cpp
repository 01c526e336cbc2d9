/// Comparison as data, of values that lie in memory.
#include <quillon/compare/Compare.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Case.h"
#include "Opaque.h"

namespace benchmarks {
namespace {

using quillon::compare::Options;
using quillon::memory::ArrayBase;
using quillon::memory::InPlaceValues;

constexpr double REPORT_TOLERANCE = 1e-6;

Options withinBothTolerances() {
  Options options;
  options.tolerance = {REPORT_TOLERANCE, REPORT_TOLERANCE};
  return options;
}

/// The same numbers whether dimension 0 or, transposed, dimension 1 varies fastest in memory.
template <class T>
class Square final : public ArrayBase, public InPlaceValues<T> {
 public:
  Square(unsigned long side, bool isTransposed)
      : ArrayBase("square", object_model::ElementType::Double, {{"x", side}, {"y", side}}),
        m_values(side * side) {
    for (unsigned long k = 0; k < m_values.size(); ++k) {
      m_values[k] = static_cast<T>(isTransposed ? k % side * side + k / side : k);
    }
    const auto width = static_cast<long>(sizeof(T));
    const long row = width * static_cast<long>(side);
    this->setPlace(m_values.data(),
                   isTransposed ? std::vector<long>{row, width} : std::vector<long>{width, row});
  }

  const std::vector<T>& values() const { return m_values; }

 private:
  std::vector<T> m_values;
};

unsigned long sideOf(unsigned long size) {
  return static_cast<unsigned long>(std::sqrt(static_cast<double>(size)));
}

/// Two equal squares, of which the second may be transposed or of another type.
template <class T, class U>
class EqualSquares : public Operation {
 public:
  EqualSquares(unsigned long size, bool isTransposed)
      : m_first(sideOf(size), false), m_second(sideOf(size), isTransposed) {}

  void runLibrary() override {
    m_report = quillon::compare::compare(m_first, m_second, withinBothTolerances());
  }

  void check() override {
    runLibrary();
    runFloor();
    require(m_report.same && m_report.values == m_first.values().size(), "compare()");
    require(m_byHand, "the comparison by hand");
  }

 protected:
  const std::vector<T>& first() const { return opaque<const Square<T>>(m_first).values(); }
  const std::vector<U>& second() const { return opaque<const Square<U>>(m_second).values(); }
  void setByHand(bool same) { m_byHand = same; }

 private:
  Square<T> m_first;
  Square<U> m_second;
  quillon::compare::Report m_report;
  bool m_byHand = false;
};

/// Beside memcmp of the first square and itself, which reads as much.
template <class T, class U>
class BesideMemcmp final : public EqualSquares<T, U> {
 public:
  explicit BesideMemcmp(unsigned long size)
      : EqualSquares<T, U>(size, false), m_copy(this->first()) {}

  void runFloor() override {
    const std::vector<T>& values = this->first();
    this->setByHand(std::memcmp(values.data(), m_copy.data(), values.size() * sizeof(T)) == 0);
  }

 private:
  std::vector<T> m_copy;
};

/// Beside a loop in tiles of a cache's size.
class BesideTiledLoop final : public EqualSquares<double, double> {
 public:
  explicit BesideTiledLoop(unsigned long size)
      : EqualSquares<double, double>(size, true), m_side(sideOf(size)) {}

  void runFloor() override {
    unsigned long differing = 0;
    for (unsigned long y = 0; y < m_side; y += TILE) {
      for (unsigned long x = 0; x < m_side; x += TILE) {
        differing += differingInTile(x, y);
      }
    }
    setByHand(differing == 0);
  }

 private:
  static constexpr unsigned long TILE = 64;

  unsigned long differingInTile(unsigned long left, unsigned long top) const {
    const double* const a = first().data();
    const double* const b = second().data();
    const unsigned long right = std::min(left + TILE, m_side);
    const unsigned long bottom = std::min(top + TILE, m_side);
    unsigned long differing = 0;
    for (unsigned long y = top; y < bottom; ++y) {
      for (unsigned long x = left; x < right; ++x) {
        const double first = a[y * m_side + x];
        const double second = b[x * m_side + y];
        const double limit = REPORT_TOLERANCE + REPORT_TOLERANCE * std::abs(second);
        differing += std::abs(first - second) <= limit ? 0U : 1U;
      }
    }
    return differing;
  }

  unsigned long m_side;
};

}  // namespace

void addReportComparisonCases(Cases& cases) {
  constexpr unsigned long SIZE = 10'000'000;
  cases.push_back({"compare/Double/both-tolerances", "square", SIZE, 4, [](unsigned long size) {
                     return std::make_unique<BesideMemcmp<double, double>>(size);
                   }});
  cases.push_back({"compare/Float/both-tolerances", "square", SIZE, 4, [](unsigned long size) {
                     return std::make_unique<BesideMemcmp<float, float>>(size);
                   }});
  cases.push_back(
      {"compare/Double-Float/both-tolerances", "square", SIZE, 4,
       [](unsigned long size) { return std::make_unique<BesideMemcmp<double, float>>(size); }});
  cases.push_back({"compare/Double/transposed", "square", SIZE, 2,
                   [](unsigned long size) { return std::make_unique<BesideTiledLoop>(size); }});
}

}  // namespace benchmarks
