#include "DiffFigures.h"

#include <object_model/TupleX.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>

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

/// How many values of a block stay in a processor's cache or, where the chunks beside each other
/// along all but the last dimension are more, as many as these are, within limits.
template <class Stored>
unsigned long blockValues(const Array& array) {
  constexpr unsigned long USUAL_BYTES = 1UL << 20U;
  constexpr unsigned long MOST_BYTES = 16UL << 20U;
  const unsigned long* chunks = memory::bulkValuesOf(array)->chunkExtents();
  const unsigned long dimensions = array.size().size();
  double bytes = chunks == nullptr ? 0 : sizeof(Stored);
  for (unsigned long k = 0; chunks != nullptr && k < dimensions; ++k) {
    bytes *= static_cast<double>(k + 1 < dimensions ? array.size()[k] : chunks[k]);
  }
  return static_cast<unsigned long>(std::clamp<double>(bytes, USUAL_BYTES, MOST_BYTES)) /
         sizeof(Stored);
}

/// The values of an array, of which one block after the other is in memory.
template <class Stored>
class Blocks {
 public:
  explicit Blocks(const Array& array)
      : m_array(array), m_layout(array, blockValues<Stored>(array)) {}

  /// @return how many values there are from `offset` on until the block's end.
  unsigned long moveTo(unsigned long offset) {
    if (offset < m_block.first || offset - m_block.first >= m_block.count) {
      m_block = m_layout.blockAt(offset);
      m_values.resize(m_block.count);
      memory::copyValues(m_array, m_block, m_values.data());
    }
    return m_block.first + m_block.count - offset;
  }

  const Stored* at(unsigned long offset) const { return &m_values[offset - m_block.first]; }

 private:
  const Array& m_array;
  memory::BlockLayout m_layout;
  memory::Block m_block{0, 0, {}, {}};
  std::vector<Stored> m_values;
};

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

  /// In bulk where both arrays offer the values in one type; otherwise by the accessor.
  DiffFigures figures(Value (Array::*read)(const Tuple&) const) {
    if (!addStored()) {
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

  /// @return false where the arrays do not offer their values in bulk, in one type of numbers.
  bool addStored() {
    const object_model::BulkValues* first = memory::bulkValuesOf(m_first);
    const object_model::BulkValues* second = memory::bulkValuesOf(m_second);
    bool isAdded = false;
    if (first != nullptr && second != nullptr && first->storedType() == second->storedType()) {
      memory::visitStoredType(first->storedType(), [&](auto tag) {
        using Stored = typename decltype(tag)::Type;
        if constexpr (std::is_same_v<memory::ElementOf<Stored>, Value> &&
                      std::is_arithmetic_v<Stored> && !std::is_same_v<Stored, bool>) {
          withPlainRule<Stored>(m_rule, [&](const auto& isPlain) { addBlocks<Stored>(isPlain); });
          isAdded = true;
        }
      });
    }
    return isAdded;
  }

  template <class Stored, class IsPlain>
  void addBlocks(const IsPlain& isPlain) {
    Blocks<Stored> a(m_first);
    Blocks<Stored> b(m_second);
    for (unsigned long offset = 0; offset < m_grid.size();) {
      const unsigned long count = std::min(a.moveTo(offset), b.moveTo(offset));
      addRun(offset, count, a.at(offset), b.at(offset), isPlain);
      m_tick(count);
      offset += count;
    }
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

template <class Value>
DiffFigures figuresOf(const Array& first, const Array& second,
                      Value (Array::*read)(const Tuple&) const, const ComparisonRule& rule,
                      const Tick& tick) {
  return Pass<Value>(first, second, rule, tick).figures(read);
}

}  // namespace

DiffFigures figuresOf(const Array& first, const Array& second, const ComparisonRule& rule,
                      const Tick& tick) {
  switch (first.getElementType()) {
    case ElementType::UInt:
      return figuresOf(first, second, &Array::getValueAsUInt, rule, tick);
    case ElementType::Int:
      return figuresOf(first, second, &Array::getValueAsInt, rule, tick);
    case ElementType::Double:
      return figuresOf(first, second, &Array::getValueAsDouble, rule, tick);
    case ElementType::Complex:
      return figuresOf(first, second, &Array::getValueAsComplex, rule, tick);
    case ElementType::String:
      return figuresOf(first, second, &Array::getValueAsString, rule, tick);
    case ElementType::Boolean:
      return figuresOf(first, second, &Array::getValueAsBoolean, rule, tick);
    case ElementType::Dictionary:
      break;
  }
  throw Failure("The elements of " + inQuotes(first.getName()) + " are no values to compare");
}

}  // namespace quillon::tools
