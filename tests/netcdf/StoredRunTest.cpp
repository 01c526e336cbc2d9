#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "StoredRun.h"

namespace quillon::netcdf {
namespace {

using Visits = std::vector<std::array<unsigned long, 3>>;

/// From where to where how many bytes are, in order.
Visits visitsOf(unsigned long valueBytes, const std::vector<RunDimension>& dimensions) {
  Visits visits;
  EXPECT_TRUE(forEachRun(valueBytes, dimensions,
                         [&visits](unsigned long from, unsigned long to, unsigned long bytes) {
                           visits.push_back({from, to, bytes});
                           return true;
                         }));
  return visits;
}

TEST(StoredRunTest, OneValueIsARun) { EXPECT_EQ(visitsOf(8, {}), (Visits{{0, 0, 8}})); }

TEST(StoredRunTest, ValuesThatFollowEachOtherInBothPlacesAreOneRun) {
  EXPECT_EQ(visitsOf(4, {{3, 4, 4}}), (Visits{{0, 0, 12}}));
  EXPECT_EQ(visitsOf(4, {{3, 4, 4}, {2, 12, 12}}), (Visits{{0, 0, 24}}));
}

TEST(StoredRunTest, StepInEitherPlaceEndsARun) {
  EXPECT_EQ(visitsOf(4, {{2, 8, 4}}), (Visits{{0, 0, 4}, {8, 4, 4}}));
  EXPECT_EQ(visitsOf(4, {{2, 4, 8}}), (Visits{{0, 0, 4}, {4, 8, 4}}));
  EXPECT_EQ(visitsOf(2, {{3, 2, 2}, {2, 10, 6}}), (Visits{{0, 0, 6}, {10, 6, 6}}));
}

TEST(StoredRunTest, RunEndsAtTheFirstStepAlthoughLaterDimensionsFollowEachOther) {
  EXPECT_EQ(visitsOf(4, {{2, 8, 8}, {2, 4, 4}}),
            (Visits{{0, 0, 4}, {8, 8, 4}, {4, 4, 4}, {12, 12, 4}}));
}

TEST(StoredRunTest, EarlierDimensionsGoRoundFirst) {
  EXPECT_EQ(visitsOf(1, {{2, 3, 5}, {3, 7, 11}}),
            (Visits{{0, 0, 1}, {3, 5, 1}, {7, 11, 1}, {10, 16, 1}, {14, 22, 1}, {17, 27, 1}}));
}

TEST(StoredRunTest, DimensionOfOneIndexDoesNotEndARun) {
  EXPECT_EQ(visitsOf(4, {{1, 100, 200}, {3, 4, 4}}), (Visits{{0, 0, 12}}));
}

TEST(StoredRunTest, EndsAtTheFirstRefusal) {
  int visits = 0;
  EXPECT_FALSE(forEachRun(4, {{3, 8, 4}}, [&visits](unsigned long, unsigned long, unsigned long) {
    return ++visits < 2;
  }));
  EXPECT_EQ(visits, 2);
}

}  // namespace
}  // namespace quillon::netcdf
