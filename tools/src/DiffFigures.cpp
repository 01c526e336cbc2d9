#include "DiffFigures.h"

#include <object_model/TupleX.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/StoredValues.h>

#include <algorithm>
#include <complex>

#include "Failure.h"

namespace quillon::tools {

using memory::inQuotes;

namespace {

using object_model::Array;
using object_model::ElementType;
using object_model::Tuple;
using object_model::helper::ComparisonType;

constexpr unsigned long TICK = 4096;
constexpr int DELTA_DIGITS = 6;

/// The types in which files hold the values of one element type.
template <class... Stored>
struct StoredAs {};
using StoredUInt = StoredAs<unsigned char, unsigned short, unsigned int, unsigned long>;
using StoredInt = StoredAs<signed char, short, int, long>;
using StoredDouble = StoredAs<float, double>;
using NotStored = StoredAs<>;

// So many values are looked at together before they are looked at one by one.
constexpr unsigned long BATCH = 128;

/// How positions are counted: dimension 0 varies fastest.
class Grid {
 public:
  explicit Grid(const Tuple& shape) {
    for (unsigned long k = 0; k < shape.size(); ++k) {
      m_size *= shape[k];
      m_visited *= k < 3 ? shape[k] : 1;
      m_extents.push_back(shape[k]);
    }
  }

  /// The number of positions.
  unsigned long size() const { return m_size; }

  std::vector<unsigned long> positionOf(unsigned long offset) const {
    std::vector<unsigned long> position;
    for (const unsigned long extent : m_extents) {
      position.push_back(offset % extent);
      offset /= extent;
    }
    return position;
  }

  /// Whether the library's comparison gets there: of many dimensions, it stays at 0 in the 4th and
  /// later ones.
  bool isVisited(unsigned long offset) const {
    return m_extents.size() < PARTLY_COMPARED || offset < m_visited;
  }

 private:
  std::vector<unsigned long> m_extents;
  unsigned long m_size = 1;
  unsigned long m_visited = 1;
};

void countIf(bool condition, unsigned long& count) {
  if (condition) {
    ++count;
  }
}

/// The differences between values of one type as they come.
template <class Value>
class Tally {
 public:
  Tally(const ComparisonRule& rule, const Grid& grid) : m_rule(rule), m_grid(grid) {}

  /// Values that are the same and that there is nothing to say about.
  void addSame(unsigned long count) { m_figures.values += count; }

  /// Offsets must come in ascending order.
  void add(unsigned long offset, const Value& a, const Value& b) {
    ++m_figures.values;
    if (isNaNInBoth(a, b)) {
      return;  // missing on both sides
    }
    if (!areSame(m_rule, a, b)) {
      ++m_figures.differing;
      if (m_grid.isVisited(offset)) {
        ++m_figures.visited;
        m_lastVisited = offset;
      }
      addDifference(offset, a, b);
    } else if constexpr (IS_NUMBER<Value>) {
      addPassed(offset, a, b);
    }
  }

  DiffFigures figures() const {
    DiffFigures figures = m_figures;
    if (figures.differing != 0) {
      figures.example = {m_grid.positionOf(m_offset), toldApart(m_first, m_second)};
    }
    if (figures.visited != 0) {
      figures.lastVisited = m_grid.positionOf(m_lastVisited);
    }
    if constexpr (IS_NUMBER<Value>) {
      if (m_hasDelta) {
        figures.delta = deltaText();
      }
    }
    return figures;
  }

 private:
  static bool isNaNInBoth(const Value& a, const Value& b) {
    if constexpr (IS_NUMBER<Value>) {
      return isNaN(a) && isNaN(b);
    } else {
      return false;
    }
  }

  void addDifference(unsigned long offset, const Value& a, const Value& b) {
    bool isLarger = m_figures.differing == 1;
    if constexpr (IS_NUMBER<Value>) {
      countIf(isNaN(a) || isNaN(b), m_figures.nanInOne);
      const long double delta = sizeOfDelta(a, b);
      if (!std::isnan(delta) && (!m_hasDelta || delta > m_delta)) {
        m_hasDelta = true;
        m_delta = delta;
        isLarger = true;
      }
    }
    if (isLarger) {
      m_offset = offset;
      m_first = a;
      m_second = b;
    }
  }

  void addPassed(unsigned long offset, const Value& a, const Value& b) {
    const Loophole loophole = loopholeOf(m_rule, a, b);
    if (loophole == Loophole::None) {
      return;
    }
    if (m_figures.passed.values.first.empty()) {
      m_figures.passed = {m_grid.positionOf(offset), toldApart(a, b)};
    }
    countIf(loophole == Loophole::NegativeReference, m_figures.negativeReferences);
    countIf(loophole == Loophole::SmallReference, m_figures.smallReferences);
    countIf(loophole == Loophole::RoundedIntegers, m_figures.roundedIntegers);
  }

  bool isExactInteger() const {
    return std::is_integral_v<Value> && m_rule.type != ComparisonType::Relative;
  }

  /// A long double holds the distance of any two integers without rounding.
  long double sizeOfDelta(const Value& a, const Value& b) const {
    return isExactInteger() ? static_cast<long double>(distanceOf(a, b))
                            : static_cast<long double>(deltaUnder(m_rule, a, b));
  }

  std::string deltaText() const {
    return isExactInteger() ? std::to_string(distanceOf(m_first, m_second))
                            : inDigits(static_cast<double>(m_delta), DELTA_DIGITS);
  }

  const ComparisonRule& m_rule;
  const Grid& m_grid;
  DiffFigures m_figures;
  unsigned long m_lastVisited = 0;
  unsigned long m_offset = 0;  // of the example
  Value m_first{};
  Value m_second{};
  bool m_hasDelta = false;
  long double m_delta = 0;
};

/// Moves to the next position in storage order.
void advance(Tuple& position, const Tuple& shape) {
  for (unsigned long k = 0; k < shape.size(); ++k) {
    if (++position[k] < shape[k]) {
      return;
    }
    position[k] = 0;
  }
}

/// One pass through two arrays of the same type and shape.
template <class Value>
class Pass {
 public:
  Pass(const Array& first, const Array& second, const ComparisonRule& rule, const Tick& tick)
      : m_first(first),
        m_second(second),
        m_rule(rule),
        m_tick(tick),
        m_grid(first.size()),
        m_tally(rule, m_grid) {}

  /// In bulk where both files hold the values as one of these types; otherwise by the accessor.
  template <class... Stored>
  DiffFigures figures(Value (Array::*read)(const Tuple&) const, StoredAs<Stored...> /*types*/) {
    if (!(addStored<Stored>() || ...)) {
      addAll(read);
    }
    return m_tally.figures();
  }

 private:
  void addAll(Value (Array::*read)(const Tuple&) const) {
    const Tuple& shape = m_first.size();
    object_model::TupleX position(shape.size());
    for (unsigned long offset = 0; offset < m_grid.size(); ++offset) {
      const Value a = (m_first.*read)(position);
      const Value b = (m_second.*read)(position);
      m_tally.add(offset, a, b);
      advance(position, shape);
      if ((offset + 1) % TICK == 0) {
        m_tick(TICK);
      }
    }
    m_tick(m_grid.size() % TICK);
  }

  /// @return false where either file holds the values as another type.
  template <class Stored>
  bool addStored() {
    const auto* first = dynamic_cast<const netcdf::StoredValues<Stored>*>(&m_first);
    const auto* second = dynamic_cast<const netcdf::StoredValues<Stored>*>(&m_second);
    if (first == nullptr || second == nullptr) {
      return false;
    }
    withPlainRule<Stored>(m_rule,
                          [&](const auto& isPlain) { addStored(*first, *second, isPlain); });
    return true;
  }

  template <class Stored, class IsPlain>
  void addStored(const netcdf::StoredValues<Stored>& first,
                 const netcdf::StoredValues<Stored>& second, const IsPlain& isPlain) {
    netcdf::Run<Stored> a;
    netcdf::Run<Stored> b;
    for (unsigned long offset = 0; offset < m_grid.size();) {
      const unsigned long left = valuesFrom(first, offset, a);
      const unsigned long right = valuesFrom(second, offset, b);
      const unsigned long count = std::min(left, right);
      addRun(offset, count, &a.values[offset - a.first], &b.values[offset - b.first], isPlain);
      m_tick(count);
      offset += count;
    }
  }

  /// How many values from `offset` on are in `run`, which is read anew where there are none.
  template <class Stored>
  static unsigned long valuesFrom(const netcdf::StoredValues<Stored>& array, unsigned long offset,
                                  netcdf::Run<Stored>& run) {
    if (offset - run.first >= run.values.size()) {
      array.readAround(offset, run);
    }
    return run.first + run.values.size() - offset;
  }

  template <class Stored, class IsPlain>
  void addRun(unsigned long offset, unsigned long count, const Stored* a, const Stored* b,
              const IsPlain& isPlain) {
    unsigned long k = 0;
    while (k < count) {
      const unsigned long end = std::min(k + BATCH, count);
      if (end - k == BATCH && areAllPlain(a + k, b + k, isPlain)) {
        m_tally.addSame(BATCH);
        k = end;
      }
      for (; k < end; ++k) {
        m_tally.add(offset + k, a[k], b[k]);
      }
    }
  }

  template <class Stored, class IsPlain>
  static bool areAllPlain(const Stored* a, const Stored* b, const IsPlain& isPlain) {
    int others = 0;
    for (unsigned long i = 0; i < BATCH; ++i) {
      others |= static_cast<int>(!isPlain(a[i], b[i]));
    }
    return others == 0;
  }

  const Array& m_first;
  const Array& m_second;
  const ComparisonRule& m_rule;
  const Tick& m_tick;
  Grid m_grid;
  Tally<Value> m_tally;
};

template <class Types, class Value>
DiffFigures figuresOf(const Array& first, const Array& second,
                      Value (Array::*read)(const Tuple&) const, const ComparisonRule& rule,
                      const Tick& tick) {
  return Pass<Value>(first, second, rule, tick).figures(read, Types());
}

}  // namespace

DiffFigures figuresOf(const Array& first, const Array& second, const ComparisonRule& rule,
                      const Tick& tick) {
  switch (first.getElementType()) {
    case ElementType::UInt:
      return figuresOf<StoredUInt>(first, second, &Array::getValueAsUInt, rule, tick);
    case ElementType::Int:
      return figuresOf<StoredInt>(first, second, &Array::getValueAsInt, rule, tick);
    case ElementType::Double:
      return figuresOf<StoredDouble>(first, second, &Array::getValueAsDouble, rule, tick);
    case ElementType::Complex:
      return figuresOf<NotStored>(first, second, &Array::getValueAsComplex, rule, tick);
    case ElementType::String:
      return figuresOf<NotStored>(first, second, &Array::getValueAsString, rule, tick);
    case ElementType::Boolean:
      return figuresOf<NotStored>(first, second, &Array::getValueAsBoolean, rule, tick);
    case ElementType::Dictionary:
      break;
  }
  throw Failure("The elements of " + inQuotes(first.getName()) + " are no values to compare");
}

}  // namespace quillon::tools
