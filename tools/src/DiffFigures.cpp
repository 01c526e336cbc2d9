#include "DiffFigures.h"

#include <object_model/TupleX.h>

#include <complex>

#include "Failure.h"
#include "Wording.h"

namespace quillon::tools {

namespace {

using object_model::Array;
using object_model::ElementType;
using object_model::Tuple;
using object_model::helper::ComparisonType;

constexpr unsigned long TICK = 4096;
constexpr int DELTA_DIGITS = 6;

std::vector<unsigned long> indicesOf(const Tuple& position) {
  std::vector<unsigned long> indices;
  for (unsigned long k = 0; k < position.size(); ++k) {
    indices.push_back(position[k]);
  }
  return indices;
}

bool isVisited(const Tuple& position) {
  for (unsigned long k = 3; position.size() >= PARTLY_COMPARED && k < position.size(); ++k) {
    if (position[k] != 0) {
      return false;
    }
  }
  return true;
}

void countIf(bool condition, unsigned long& count) {
  if (condition) {
    ++count;
  }
}

/// The differences between values of one type as they come.
template <class Value>
class Tally {
 public:
  explicit Tally(const ComparisonRule& rule) : m_rule(rule) {}

  void add(const Tuple& position, const Value& a, const Value& b) {
    ++m_figures.values;
    if (isNaNInBoth(a, b)) {
      return;  // missing on both sides
    }
    if (!areSame(m_rule, a, b)) {
      ++m_figures.differing;
      countIf(isVisited(position), m_figures.visited);
      addDifference(position, a, b);
    } else if constexpr (IS_NUMBER<Value>) {
      addPassed(position, a, b);
    }
  }

  DiffFigures figures() const {
    DiffFigures figures = m_figures;
    if (figures.differing != 0) {
      figures.example = {indicesOf(m_position), toldApart(m_first, m_second)};
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

  void addDifference(const Tuple& position, const Value& a, const Value& b) {
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
      m_position = position;
      m_first = a;
      m_second = b;
    }
  }

  void addPassed(const Tuple& position, const Value& a, const Value& b) {
    const Loophole loophole = loopholeOf(m_rule, a, b);
    if (loophole == Loophole::None) {
      return;
    }
    if (m_figures.passed.values.first.empty()) {
      m_figures.passed = {indicesOf(position), toldApart(a, b)};
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
  DiffFigures m_figures;
  object_model::TupleX m_position{0};
  Value m_first{};
  Value m_second{};
  bool m_hasDelta = false;
  long double m_delta = 0;
};

/// Moves to the next position in storage order. @return false after the last one.
bool advance(Tuple& position, const Tuple& shape) {
  for (unsigned long k = 0; k < shape.size(); ++k) {
    if (++position[k] < shape[k]) {
      return true;
    }
    position[k] = 0;
  }
  return false;
}

bool isEmpty(const Tuple& shape) {
  for (unsigned long k = 0; k < shape.size(); ++k) {
    if (shape[k] == 0) {
      return true;
    }
  }
  return false;
}

template <class Value>
DiffFigures tallyOf(const Array& first, const Array& second,
                    Value (Array::*read)(const Tuple&) const, const ComparisonRule& rule,
                    const Tick& tick) {
  Tally<Value> tally(rule);
  const Tuple& shape = first.size();
  if (isEmpty(shape)) {
    return tally.figures();
  }
  object_model::TupleX position(shape.size());
  unsigned long done = 0;
  do {
    const Value a = (first.*read)(position);
    const Value b = (second.*read)(position);
    tally.add(position, a, b);
    if (++done % TICK == 0) {
      tick(TICK);
    }
  } while (advance(position, shape));
  tick(done % TICK);
  return tally.figures();
}

}  // namespace

DiffFigures figuresOf(const Array& first, const Array& second, const ComparisonRule& rule,
                      const Tick& tick) {
  switch (first.getElementType()) {
    case ElementType::UInt:
      return tallyOf(first, second, &Array::getValueAsUInt, rule, tick);
    case ElementType::Int:
      return tallyOf(first, second, &Array::getValueAsInt, rule, tick);
    case ElementType::Double:
      return tallyOf(first, second, &Array::getValueAsDouble, rule, tick);
    case ElementType::Complex:
      return tallyOf(first, second, &Array::getValueAsComplex, rule, tick);
    case ElementType::String:
      return tallyOf(first, second, &Array::getValueAsString, rule, tick);
    case ElementType::Boolean:
      return tallyOf(first, second, &Array::getValueAsBoolean, rule, tick);
    case ElementType::Dictionary:
      break;
  }
  throw Failure("The elements of " + inQuotes(first.getName()) + " are no values to compare");
}

}  // namespace quillon::tools
