#include <gmock/gmock.h>
#include <object_model/IO.h>

#include <cmath>
#include <limits>
#include <locale>
#include <stdexcept>

#include "support/RecordingDataFrame.h"

namespace object_model {
namespace {

using tabra::DataType;
using tabra::DataTypeId;

class TextRendering : public ::testing::Test {
 protected:
  template <class T>
  void addColumn(const std::string& name, DataTypeId type, const std::vector<T>& values) {
    static_assert(sizeof(T) == 8);
    if (m_frame->frame().shape()[0] == 0) {
      m_frame->frame().addRows(0, values.size());
    }
    m_frame->frame().addColumn(name, DataType(type));
    m_frame->frame().write(m_frame->frame().shape()[0] - 1, 0, values.size(), values.data());
  }
  void addUInts(const std::string& name, const std::vector<unsigned long>& values) {
    addColumn(name, DataTypeId::UInt64, values);
  }
  void addInts(const std::string& name, const std::vector<long>& values) {
    addColumn(name, DataTypeId::Int64, values);
  }
  void addDoubles(const std::string& name, const std::vector<double>& values) {
    addColumn(name, DataTypeId::Float64, values);
  }
  void addExample() {
    addUInts("id", {1, 2, 3});
    addDoubles("area", {0.5, 1234567.0, 0.1});
    addInts("delta", {-3, 10, 0});
  }

  std::string rendered(unsigned long maxRows = 0) {
    return exportDataFrameToString(m_frame, maxRows);
  }

  std::shared_ptr<test::RecordingDataFrame> m_frame = std::make_shared<test::RecordingDataFrame>();
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
  m_frame->frame().addRows(0, 3);
  EXPECT_EQ(rendered(0), "");
  EXPECT_EQ(rendered(3), "");
  EXPECT_EQ(rendered(2), "...\n");
}

TEST_F(TextRendering, OfATableWithoutColumnsTakesNoTimeForItsRows) {
  m_frame->frame().addRows(0, 1UL << 59);
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
  m_frame->frame().addColumn("other", DataType(static_cast<DataTypeId>(0x99)));
  addInts("c", {-1, -2});
  m_frame->frame().addColumn("last", DataType(static_cast<DataTypeId>(0)));
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
  m_frame->frame().addRows(0, 1);
  m_frame->frame().addColumn("other", DataType(static_cast<DataTypeId>(0x99)));
  rendered();
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 1, null)", "columnName(0)"));
}

class GermanNumbers : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(TextRendering, FollowsTheGlobalLocale) {
  addUInts("id", {1234567});
  addDoubles("area", {0.5});
  const std::locale before = std::locale::global(std::locale(std::locale(), new GermanNumbers));
  const std::string text = rendered();
  std::locale::global(before);
  EXPECT_EQ(text, "id             area\n1.234.567      0,5\n");
}

/// A table whose rows are claimed, not held.
class ClaimingFrame : public test::RecordingDataFrame {
 public:
  explicit ClaimingFrame(unsigned long rows) : m_shape{1, rows} {}
  const std::array<unsigned long, 2>& shape() const override { return m_shape; }
  const std::string& columnName(unsigned long /*column*/) const override { return m_name; }
  DataType columnDataType(unsigned long /*column*/) const override {
    return DataType(DataTypeId::UInt64);
  }
  void read(unsigned long /*column*/, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    for (unsigned long i = 0; i < count; ++i) {
      static_cast<unsigned long*>(destination)[i] = firstRow + i;
    }
  }

 private:
  std::array<unsigned long, 2> m_shape;
  std::string m_name = "row";
};

TEST(TextRenderingOfHugeTables, TouchesOnlyTheRowsShown) {
  EXPECT_EQ(exportDataFrameToString(std::make_shared<ClaimingFrame>(1UL << 63), 2),
            "row\n0\n1\n...\n");
}

TEST(TextRenderingOfHugeTables, RefusesMoreRowsThanMemoryCanEverHold) {
  EXPECT_THROW(exportDataFrameToString(std::make_shared<ClaimingFrame>((1UL << 61) + 1), 0),
               std::length_error);
  EXPECT_THROW(exportDataFrameToString(std::make_shared<ClaimingFrame>(1UL << 63), 0),
               std::length_error);
}

/// A table that cannot be read.
class UnreadableFrame : public ClaimingFrame {
 public:
  UnreadableFrame() : ClaimingFrame(3) {}
  void read(unsigned long /*column*/, unsigned long /*firstRow*/, unsigned long /*count*/,
            void* /*destination*/) const override {
    throw std::domain_error("unreadable");
  }
};

TEST(TextRenderingOfFailingTables, LetsExceptionsOfTheFrameThrough) {
  EXPECT_THROW(exportDataFrameToString(std::make_shared<UnreadableFrame>(), 0), std::domain_error);
}

}  // namespace
}  // namespace object_model
