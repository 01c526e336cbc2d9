#include <gtest/gtest.h>

#include <limits>

#include "ValueText.h"

namespace quillon::tools {
namespace {

TEST(ValueTextTest, NumbersTakeTheFewestDigitsThatTellThemApart) {
  EXPECT_EQ(toldApart(1.5, 2.0), TextPair("1.5", "2"));
  EXPECT_EQ(toldApart(1017.5500000001, 1017.55), TextPair("1017.5500000001", "1017.55"));
  EXPECT_EQ(toldApart(1017.55004, 1017.54996), TextPair("1017.55004", "1017.54996"));
  EXPECT_EQ(toldApart(0.1, 0.30000000000000004 - 0.2),
            TextPair("0.10000000000000001", "0.10000000000000003"));
  EXPECT_EQ(toldApart(-1e34, 1e300), TextPair("-1e+34", "1e+300"));
}

TEST(ValueTextTest, NumbersThatNoDigitTellsApartAreShown) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(toldApart(nan, 5.0), TextPair("nan", "5"));
  EXPECT_EQ(toldApart(nan, nan), TextPair("nan", "nan"));
}

TEST(ValueTextTest, ComplexNumbersAreToldApartByEitherPart) {
  EXPECT_EQ(toldApart(std::complex<double>(1, 2.00000001), std::complex<double>(1, 2)),
            TextPair("(1;2.00000001)", "(1;2)"));
}

TEST(ValueTextTest, IntegersAreWhole) {
  EXPECT_EQ(toldApart(18446744073709551615UL, 18446744073709551614UL),
            TextPair("18446744073709551615", "18446744073709551614"));
  EXPECT_EQ(toldApart(std::numeric_limits<long>::min(), -1L),
            TextPair("-9223372036854775808", "-1"));
}

TEST(ValueTextTest, BooleansAreWords) {
  EXPECT_EQ(toldApart(true, false), TextPair("true", "false"));
}

TEST(ValueTextTest, TextsAreEscapedAndInQuotes) {
  EXPECT_EQ(toldApart(std::string("a\n"), std::string()), TextPair("'a\\n'", "''"));
}

TEST(ValueTextTest, LongTextsAreCutAroundWhereTheyDiffer) {
  const std::string same(100, 'a');
  EXPECT_EQ(toldApart(same + "b", same + "c"), TextPair("...'aaaaaaaaaab'", "...'aaaaaaaaaac'"));
  EXPECT_EQ(toldApart("x" + same, "y"), TextPair("'x" + std::string(39, 'a') + "'...", "'y'"));
  EXPECT_EQ(toldApart(same, same + same),
            TextPair("...'" + std::string(10, 'a') + "'", "...'" + std::string(40, 'a') + "'..."));
}

TEST(ValueTextTest, CutsFallBetweenCharacters) {
  std::string same;
  for (int i = 0; i < 40; ++i) {
    same += "µ";
  }
  EXPECT_EQ(toldApart("a" + same + "x", "a" + same + "y"), TextPair("...'µµµµµx'", "...'µµµµµy'"));
}

}  // namespace
}  // namespace quillon::tools
