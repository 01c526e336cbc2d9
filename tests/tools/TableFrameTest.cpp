#include <gtest/gtest.h>
#include <quillon/memory/Wording.h>
#include <quillon/testing/DataFrameSuite.h>

#include "TableFrame.h"

namespace quillon::tools {

namespace {

TEST(TableFrameTest, ColumnNamesAreEscapedAsAsked) {
  TableFrame frame([](std::string_view name) { return "<" + std::string(name) + ">"; },
                   [](unsigned long /*cells*/) {});
  frame.addColumn("a\n", tabra::DataType(tabra::DataTypeId::Int64));
  EXPECT_EQ(frame.columnName(0), "<a\n>");
}

TEST(TableFrameTest, WritingTellsHowManyCells) {
  unsigned long told = 0;
  TableFrame frame(memory::escaped, [&told](unsigned long cells) { told += cells; });
  frame.addColumn("a", tabra::DataType(tabra::DataTypeId::Int64));
  frame.addRows(0, 3);
  const long values[] = {4, 5};
  frame.write(0, 1, 2, values);
  EXPECT_EQ(told, 2);
  long read[3] = {};
  frame.read(0, 0, 3, read);
  EXPECT_EQ(read[0], 0);
  EXPECT_EQ(read[1], 4);
  EXPECT_EQ(read[2], 5);
}

}  // namespace
}  // namespace quillon::tools

namespace quillon::testing {
namespace {

struct PlainTableFrame {
  static std::unique_ptr<tabra::DataFrameView> make() {
    return std::make_unique<tools::TableFrame>(
        [](std::string_view name) { return std::string(name); }, [](unsigned long /*cells*/) {});
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(OfTheTool, DataFrameSuite, PlainTableFrame, );

}  // namespace
}  // namespace quillon::testing
