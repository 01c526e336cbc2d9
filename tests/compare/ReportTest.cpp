#include <gtest/gtest.h>
#include <quillon/compare/Report.h>

namespace quillon::compare {
namespace {

TEST(ReportTest, ThatOfNothingSaysThatAllIsTheSame) {
  const Report report;
  EXPECT_TRUE(report.same);
  EXPECT_EQ(report.values, 0U);
  EXPECT_TRUE(report.nanEqual);
  EXPECT_EQ(report.tolerance.absolute, 0.0);
  EXPECT_EQ(report.tolerance.relative, 0.0);
}

TEST(ReportTest, ADifferenceIsOneOfValuesWithoutFiguresUnlessToldOtherwise) {
  const Difference row;
  EXPECT_EQ(row.reason, Reason::Values);
  EXPECT_EQ(row.count, 0U);
  EXPECT_EQ(row.size, 0U);
  EXPECT_EQ(row.missing, 0U);
  EXPECT_EQ(row.largestRelative, 0.0);
  EXPECT_EQ(row.mean, 0.0);
}

TEST(ReportTest, PlacesAndPairsBeginWithZero) {
  EXPECT_EQ(Place().index, 0U);
  EXPECT_EQ(PlacedPair().delta, 0.0);
}

}  // namespace
}  // namespace quillon::compare
