#include <gmock/gmock.h>
#include <object_model/IO.h>

#include <array>
#include <iomanip>
#include <optional>
#include <sstream>

#include "IO/DataFrameExtraction.h"
#include "support/RecordingDataFrame.h"
#include "support/RenderingTest.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using tabra::DataType;
using tabra::DataTypeId;

template <class T>
std::string cell(T value, int width = 0) {
  std::ostringstream stream;
  stream << std::left << std::setw(width);
  void* end = writeToStream<std::ostringstream, T>(stream, &value);
  EXPECT_EQ(end, &value + 1);
  return stream.str();
}

TEST(WriteToStream, WritesAsTheStreamDoesAndMovesPastTheValue) {
  EXPECT_EQ(cell(18446744073709551615UL), "18446744073709551615");
  EXPECT_EQ(cell(-3L), "-3");
  EXPECT_EQ(cell(1234567.0), "1.23457e+06");
  EXPECT_EQ(cell(0.5, 6), "0.5   ");
}

class Extraction : public ::testing::Test {
 protected:
  FrameExtract& extract(unsigned long rows) {
    return m_extract.emplace(std::shared_ptr<tabra::DataFrameView>(m_frame), rows);
  }

  /// The next value of a column of what was extracted, as a cell of the given width.
  std::string write(unsigned long column, int width = 0) {
    std::ostringstream stream;
    stream << std::left << std::setw(width);
    m_extract->writeNext(column, stream);
    return stream.str();
  }

  std::shared_ptr<test::RecordingDataFrame> m_frame = std::make_shared<test::RecordingDataFrame>();
  std::optional<FrameExtract> m_extract;
};

TEST_F(Extraction, ReadsEachColumnInOneGoAndNoMoreThanTheRowsShown) {
  m_frame->addRows(0, 3);
  m_frame->addColumn("a", DataType(DataTypeId::UInt64));
  m_frame->addColumn("b", DataType(DataTypeId::Float64));
  m_frame->forgetCalls();
  extract(2);
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 2, buffer)", "columnDataType(1)",
                                                       "read(1, 0, 2, buffer)"));
  EXPECT_EQ(m_extract->columns(), 2U);
  EXPECT_EQ(m_extract->shownRows(), 2U);
}

TEST_F(Extraction, WritesEachColumnAsItsTypeHasIt) {
  m_frame->addRows(0, 1);
  m_frame->addColumn("a", DataType(DataTypeId::UInt64));
  m_frame->addColumn("b", DataType(DataTypeId::Int64));
  m_frame->addColumn("c", DataType(DataTypeId::Float64));
  const unsigned long a = ~0UL;
  const long b = -5;
  const double c = 0.25;
  m_frame->write(0, 0, 1, &a);
  m_frame->write(1, 0, 1, &b);
  m_frame->write(2, 0, 1, &c);
  extract(1);
  EXPECT_EQ(write(0), "18446744073709551615");
  EXPECT_EQ(write(1), "-5");
  EXPECT_EQ(write(2), "0.25");
}

TEST_F(Extraction, WritesTheValuesOfAColumnOneAfterTheOther) {
  m_frame->addRows(0, 3);
  m_frame->addColumn("a", DataType(DataTypeId::UInt64));
  const std::array<unsigned long, 3> values = {7, 8, 9};
  m_frame->write(0, 0, 3, values.data());
  extract(0);
  EXPECT_EQ(write(0, 3), "7  ");
  EXPECT_EQ(write(0), "8");
  EXPECT_EQ(write(0), "9");
}

TEST_F(Extraction, GivesAColumnOfAnotherTypeNoBufferAndEmptyCells) {
  m_frame->addRows(0, 1);
  m_frame->addColumn("a", DataType(static_cast<DataTypeId>(0x99)));
  m_frame->addColumn("b", DataType(DataTypeId::Int64));
  const long b = -5;
  m_frame->write(1, 0, 1, &b);
  m_frame->forgetCalls();
  extract(1);
  EXPECT_THAT(m_frame->calls(), ::testing::ElementsAre("shape()", "shape()", "columnDataType(0)",
                                                       "read(0, 0, 1, null)", "columnDataType(1)",
                                                       "read(1, 0, 1, buffer)"));
  EXPECT_EQ(write(0), "");
  EXPECT_EQ(write(0, 3), "   ");
  EXPECT_EQ(write(1), "-5");
}

TEST_F(Extraction, RefusesMoreRowsThanMemoryCanEverHold) {
  const auto refusal = [](unsigned long rows) {
    return test::thrownBy<std::length_error>(
        [&] { FrameExtract(std::make_shared<test::ClaimingFrame>(rows), 0); });
  };
  // Times 8 these wrap around to 8 and to 0 bytes.
  EXPECT_EQ(refusal((1UL << 61) + 1), "Cannot hold 2305843009213693953 rows of a column");
  EXPECT_EQ(refusal(1UL << 61), "Cannot hold 2305843009213693952 rows of a column");
  EXPECT_EQ(refusal(~0UL), "Cannot hold 18446744073709551615 rows of a column");
  // This many bytes can be counted, but no vector takes them.
  EXPECT_EQ(refusal((1UL << 61) - 1), "Cannot hold 2305843009213693951 rows of a column");
  EXPECT_EQ(refusal(1UL << 60), "Cannot hold 1152921504606846976 rows of a column");
  // A vector would take them, but no memory has them.
  EXPECT_THROW(FrameExtract(std::make_shared<test::ClaimingFrame>((1UL << 60) - 1), 0),
               std::bad_alloc);
}

class ShownRows : public ::testing::Test {
 protected:
  static FrameExtract of(unsigned long rows, unsigned long maxRows) {
    auto frame = std::make_shared<tabra::MemoryDataFrame>();
    frame->addRows(0, rows);
    return {frame, maxRows};
  }
};

TEST_F(ShownRows, AreAllForNoLimit) {
  EXPECT_EQ(of(5, 0).shownRows(), 5U);
  EXPECT_EQ(of(0, 0).shownRows(), 0U);
  EXPECT_FALSE(of(5, 0).rowsLeftOut());
}

TEST_F(ShownRows, AreLimitedOnlyBelowTheRowCount) {
  EXPECT_EQ(of(5, 4).shownRows(), 4U);
  EXPECT_TRUE(of(5, 4).rowsLeftOut());
  EXPECT_EQ(of(5, 5).shownRows(), 5U);
  EXPECT_FALSE(of(5, 5).rowsLeftOut());
  EXPECT_EQ(of(5, 6).shownRows(), 5U);
}

/// Both renderings refuse what they cannot extract, before they write any of it.
class RenderingOfHugeTables : public ::testing::TestWithParam<decltype(&exportDataFrameToString)> {
 protected:
  static void render(const std::shared_ptr<tabra::DataFrameView>& frame, unsigned long maxRows) {
    GetParam()(frame, maxRows);
  }

  template <class Call>
  static std::string refusal(const Call& call) {
    return test::thrownBy<std::length_error>(call);
  }
};

TEST_P(RenderingOfHugeTables, RefusesMoreRowsThanMemoryCanEverHold) {
  const auto refuse = [](unsigned long rows) {
    render(std::make_shared<test::ClaimingFrame>(rows), 0);
  };
  EXPECT_EQ(refusal([&] { refuse((1UL << 61U) + 1); }),
            "Cannot hold 2305843009213693953 rows of a column");
  EXPECT_EQ(refusal([&] { refuse(1UL << 63U); }),
            "Cannot hold 9223372036854775808 rows of a column");
}

TEST_P(RenderingOfHugeTables, RefusesRowsOfNoValuesThatNoMemoryCanShow) {
  const auto refuse = [](unsigned long rows) {
    render(std::make_shared<test::UnshownFrame>(rows), 0);
  };
  EXPECT_EQ(refusal([&] { refuse(~0UL); }), "Cannot hold the text of 18446744073709551615 rows");
  EXPECT_EQ(refusal([&] { refuse(1UL << 63U); }),
            "Cannot hold the text of 9223372036854775808 rows");
  EXPECT_THROW(refuse(1UL << 50U), std::bad_alloc);
  const test::GermanLocale german;
  EXPECT_EQ(refusal([&] { refuse(~0UL); }), "Cannot hold the text of 18446744073709551615 rows");
  EXPECT_THROW(refuse(1UL << 50U), std::bad_alloc);
}

TEST_P(RenderingOfHugeTables, RefusesALimitThatMemoryCanNeverHold) {
  const auto refuse = [](unsigned long rows, unsigned long maxRows) {
    render(std::make_shared<test::ClaimingFrame>(rows), maxRows);
  };
  EXPECT_EQ(refusal([&] { refuse(~0UL, ~0UL); }),
            "Cannot hold 18446744073709551615 rows of a column");
  EXPECT_EQ(refusal([&] { refuse(~0UL, (1UL << 61U) + 1); }),
            "Cannot hold 2305843009213693953 rows of a column");
  EXPECT_EQ(refusal([&] { refuse(~0UL, 1UL << 60U); }),
            "Cannot hold 1152921504606846976 rows of a column");
  EXPECT_THROW(refuse(~0UL, 1UL << 50U), std::bad_alloc);
}

TEST_P(RenderingOfHugeTables, RefusesMoreColumnsThanMemoryCanHold) {
  const auto refuse = [](unsigned long columns) {
    const test::TurningFrame::Shape shape = {columns, 1};
    render(std::make_shared<test::TurningFrame>(std::vector{shape}), 0);
  };
  EXPECT_THROW(refuse(~0UL), std::length_error);
  EXPECT_THROW(refuse(1UL << 62U), std::length_error);
  EXPECT_THROW(refuse(1UL << 50U), std::bad_alloc);
}

INSTANTIATE_TEST_SUITE_P(TextAndHtml, RenderingOfHugeTables,
                         ::testing::Values(&exportDataFrameToString, &exportDataFrameToHtml),
                         [](const auto& rendering) {
                           return rendering.index == 0 ? "Text" : "Html";
                         });

}  // namespace
}  // namespace object_model
