#include "Outline.h"

#include <object_model/BulkValues.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>

#include <string>
#include <utility>

#include "ValuesComparison.h"

namespace quillon::compare {
namespace {

using memory::AxisFacts;
using object_model::Array;

/// "(12, 3)": the slowest dimension first, as all that follows.
template <class Text>
std::string inParentheses(const std::vector<AxisFacts>& axes, const Text& text) {
  std::string result = "(";
  for (auto axis = axes.rbegin(); axis != axes.rend(); ++axis) {
    result += (axis == axes.rbegin() ? "" : ", ") + text(*axis);
  }
  return result + ")";
}

std::string shapeText(const std::vector<AxisFacts>& axes) {
  return inParentheses(axes, [](const AxisFacts& axis) { return std::to_string(axis.size); });
}

std::string namesText(const std::vector<AxisFacts>& axes) {
  return inParentheses(axes, [](const AxisFacts& axis) { return axis.name; });
}

bool haveSameNames(const std::vector<AxisFacts>& first, const std::vector<AxisFacts>& second) {
  for (std::size_t k = 0; k < first.size(); ++k) {
    if (first[k].name != second[k].name) {
      return false;
    }
  }
  return true;
}

bool isDecoded(const Array& array, const Options& options) {
  return options.isDecoded && options.isDecoded(array);
}

/// The names of both element types, or of the types in which both store them, where these differ
/// and are compared; empty where there is no difference.
std::pair<std::string, std::string> typesThatDiffer(const Array& first, const Array& second,
                                                    const Options& options) {
  const object_model::ElementType left = first.getElementType();
  const object_model::ElementType right = second.getElementType();
  if (areNumbers(left) && areNumbers(right) &&
      (isDecoded(first, options) || isDecoded(second, options))) {
    return {};
  }
  if (left != right) {
    return {memory::nameOf(left), memory::nameOf(right)};
  }
  const object_model::BulkValues* const a = memory::bulkValuesOf(first);
  const object_model::BulkValues* const b = memory::bulkValuesOf(second);
  if (!options.attributes || a == nullptr || b == nullptr || a->storedType() == b->storedType()) {
    return {};
  }
  return {memory::nameOf(a->storedType()), memory::nameOf(b->storedType())};
}

/// Both units where they differ: those that are shown or, where these agree, the physical ones.
std::pair<std::string, std::string> unitsThatDiffer(const Array& first, const Array& second) {
  std::pair<std::string, std::string> units = {first.getUnit(), second.getUnit()};
  if (units.first == units.second) {
    units = {first.getPhysicalUnit(), second.getPhysicalUnit()};
  }
  return units;
}

}  // namespace

std::vector<OutlineDifference> outlineDifferences(const Array& first, const Array& second,
                                                  const Options& options) {
  std::vector<OutlineDifference> differences;
  const auto add = [&](Reason reason, const std::string& a, const std::string& b) {
    if (a != b) {
      differences.push_back({reason, a, b});
    }
  };
  const std::vector<AxisFacts> left = memory::axesOf(first);
  const std::vector<AxisFacts> right = memory::axesOf(second);
  if (left.size() == right.size() && !haveSameNames(left, right)) {
    add(Reason::Dimensions, namesText(left), namesText(right));
  }
  add(Reason::Shape, shapeText(left), shapeText(right));
  const auto [firstType, secondType] = typesThatDiffer(first, second, options);
  add(Reason::ElementType, firstType, secondType);
  const auto [firstUnit, secondUnit] = unitsThatDiffer(first, second);
  add(Reason::Unit, firstUnit, secondUnit);
  return differences;
}

bool areTimesOfDifferentUnits(const Array& first, const Array& second) {
  return dynamic_cast<const memory::HasTimes*>(&first) != nullptr &&
         dynamic_cast<const memory::HasTimes*>(&second) != nullptr &&
         first.getUnit() != second.getUnit();
}

}  // namespace quillon::compare
