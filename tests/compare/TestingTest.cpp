#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <quillon/compare/testing.h>

#include "Support.h"

namespace quillon {
namespace {

const memory::DoubleArray ACTUAL = compare::row<double>("a", {1, 2});
const memory::DoubleArray EXPECTED = compare::row<double>("a", {1, 2.5});

TEST(TestingTest, SameObjectsPass) {
  EXPECT_TRUE(same(ACTUAL, ACTUAL));
  EXPECT_TRUE(same(ACTUAL, EXPECTED, compare::within(0.5)));
}

TEST(TestingTest, FailureSaysTheLines) {
  EXPECT_NONFATAL_FAILURE(EXPECT_TRUE(same(ACTUAL, EXPECTED)),
                          "/: 1 of 2 values differ; the largest delta is 0.5 at x=1: 2 and 2.5");
}

TEST(TestingTest, SuccessSaysHowManyValues) {
  EXPECT_NONFATAL_FAILURE(EXPECT_FALSE(same(ACTUAL, ACTUAL)), "the same: 2 values");
}

}  // namespace
}  // namespace quillon
