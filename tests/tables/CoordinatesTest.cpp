#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "Coordinates.h"
#include "TestArrays.h"

namespace quillon::tables {
namespace {

using ::testing::ElementsAre;

TEST(CoordinatesTest, NumbersAreTheShortestTextsThatTellThemInTheirType) {
  EXPECT_THAT(
      valuesOf(memory::DoubleArray("d", {{"d", 3}}, {0.123456789, std::nan(""), -2})).asTexts(),
      ElementsAre("0.123456789", "", "-2"));
  EXPECT_THAT(valuesOf(Stored<float>("f", {{"f", 2}}, {0.1, 16777216})).asTexts(),
              ElementsAre("0.1", "16777216"));
  EXPECT_THAT(valuesOf(memory::UIntArray("u", {{"u", 2}}, {0, ~0UL})).asTexts(),
              ElementsAre("0", "18446744073709551615"));
}

TEST(CoordinatesTest, TheLowestIntegerIsANumberWhereNoneIsMissing) {
  const CoordinateValues values =
      valuesOf(memory::IntArray("i", {{"i", 3}}, {std::numeric_limits<long>::lowest(), -1, 0}));
  EXPECT_THAT(values.asTexts(), ElementsAre("-9223372036854775808", "-1", "0"));
  EXPECT_EQ(values.asNumbers()[0], -9223372036854775808.0L);
}

}  // namespace
}  // namespace quillon::tables
