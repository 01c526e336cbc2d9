#include <gtest/gtest.h>
#include <quillon/memory/Bounded.h>

namespace quillon::memory {
namespace {

TEST(Bounded, ProductsAndSumsAreThoseOfTheNumbers) {
  EXPECT_EQ(boundedProduct(6, 7), 42U);
  EXPECT_EQ(boundedProduct(0, LARGEST_SIZE), 0U);
  EXPECT_EQ(boundedProduct(LARGEST_SIZE, 0), 0U);
  EXPECT_EQ(boundedProduct(LARGEST_SIZE, 1), LARGEST_SIZE);
  EXPECT_EQ(boundedProduct(2, LARGEST_SIZE / 2), LARGEST_SIZE - 1);
  EXPECT_EQ(boundedSum(6, 7), 13U);
  EXPECT_EQ(boundedSum(LARGEST_SIZE - 1, 1), LARGEST_SIZE);
}

TEST(Bounded, TheyStopAtTheLargest) {
  EXPECT_EQ(boundedProduct(1UL << 32U, 1UL << 32U), LARGEST_SIZE);
  EXPECT_EQ(boundedProduct(LARGEST_SIZE, 2), LARGEST_SIZE);
  EXPECT_EQ(boundedSum(LARGEST_SIZE, 1), LARGEST_SIZE);
  EXPECT_EQ(boundedSum(LARGEST_SIZE, LARGEST_SIZE), LARGEST_SIZE);
}

}  // namespace
}  // namespace quillon::memory
