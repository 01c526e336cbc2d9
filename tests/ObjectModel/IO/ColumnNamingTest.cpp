#include <gmock/gmock.h>

#include <locale>

#include "IO/ColumnNaming.h"
#include "support/RecordingDataFrame.h"
#include "support/TableText.h"

namespace object_model {
namespace {

const std::vector<std::string> AXES = {"slice", "channel", "time"};

TEST(ColumnName, ListsTheSpreadAxesWithTheirCoordinates) {
  EXPECT_EQ(formatedColName<3>("Intensity", AXES, {0, 1, 4}, {1, 0, 0}),
            "Intensity[channel=1, time=4]");
  EXPECT_EQ(formatedColName<2>("Intensity", AXES, {3, 0}, {0, 0}), "Intensity[slice=3, channel=0]");
}

TEST(ColumnName, IsTheBaseNameAloneWhenNoAxisIsSpread) {
  EXPECT_EQ(formatedColName<2>("Intensity", AXES, {3, 7}, {1, 1}), "Intensity");
  EXPECT_EQ(formatedColName<3>("", AXES, {3, 7, 8}, {1, 1, 1}), "");
}

TEST(ColumnName, WritesCoordinatesInFullWithoutPadding) {
  EXPECT_EQ(formatedColName<2>("a", AXES, {10, 0}, {0, 1}), "a[slice=10]");
  EXPECT_EQ(formatedColName<2>("a", AXES, {~0UL, 0}, {0, 1}), "a[slice=18446744073709551615]");
}

TEST(ColumnName, KeepsNamesOfAxesAsTheyAre) {
  EXPECT_EQ(formatedColName<2>("a", {"", "x=1, y"}, {1, 2}, {0, 0}), "a[=1, x=1, y=2]");
}

class GroupingByThree : public std::numpunct<char> {
  char do_thousands_sep() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ColumnName, IsTheSameUnderEveryLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale(), new GroupingByThree));
  const std::string name = formatedColName<2>("a", AXES, {1234567, 0}, {0, 1});
  std::locale::global(before);
  EXPECT_EQ(name, "a[slice=1234567]");
}

tabra::DataType uintType() { return tabra::DataType(tabra::DataTypeId::UInt64); }

template <std::size_t N>
std::string indexColumns(std::vector<unsigned long> gridShape) {
  tabra::MemoryDataFrame frame;
  unsigned long rows = 1;
  for (std::size_t k = 0; k < N; ++k) {
    rows *= gridShape[k];
  }
  frame.addRows(0, rows);
  for (std::size_t k = 0; k < N; ++k) {
    frame.addColumn("axis " + std::to_string(k), uintType());
    createColNamesForArray<N>(&frame, gridShape, k, k);
  }
  return test::tableText(frame);
}

TEST(IndexColumn, HoldsTheCoordinatesOfOneAxis) {
  EXPECT_EQ(indexColumns<1>({4}), "axis 0 () uint: 0 1 2 3\n4 rows\n");
}

TEST(IndexColumn, VariesTheFirstAxisFastest) {
  EXPECT_EQ(indexColumns<2>({2, 3}),
            "axis 0 () uint: 0 1 0 1 0 1\n"
            "axis 1 () uint: 0 0 1 1 2 2\n"
            "6 rows\n");
}

TEST(IndexColumn, WalksThreeAxes) {
  EXPECT_EQ(indexColumns<3>({2, 1, 2}),
            "axis 0 () uint: 0 1 0 1\n"
            "axis 1 () uint: 0 0 0 0\n"
            "axis 2 () uint: 0 0 1 1\n"
            "4 rows\n");
}

TEST(IndexColumn, GetsNoValueWhenAnAxisIsEmpty) {
  EXPECT_EQ(indexColumns<2>({0, 3}), "axis 0 () uint:\naxis 1 () uint:\n0 rows\n");
}

TEST(IndexColumn, ReadsTheFirstSizesOfTheGridAlone) {
  EXPECT_EQ(indexColumns<1>({2, 99}), "axis 0 () uint: 0 1\n2 rows\n");
}

TEST(IndexColumn, IsWrittenOneValueAtATime) {
  test::RecordingDataFrame frame;
  frame.addRows(0, 2);
  frame.addColumn("c", uintType());
  frame.forgetCalls();
  createColNamesForArray<1>(&frame, {2}, 0, 0);
  EXPECT_THAT(frame.calls(), ::testing::ElementsAre("write(0, 0, 1, 0)", "write(0, 1, 1, 1)"));
}

}  // namespace
}  // namespace object_model
