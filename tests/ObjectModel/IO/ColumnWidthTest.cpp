#include <gtest/gtest.h>

#include "IO/ColumnWidth.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

TEST(ColumnWidth, LeavesAGapOfTwoBehindTheName) {
  EXPECT_EQ(columnWidth(14), 16);
  EXPECT_EQ(columnWidth(100), 102);
}

TEST(ColumnWidth, Is15ForShortNames) {
  EXPECT_EQ(columnWidth(0), 15);
  EXPECT_EQ(columnWidth(13), 15);
}

TEST(ColumnWidth, EndsWithTheWidthsThatAStreamCanPadTo) {
  EXPECT_EQ(columnWidth(2147483645), 2147483647);
  EXPECT_EQ(test::thrownBy<std::length_error>([] { columnWidth(2147483646); }),
            "A column name of 2147483646 characters is too long to be aligned");
}

}  // namespace
}  // namespace object_model
