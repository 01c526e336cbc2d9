#include <gtest/gtest.h>
#include <object_model/TupleX.h>

#include <limits>
#include <string>

#include "ComparisonHelper/ValueText.h"

namespace {

using object_model::Tuple;
using object_model::TupleX;
using object_model::helper::complexToString;
using object_model::helper::tupleToString;

constexpr double INFINITE = std::numeric_limits<double>::infinity();

TEST(TupleToString, JoinsTheValuesInOrder) {
  EXPECT_EQ(tupleToString(TupleX({3, 0, 12})), "(3;0;12)");
}

TEST(TupleToString, WritesNoSeparatorForOneValue) {
  EXPECT_EQ(tupleToString(TupleX({7})), "(7)");
  EXPECT_EQ(tupleToString(TupleX({0})), "(0)");
}

TEST(TupleToString, WritesEmptyForNoValues) {
  EXPECT_EQ(tupleToString(TupleX(0)), "(empty)");
  EXPECT_EQ(tupleToString(Tuple()), "(empty)");
}

TEST(TupleToString, WritesTheLargestValueInFull) {
  EXPECT_EQ(tupleToString(TupleX({18446744073709551615UL, 1, 18446744073709551615UL})),
            "(18446744073709551615;1;18446744073709551615)");
}

TEST(ComplexToString, WritesBothPartsWithSixDecimals) {
  EXPECT_EQ(complexToString({1, -2.5}), "(1.000000;-2.500000)");
  EXPECT_EQ(complexToString({0, 0}), "(0.000000;0.000000)");
}

TEST(ComplexToString, KeepsTheSignOfZero) {
  EXPECT_EQ(complexToString({-0.0, 0.0}), "(-0.000000;0.000000)");
  EXPECT_EQ(complexToString({0.0, -0.0}), "(0.000000;-0.000000)");
}

TEST(ComplexToString, WritesLargeNumbersWithoutExponent) {
  EXPECT_EQ(complexToString({1e22, -1e22}),
            "(10000000000000000000000.000000;-10000000000000000000000.000000)");
  const std::string largest = complexToString({std::numeric_limits<double>::max(), 0});
  EXPECT_EQ(largest.size(),
            std::string("(").size() + 309 + std::string(".000000;0.000000)").size());
  EXPECT_EQ(largest.substr(0, 18), "(17976931348623157");
  EXPECT_EQ(largest.find('e'), std::string::npos);
}

TEST(ComplexToString, WritesInfinitiesAndNaN) {
  EXPECT_EQ(complexToString({INFINITE, -INFINITE}), "(inf;-inf)");
  EXPECT_EQ(complexToString({std::numeric_limits<double>::quiet_NaN(), 5e-324}), "(nan;0.000000)");
}

}  // namespace
