#include <object_model/IO.h>

#include <cmath>

#include "support/RenderingTest.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using tabra::DataType;
using tabra::DataTypeId;

class TextRendering : public test::RenderingTest {
 protected:
  std::string rendered(unsigned long maxRows = 0) {
    return exportDataFrameToString(m_frame, maxRows);
  }
};

TEST_F(TextRendering, ShowsTheFirstRowsAndDotsForTheRest) {
  addExample();
  EXPECT_EQ(rendered(2),
            "id             area           delta\n"
            "1              0.5            -3\n"
            "2              1.23457e+06    10\n"
            "...\n");
}

TEST_F(TextRendering, ShowsEveryRowWithoutDotsWhenTheLimitIs0OrNotBelowTheRows) {
  addExample();
  const std::string whole =
      "id             area           delta\n"
      "1              0.5            -3\n"
      "2              1.23457e+06    10\n"
      "3              0.1            0\n";
  EXPECT_EQ(rendered(0), whole);
  EXPECT_EQ(rendered(3), whole);
  EXPECT_EQ(rendered(4), whole);
  EXPECT_EQ(rendered(~0UL), whole);
}

TEST_F(TextRendering, ShowsTheHeaderAloneWhenThereAreNoRows) {
  addUInts("id", {});
  addDoubles("area", {});
  EXPECT_EQ(rendered(), "id             area\n");
}

TEST_F(TextRendering, OfATableWithoutColumnsIsEmptyOrJustDots) {
  table().addRows(0, 3);
  EXPECT_EQ(rendered(0), "");
  EXPECT_EQ(rendered(3), "");
  EXPECT_EQ(rendered(2), "...\n");
}

TEST_F(TextRendering, OfATableWithoutColumnsTakesNoTimeForItsRows) {
  table().addRows(0, 1UL << 59);
  EXPECT_EQ(rendered(0), "");
  EXPECT_EQ(rendered(1UL << 58), "...\n");
}

TEST_F(TextRendering, NeverPadsASingleColumn) {
  addInts("n", {-5, 123456});
  EXPECT_EQ(rendered(), "n\n-5\n123456\n");
}

TEST_F(TextRendering, MakesAColumn15WideOr2WiderThanItsName) {
  addUInts("thirteen_char", {1});
  addUInts("fourteen_chars", {2});
  addUInts("last", {3});
  EXPECT_EQ(rendered(),
            "thirteen_char  fourteen_chars  last\n"
            "1              2               3\n");
}

TEST_F(TextRendering, LetsAValueThatFillsItsColumnTouchTheNext) {
  addUInts("a", {123456789012345UL, 1234567890123456UL});
  addUInts("b", {7, 8});
  EXPECT_EQ(rendered(),
            "a              b\n"
            "1234567890123457\n"
            "12345678901234568\n");
}

// Deliberate: a column is as wide as its name is long in bytes, however many characters these are.
TEST_F(TextRendering, CountsTheBytesOfANameThatIsNotAscii) {
  addUInts("größe", {1});
  addUInts("温度温度温", {2});  // 15 bytes
  addUInts("last", {3});
  EXPECT_EQ(rendered(),
            "größe        温度温度温  last\n"
            "1              2                3\n");
}

TEST_F(TextRendering, WritesIntegersInPlainDecimal) {
  addUInts("u", {0, 18446744073709551615UL});
  addInts("i", {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()});
  EXPECT_EQ(rendered(),
            "u              i\n"
            "0              -9223372036854775808\n"
            "184467440737095516159223372036854775807\n");
}

TEST_F(TextRendering, WritesFloatingPointNumbersWithSixSignificantDigits) {
  addDoubles("d", {100000.0, 999999.5, 1234567.0, 0.0001, 0.00001, 1.0 / 3, -0.0, 5e-324,
                   std::numeric_limits<double>::max()});
  EXPECT_EQ(rendered(),
            "d\n100000\n1e+06\n1.23457e+06\n0.0001\n1e-05\n0.333333\n-0\n4.94066e-324\n"
            "1.79769e+308\n");
}

TEST_F(TextRendering, WritesSpecialNumbersAsThePlatformDoes) {
  constexpr double INF = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  addDoubles("d", {INF, -INF, nan, std::copysign(nan, -1.0)});
  EXPECT_EQ(rendered(), "d\ninf\n-inf\nnan\n-nan\n");
}

TEST_F(TextRendering, WritesNamesAsTheyAre) {
  addUInts("", {1});
  addUInts("two\nlines", {2});
  addUInts("z", {3});
  EXPECT_EQ(rendered(), "               two\nlines      z\n1              2              3\n");
}

TEST_F(TextRendering, GivesAColumnOfAnotherTypeEmptyCellsOfItsWidth) {
  addUInts("a", {1, 2});
  table().addColumn("other", DataType(static_cast<DataTypeId>(0x99)));
  addInts("c", {-1, -2});
  table().addColumn("last", DataType(static_cast<DataTypeId>(0)));
  EXPECT_EQ(rendered(),
            "a              other          c              last\n"
            "1                             -1             \n"
            "2                             -2             \n");
}

TEST_F(TextRendering, ReadsOnlyTheRowsShownInOneGoAColumn) {
  addExample();
  rendered(2);
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 2, buffer)", "columnDataType(1)",
                                                       "read(1, 0, 2, buffer)", "columnDataType(2)",
                                                       "read(2, 0, 2, buffer)", "columnName(0)",
                                                       "columnName(1)", "columnName(2)"));
}

TEST_F(TextRendering, IssuesTheReadOfAColumnThatItCannotShow) {
  table().addRows(0, 1);
  table().addColumn("other", DataType(static_cast<DataTypeId>(0x99)));
  rendered();
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 1, null)", "columnName(0)"));
}

TEST_F(TextRendering, FollowsTheGlobalLocale) {
  addUInts("id", {1234567});
  addDoubles("area", {0.5});
  const test::GermanLocale german;
  EXPECT_EQ(rendered(), "id             area\n1.234.567      0,5\n");
}

// A stream takes up the global locale when it is made, which is after the values are read.
TEST(TextRenderingOfTurningTables, FollowsTheLocaleThatReadingSets) {
  EXPECT_EQ(exportDataFrameToString(std::make_shared<test::GermanFrame>(), 0), "row\n1.234.567\n");
}

TEST(TextRenderingOfHugeTables, TouchesOnlyTheRowsShown) {
  EXPECT_EQ(exportDataFrameToString(std::make_shared<test::ClaimingFrame>(1UL << 63), 2),
            "row\n0\n1\n...\n");
}

TEST(TextRenderingOfHugeTables, HasNoLinesWithoutColumns) {
  const std::vector<test::TurningFrame::Shape> shapes = {{0, ~0UL}};
  EXPECT_EQ(exportDataFrameToString(std::make_shared<test::TurningFrame>(shapes), 0), "");
  EXPECT_EQ(exportDataFrameToString(std::make_shared<test::TurningFrame>(shapes), 5), "...\n");
  EXPECT_EQ(exportDataFrameToString(std::make_shared<test::TurningFrame>(shapes), ~0UL), "");
}

TEST(TextRenderingOfHugeTables, RefusesMoreRowsThanAStringCanHold) {
  const auto refuse = [](unsigned long rows) {
    exportDataFrameToString(std::make_shared<test::UnshownFrame>(rows), 0);
  };
  // Each row takes one character.
  const unsigned long most = std::string().max_size();
  EXPECT_EQ(test::thrownBy<std::length_error>([&] { refuse(most + 1); }),
            "Cannot hold the text of 4611686018427387904 rows");
  EXPECT_THROW(refuse(most), std::bad_alloc);
}

TEST(TextRenderingOfTurningTables, ShowsTheColumnsThatAreLeft) {
  const auto rendered = [](std::vector<test::TurningFrame::Shape> shapes) {
    return exportDataFrameToString(std::make_shared<test::TurningFrame>(std::move(shapes)), 0);
  };
  EXPECT_EQ(rendered({{3, 2}, {1, 2}}), "a\n0\n0\n");
  EXPECT_EQ(rendered({{3, 2}, {0, 0}}), "");
  EXPECT_EQ(rendered({{1, 2}, {3, 5}}), "a\n0\n0\n");
}

TEST(TextRenderingOfFailingTables, LetsExceptionsOfTheFrameThrough) {
  EXPECT_THROW(exportDataFrameToString(std::make_shared<test::UnreadableFrame>(), 0),
               std::domain_error);
}

}  // namespace
}  // namespace object_model
