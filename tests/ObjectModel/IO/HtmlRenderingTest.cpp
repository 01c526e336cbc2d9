#include <object_model/IO.h>

#include <cmath>

#include "support/RenderingTest.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

class HtmlRendering : public test::RenderingTest {
 protected:
  std::string rendered(unsigned long maxRows = 0) {
    return exportDataFrameToHtml(m_frame, maxRows);
  }
};

TEST_F(HtmlRendering, ShowsTheFirstRowsAndEllipsisCellsForTheRest) {
  addExample();
  EXPECT_EQ(rendered(2),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>id</th><th>area</th><th>delta</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>1</th><th>0.5</th><th>-3</th>            </tr>\n"
            "            <tr><th>2</th><th>1.23457e+06</th><th>10</th>            </tr>\n"
            "<th>...</th><th>...</th><th>...</th>        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST_F(HtmlRendering, ClosesTheBodysRowOnALineOfItsOwnWhenNoRowIsLeftOut) {
  addExample();
  const std::string whole =
      "<table>\n"
      "    <thead>\n"
      "        <tr>\n"
      "<th>id</th><th>area</th><th>delta</th>        </tr>\n"
      "    </thead>\n"
      "    <tbody>\n"
      "        <tr>\n"
      "            <tr><th>1</th><th>0.5</th><th>-3</th>            </tr>\n"
      "            <tr><th>2</th><th>1.23457e+06</th><th>10</th>            </tr>\n"
      "            <tr><th>3</th><th>0.1</th><th>0</th>            </tr>\n"
      "        </tr>\n"
      "    </tbody>\n"
      "</table>\n";
  EXPECT_EQ(rendered(0), whole);
  EXPECT_EQ(rendered(3), whole);
  EXPECT_EQ(rendered(4), whole);
}

TEST_F(HtmlRendering, HasNoRowInItsBodyWhenTheTableHasNone) {
  addUInts("id", {});
  addInts("delta", {});
  EXPECT_EQ(rendered(),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>id</th><th>delta</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST_F(HtmlRendering, OfATableWithoutColumnsHasEmptyRowsAndNoEllipsis) {
  table().addRows(0, 3);
  const std::string before =
      "<table>\n"
      "    <thead>\n"
      "        <tr>\n"
      "        </tr>\n"
      "    </thead>\n"
      "    <tbody>\n"
      "        <tr>\n";
  const std::string row = "            <tr>            </tr>\n";
  const std::string after =
      "        </tr>\n"
      "    </tbody>\n"
      "</table>\n";
  EXPECT_EQ(rendered(2), before + row + row + after);
  EXPECT_EQ(rendered(0), before + row + row + row + after);
}

TEST_F(HtmlRendering, NeverPads) {
  addUInts("a", {7});
  addDoubles("b", {0.25});
  addInts("c", {-1});
  EXPECT_THAT(rendered(),
              ::testing::HasSubstr(
                  "            <tr><th>7</th><th>0.25</th><th>-1</th>            </tr>\n"));
}

// Deliberate: escaping is the caller's business.
TEST_F(HtmlRendering, WritesNamesUnescaped) {
  addUInts("<script>alert(1)</script> & \"more\"", {1});
  EXPECT_EQ(rendered(),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th><script>alert(1)</script> & \"more\"</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>1</th>            </tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST_F(HtmlRendering, WritesNamesThatAreNotAsciiAsTheyAre) {
  addUInts("größe", {1});
  EXPECT_EQ(rendered(),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>größe</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>1</th>            </tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST_F(HtmlRendering, GivesAColumnOfAnotherTypeEmptyCells) {
  addUInts("a", {1});
  table().addColumn("other", tabra::DataType(static_cast<tabra::DataTypeId>(0x99)));
  addInts("c", {-1});
  EXPECT_EQ(rendered(),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>a</th><th>other</th><th>c</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>1</th><th></th><th>-1</th>            </tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST_F(HtmlRendering, ReadsOnlyTheRowsShownInOneGoAColumn) {
  addExample();
  rendered(2);
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 2, buffer)", "columnDataType(1)",
                                                       "read(1, 0, 2, buffer)", "columnDataType(2)",
                                                       "read(2, 0, 2, buffer)", "columnName(0)",
                                                       "columnName(1)", "columnName(2)"));
}

TEST_F(HtmlRendering, FollowsTheGlobalLocale) {
  addUInts("id", {1234567});
  addDoubles("area", {0.5});
  const test::GermanLocale german;
  EXPECT_THAT(rendered(), ::testing::HasSubstr("<th>1.234.567</th><th>0,5</th>"));
}

// A stream takes up the global locale when it is made, which is after the values are read.
TEST(HtmlRenderingOfTurningTables, FollowsTheLocaleThatReadingSets) {
  EXPECT_EQ(exportDataFrameToHtml(std::make_shared<test::GermanFrame>(), 0),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>row</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>1.234.567</th>            </tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST(HtmlRenderingOfHugeTables, TouchesOnlyTheRowsShown) {
  EXPECT_EQ(exportDataFrameToHtml(std::make_shared<test::ClaimingFrame>(1UL << 63), 1),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>row</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>0</th>            </tr>\n"
            "<th>...</th>        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST(HtmlRenderingOfHugeTables, RefusesEmptyRowsThatNoMemoryCanShow) {
  const auto refuse = [](unsigned long rows) {
    const test::TurningFrame::Shape shape = {0, rows};
    exportDataFrameToHtml(std::make_shared<test::TurningFrame>(std::vector{shape}), 0);
  };
  EXPECT_EQ(test::thrownBy<std::length_error>([&] { refuse(~0UL); }),
            "Cannot hold the text of 18446744073709551615 rows");
  // Each row takes 34 characters.
  const unsigned long most = std::string().max_size() / 34;
  EXPECT_EQ(test::thrownBy<std::length_error>([&] { refuse(most + 1); }),
            "Cannot hold the text of 135637824071393762 rows");
  EXPECT_THROW(refuse(most), std::bad_alloc);
  EXPECT_THROW(refuse(1UL << 45U), std::bad_alloc);
  EXPECT_THROW(refuse(1UL << 36U), std::bad_alloc);
}

TEST(HtmlRenderingOfTurningTables, ShowsTheColumnsThatAreLeft) {
  const std::vector<test::TurningFrame::Shape> shapes = {{3, 1}, {1, 1}};
  EXPECT_EQ(exportDataFrameToHtml(std::make_shared<test::TurningFrame>(shapes), 0),
            "<table>\n"
            "    <thead>\n"
            "        <tr>\n"
            "<th>a</th>        </tr>\n"
            "    </thead>\n"
            "    <tbody>\n"
            "        <tr>\n"
            "            <tr><th>0</th>            </tr>\n"
            "        </tr>\n"
            "    </tbody>\n"
            "</table>\n");
}

TEST(HtmlRenderingOfFailingTables, LetsExceptionsOfTheFrameThrough) {
  EXPECT_THROW(exportDataFrameToHtml(std::make_shared<test::UnreadableFrame>(), 0),
               std::domain_error);
}

}  // namespace
}  // namespace object_model
