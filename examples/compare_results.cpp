/// @file
/// Two results of one analysis: are they the same, and if not, which sentence says what differs?
#include <object_model/ComparisonHelper.h>
#include <quillon/memory/TypedArray.h>

#include <iostream>
#include <string>
#include <utility>
#include <vector>

using object_model::AxisType;
using namespace object_model::helper;
using namespace quillon::memory;

namespace {

Dictionary measuredCells(std::vector<unsigned long> areas, std::vector<double> intensities) {
  Dictionary cells("cells");
  cells.add(UIntArray("area", {Axis(AxisType::Label, 3)}, std::move(areas)));
  cells.add(DoubleArray("intensity", {Axis(AxisType::Label, 3)}, std::move(intensities)));
  return cells;
}

void compare(const Dictionary& first, const Dictionary& second, ComparisonType type,
             double tolerance) {
  std::string difference;  // written only when there is one
  if (areSameDictionaries(first, second, type, tolerance, &difference)) {
    std::cout << "  the same\n";
  } else {
    std::cout << "  " << difference << '\n';
  }
}

}  // namespace

int main() {
  const Dictionary before = measuredCells({212, 96, 154}, {0.51, 0.77, 0.95});
  const Dictionary after = measuredCells({212, 96, 154}, {0.51, 0.771, 0.949});

  std::cout << "exactly (the sentence is about the last difference of an array):\n";
  compare(before, after, ComparisonType::Exact, 0);

  std::cout << "within 0.01:\n";
  compare(before, after, ComparisonType::Absolute, 0.01);

  std::cout << "within 0.11 percent:\n";
  compare(before, after, ComparisonType::Relative, 0.0011);

  std::cout << "within 1 percent:\n";
  compare(before, after, ComparisonType::Relative, 0.01);

  // The outline is names, kinds and number of the entries; values do not count.
  Dictionary areaOnly("cells");
  areaOnly.add(UIntArray("area", {Axis(AxisType::Label, 3)}, {212, 96, 154}));
  std::string difference;
  std::cout << std::boolalpha << "same outline:\n"
            << "  before and after: " << areSimilarDictionaries(before, after, nullptr) << '\n'
            << "  before and area alone: " << areSimilarDictionaries(before, areaOnly, &difference)
            << '\n';
  std::cout << "  " << difference << '\n';

  const DoubleArray drift("drift", {Axis(AxisType::Time, 2)}, {0.5, -1});
  const DoubleArray longer("drift", {Axis(AxisType::Time, 3)}, {0.5, -1, 0});
  areSameArrays(drift, longer, ComparisonType::Exact, 0, &difference);
  std::cout << "two arrays:\n  " << difference << '\n';

  // The relative delta is divided by the second value with its sign, so that a negative one passes
  // whatever the delta is. Compare values that may be negative absolutely.
  const DoubleArray opposite("drift", {Axis(AxisType::Time, 2)}, {0.5, -100});
  std::cout << "-1 and -100 are the same within 1 percent: "
            << areSameArrays(drift, opposite, ComparisonType::Relative, 0.01, nullptr)
            << ", within 0.01: "
            << areSameArrays(drift, opposite, ComparisonType::Absolute, 0.01, nullptr) << '\n';
}
