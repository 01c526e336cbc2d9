#include "ComparisonHelper/ElementComparison.h"

#include <object_model/Array.h>

#include <array>
#include <complex>
#include <cstdint>
#include <optional>
#include <utility>

#include "ComparisonHelper/BulkComparison.h"
#include "ComparisonHelper/Difference.h"
#include "ComparisonHelper/Positions.h"

namespace object_model::helper {
namespace {

// From this many positions on the values are read in bulk where the arrays offer that. Asking them
// for it takes 200 ns, as long as the accessors take for 25 elements where they check positions,
// and for 60 where they do next to nothing.
constexpr std::uint32_t FEWEST_IN_BULK = 64;

template <class Rule, class Value>
void reportLast(const Difference<Value>& last, const Rule& rule, const ArrayPair& pair,
                const Positions& positions, std::string* message) {
  if (last.found && message != nullptr) {
    // The unmatched quote behind the position is deliberate.
    *message = sentenceOf("The arrays '", pair.name, "' have different values at the position ",
                          positions.at(last.indices), "': '", last.first, "' and '", last.second,
                          "'.", rule.remark());
  }
}

/// Nothing, with nothing read, where the values are not to be had in bulk. Apart from its caller,
/// whose loop over accessors is to stay in registers.
template <class Element, class Rule>
[[gnu::noinline]] std::optional<bool> areSameInBulk(const Rule& rule, const ArrayPair& pair,
                                                    std::string* message) {
  Difference<typename Element::Value> last;
  bool isDone = false;
  runThenReport([&] { isDone = BulkComparison<Element, Rule>(rule, last).run(pair); },
                [&] { reportLast(last, rule, pair, Positions(pair.shape), message); });
  return isDone ? std::optional<bool>(!last.found) : std::nullopt;
}

/// Whether elements that are read as `Value` are ever compared in bulk under `Rule`.
template <class Value, class Rule>
constexpr bool COMPARED_IN_BULK = IN_BULK<Value> && !std::is_same_v<Rule, UnknownRule>;

// One loop for each element type and rule, both chosen before it starts.
template <class Element, class Rule>
bool areSameUnder(const Rule& rule, const ArrayPair& pair, std::string* message) {
  Positions positions(pair.shape);
  if (positions.none()) {
    return true;
  }
  using Value = typename Element::Value;
  if constexpr (COMPARED_IN_BULK<Value, Rule>) {
    if (positions.areAtLeast(FEWEST_IN_BULK)) {
      if (const auto same = areSameInBulk<Element>(rule, pair, message)) {
        return *same;
      }
    }
  }
  Difference<Value> last;
  const Array& first = pair.first;
  const Array& second = pair.second;
  const Tuple& position = positions.current();
  const auto walk = [&] {
    positions.walk([&] {
      Value a = (first.*Element::READ)(position);
      Value b = (second.*Element::READ)(position);
      if (!rule.template same<Element>(a, b)) {
        last = {true, positions.indices(), std::move(a), std::move(b)};
      }
    });
  };
  runThenReport(walk, [&] { reportLast(last, rule, pair, positions, message); });
  return !last.found;
}

using Compare = bool (*)(const ArrayPair& pair, const Criterion& criterion, std::string* message);

/// An element type that is compared under a tolerance, as `Arithmetic` numbers. `LINE` is the throw
/// site for comparison types that do not exist.
template <class T, class Arithmetic, T (Array::*ACCESSOR)(const Tuple&) const, int LINE>
struct NumberElement {
  using Value = T;
  static constexpr auto READ = ACCESSOR;
  static constexpr int UNKNOWN_TYPE_LINE = LINE;
  static Arithmetic number(const Value& value) { return static_cast<Arithmetic>(value); }

  static bool compare(const ArrayPair& pair, const Criterion& criterion, std::string* message) {
    switch (criterion.type) {
      case ComparisonType::Exact:
        return areSameUnder<NumberElement>(ExactRule{}, pair, message);
      case ComparisonType::Absolute:
        return areSameUnder<NumberElement>(AbsoluteRule{criterion.tolerance}, pair, message);
      case ComparisonType::Relative:
        return areSameUnder<NumberElement>(RelativeRule{criterion.tolerance}, pair, message);
    }
    return areSameUnder<NumberElement>(UnknownRule{}, pair, message);
  }
};

/// An element type that is compared exactly, whatever the comparison type.
template <class T, T (Array::*ACCESSOR)(const Tuple&) const>
struct PlainElement {
  using Value = T;
  static constexpr auto READ = ACCESSOR;

  static bool compare(const ArrayPair& pair, const Criterion& /*criterion*/, std::string* message) {
    return areSameUnder<PlainElement>(ExactRule{}, pair, message);
  }
};

// In the order of ElementType. How values are shown is appendText's choice.
constexpr std::array<Compare, 6> COMPARE_BY_TYPE = {
    &NumberElement<unsigned long, double, &Array::getValueAsUInt, 372>::compare,
    &NumberElement<long, double, &Array::getValueAsInt, 382>::compare,
    &NumberElement<double, double, &Array::getValueAsDouble, 392>::compare,
    &NumberElement<std::complex<double>, std::complex<double>, &Array::getValueAsComplex,
                   402>::compare,
    &PlainElement<std::string, &Array::getValueAsString>::compare,
    &PlainElement<bool, &Array::getValueAsBoolean>::compare,
};
constexpr int UNKNOWN_ELEMENT_TYPE_LINE = 412;

}  // namespace

bool areSameElements(const ArrayPair& pair, const Criterion& criterion, std::string* message) {
  const auto type = static_cast<unsigned int>(pair.elementType);
  if (type < COMPARE_BY_TYPE.size()) {
    return COMPARE_BY_TYPE[type](pair, criterion, message);
  }
  if (Positions(pair.shape).none()) {
    return true;
  }
  throwInvalidComparison(UNKNOWN_ELEMENT_TYPE_LINE);
}

}  // namespace object_model::helper
