#include <gtest/gtest.h>

#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Interfaces.h"

namespace quillon::test {
namespace {

TEST(AreSameArrays, ReportsDifferentNames) {
  EXPECT_EQ(compareArrays(list<double>("A", {1}), list<double>("B", {1})),
            differs("The arrays have different names: 'A' and 'B'."));
}

TEST(AreSameArrays, ComparesNamesByteByByte) {
  const std::string withNull("a\0b", 3);
  EXPECT_EQ(compareArrays(list<double>(withNull, {1}), list<double>("a", {1})),
            differs("The arrays have different names: '" + withNull + "' and 'a'."));
  EXPECT_EQ(compareArrays(list<double>("", {1}), list<double>("", {1})), same());
}

TEST(AreSameArrays, ReportsOnlyTheNamesWhenTypesDifferToo) {
  EXPECT_EQ(compareArrays(list<double>("A", {1}), list<long>("B", {1, 2})),
            differs("The arrays have different names: 'A' and 'B'."));
}

/// Takes another name when it is read.
class RenamedArray : public ::test::PlainArray {
 public:
  const object_model::DataInfo* getInformation() const override { return &m_info; }
  double getValueAsDouble(const object_model::Tuple& /*index*/) const override {
    m_info = ::test::PlainArrayInfo("another name");
    return NOT_A_NUMBER;
  }

 private:
  mutable ::test::PlainArrayInfo m_info{"the name before"};
};

TEST(AreSameArrays, ReportsTheNameThatWasComparedWhateverItIsNow) {
  const RenamedArray array;
  EXPECT_EQ(compareArrays(array, array),
            differs("The arrays 'the name before' have different values at the position (0;0)': "
                    "'nan' and 'nan'."));
}

TEST(AreSameArrays, ReportsDifferentElementTypesAsNumbers) {
  EXPECT_EQ(compareArrays(list<double>("A", {1}), list<unsigned long>("A", {1})),
            differs("The arrays 'A' have different element type: '2' and '0'."));
  EXPECT_EQ(compareArrays(UnreadableArray("A", -1, {}), UnreadableArray("A", 70, {})),
            differs("The arrays 'A' have different element type: '-1' and '70'."));
}

TEST(AreSameArrays, ReportsOnlyTheElementTypesWhenShapesDifferToo) {
  EXPECT_EQ(compareArrays(list<double>("A", {1}), array<bool>("A", {1, 1}, {true})),
            differs("The arrays 'A' have different element type: '2' and '5'."));
}

TEST(AreSameArrays, ReportsDifferentNumbersOfDimensions) {
  EXPECT_EQ(compareArrays(list<double>("A", {1}), array<double>("A", {1, 1}, {1})),
            differs("The arrays 'A' have different dimensions: '1' and '2'."));
  EXPECT_EQ(compareArrays(array<double>("A", {}, {1}), array<double>("A", {0, 3, 0, 0, 0}, {})),
            differs("The arrays 'A' have different dimensions: '0' and '5'."));
}

TEST(AreSameArrays, ReportsADifferentExtent) {
  EXPECT_EQ(compareArrays(array<double>("A", {2, 3}, {1, 2, 3, 4, 5, 6}),
                          array<double>("A", {2, 4}, {1, 2, 3, 4, 5, 6, 7, 8})),
            differs("The arrays 'A' have different sizes for the dimension : '1': '3' and '4'."));
}

TEST(AreSameArrays, ReportsOnlyTheFirstDifferentExtent) {
  EXPECT_EQ(compareArrays(array<double>("A", {2, 3}, std::vector<double>(6)),
                          array<double>("A", {5, 4}, std::vector<double>(20))),
            differs("The arrays 'A' have different sizes for the dimension : '0': '2' and '5'."));
}

TEST(AreSameArrays, ChecksTheExtentsOfDimensionsThatAreNotTraversed) {
  EXPECT_EQ(compareArrays(UnreadableArray("A", 2, {1, 1, 1, 1, 1, 18446744073709551615UL}),
                          UnreadableArray("A", 2, {1, 1, 1, 1, 1, 7})),
            differs("The arrays 'A' have different sizes for the dimension : '5': "
                    "'18446744073709551615' and '7'."));
}

TEST(AreSameArrays, NeverReadsValuesOrExaminesTheModeWhenStructuresDiffer) {
  const auto mode = static_cast<ComparisonType>(7);
  EXPECT_EQ(compareArrays(UnreadableArray("A", 2, {2}), UnreadableArray("B", 2, {2}), mode),
            differs("The arrays have different names: 'A' and 'B'."));
  EXPECT_EQ(compareArrays(UnreadableArray("A", 9, {2}), UnreadableArray("A", 9, {3}), mode),
            differs("The arrays 'A' have different sizes for the dimension : '0': '2' and '3'."));
}

TEST(AreSameArrays, WithoutAMessageGivesTheResultAlone) {
  using object_model::helper::areSameArrays;
  const auto a = array<double>("A", {2}, {1, 2});
  EXPECT_TRUE(areSameArrays(a, list<double>("A", {1, 2}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(a, list<double>("B", {1, 2}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(a, list<long>("A", {1, 2}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(a, list<double>("A", {1}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(a, list<double>("A", {1, 3}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(a, list<double>("A", {1, 3}), ComparisonType::Relative, 0, nullptr));
}

TEST(AreSameArrays, ReplacesAMessageAndLeavesItWhenTheArraysAreTheSame) {
  using object_model::helper::areSameArrays;
  std::string message = "an old message";
  EXPECT_TRUE(areSameArrays(list<long>("A", {1}), list<long>("A", {1}), ComparisonType::Exact, 0,
                            &message));
  EXPECT_EQ(message, "an old message");
  EXPECT_FALSE(areSameArrays(list<long>("A", {1}), list<long>("B", {1}), ComparisonType::Exact, 0,
                             &message));
  EXPECT_EQ(message, "The arrays have different names: 'A' and 'B'.");
}

}  // namespace
}  // namespace quillon::test
