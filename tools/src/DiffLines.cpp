#include "DiffLines.h"

#include <object_model/Tuple.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Wording.h>

#include <vector>

namespace quillon::tools {

using memory::axesOf;
using memory::AxisFacts;
using memory::counted;
using memory::escaped;
using memory::haveSameShape;
using memory::nameOf;

namespace {

using object_model::Array;

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

std::string shapeInWords(const Array& array) {
  std::vector<std::string> axes;
  for (const AxisFacts& axis : axesOf(array)) {
    axes.push_back(escaped(axis.name) + "=" + std::to_string(axis.size));
  }
  return axes.empty() ? "single value" : joined(axes);
}

/// " at x=1, y=2"; nothing for the only value of an array without dimensions.
std::string placeInWords(const Array& array, const std::vector<unsigned long>& position) {
  const std::vector<AxisFacts> axes = axesOf(array);
  std::vector<std::string> indices;
  for (std::size_t k = 0; k < axes.size(); ++k) {
    indices.push_back(escaped(axes[k].name) + "=" + std::to_string(position[k]));
  }
  return indices.empty() ? std::string() : " at " + joined(indices);
}

std::string nanInWords(const DiffFigures& figures) {
  return figures.nanInOne == 0
             ? std::string()
             : ", " + std::to_string(figures.nanInOne) + " with NaN in one file alone";
}

std::string exampleInWords(const Array& array, const Example& example) {
  return placeInWords(array, example.position) + ": " + example.values.first + " and " +
         example.values.second;
}

std::string ofValues(unsigned long count, const DiffFigures& figures) {
  return std::to_string(count) + " of " + counted(figures.values, "value");
}

}  // namespace

std::string outlineInWords(const Array& first, const Array& second) {
  std::vector<std::string> parts;
  if (first.getElementType() != second.getElementType()) {
    parts.push_back(std::string("the element types differ: ") + nameOf(first.getElementType()) +
                    " and " + nameOf(second.getElementType()));
  }
  if (!haveSameShape(first, second)) {
    parts.push_back("the shapes differ: " + shapeInWords(first) + " and " + shapeInWords(second));
  }
  return parts.size() == 2 ? parts[0] + "; " + parts[1] : joined(parts);
}

std::string differenceInWords(const Array& array, const DiffFigures& figures,
                              const ComparisonRule& rule) {
  if (figures.differing == 0) {
    return {};
  }
  const bool isRelative = rule.type == object_model::helper::ComparisonType::Relative;
  std::string text = ofValues(figures.differing, figures) +
                     (figures.differing == 1 ? " differs" : " differ") + nanInWords(figures);
  if (figures.delta.empty()) {
    text += "; the first";
  } else {
    text += std::string("; the largest ") + (isRelative ? "relative " : "") + "delta is " +
            figures.delta;
  }
  text += exampleInWords(array, figures.example);
  if (figures.visited == 0) {
    text +=
        " (no sentence is about these: it covers the positions with 0 on the 4th and later axes)";
  }
  return text;
}

std::string passedInWords(const Array& array, const DiffFigures& figures) {
  std::vector<std::string> reasons;
  if (figures.negativeReferences != 0) {
    reasons.push_back(std::to_string(figures.negativeReferences) +
                      " because a negative reference makes the relative delta negative");
  }
  if (figures.smallReferences != 0) {
    reasons.push_back(std::to_string(figures.smallReferences) +
                      " because nothing is divided by a reference of at most 1e-9");
  }
  if (figures.roundedIntegers != 0) {
    reasons.push_back(std::to_string(figures.roundedIntegers) +
                      " because deltas of large integers are rounded");
  }
  const unsigned long count =
      figures.negativeReferences + figures.smallReferences + figures.roundedIntegers;
  if (count == 0) {
    return {};
  }
  return ofValues(count, figures) + (count == 1 ? " passes" : " pass") +
         " although the delta exceeds the tolerance: " + joined(reasons) + "; the first" +
         exampleInWords(array, figures.passed);
}

}  // namespace quillon::tools
