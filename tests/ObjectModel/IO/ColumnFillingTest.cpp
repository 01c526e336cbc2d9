#include <gmock/gmock.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <limits>
#include <numeric>

#include "IO/ColumnFilling.h"
#include "support/RecordingDataFrame.h"
#include "support/TableText.h"

namespace object_model {
namespace {

using quillon::memory::DoubleArray;
using quillon::memory::IntArray;
using quillon::memory::UIntArray;

/// An array of shape (extents) whose element at (i, j, k) is i + 10 j + 100 k.
DoubleArray coordinateArray(const std::vector<unsigned long>& extents) {
  std::vector<quillon::memory::Axis> axes;
  unsigned long count = 1;
  for (std::size_t k = 0; k < extents.size(); ++k) {
    axes.emplace_back("axis" + std::to_string(k), extents[k]);
    count *= extents[k];
  }
  std::vector<double> values;
  for (unsigned long offset = 0; offset < count; ++offset) {
    unsigned long rest = offset;
    double value = 0;
    double weight = 1;
    for (const unsigned long extent : extents) {
      value += weight * static_cast<double>(rest % extent);
      rest /= extent;
      weight *= 10;
    }
    values.push_back(value);
  }
  return {"a", axes, values};
}

class ColumnFilling : public ::testing::Test {
 protected:
  void prepare(unsigned long rows, tabra::DataTypeId type = tabra::DataTypeId::Float64) {
    m_frame.addRows(0, rows);
    m_frame.addColumn("before", tabra::DataType(tabra::DataTypeId::UInt64));
    m_frame.addColumn("filled", tabra::DataType(type));
    m_frame.forgetCalls();
  }

  /// Fills the column "filled" from `array` itself: its dimensions in their own order.
  template <class T, std::size_t M>
  void fill(Array& array, const std::vector<unsigned long>& shape,
            const std::vector<unsigned char>& indexAxes, const std::vector<unsigned long>& start) {
    std::vector<unsigned long> ownAxes(M);
    std::iota(ownAxes.begin(), ownAxes.end(), 0UL);
    const ArrayProxy proxy(shape.data(), M, ownAxes, &array);
    fillDataFrame<T, M>(&m_frame, proxy, shape, indexAxes, 1, start);
  }

  std::string filled() {
    const std::string text = test::tableText(m_frame.frame());
    const auto from = text.find("filled");
    return text.substr(from, text.find('\n', from) - from);
  }

  test::RecordingDataFrame m_frame;
};

TEST_F(ColumnFilling, CopiesAnIndexAxisRowByRow) {
  prepare(3);
  DoubleArray array = coordinateArray({3});
  fill<double, 1>(array, {3}, {1}, {0});
  EXPECT_EQ(filled(), "filled () double: 0 1 2");
  EXPECT_THAT(m_frame.calls(), ::testing::ElementsAre("write(1, 0, 1, 0)", "write(1, 1, 1, 1)",
                                                      "write(1, 2, 1, 2)"));
}

TEST_F(ColumnFilling, HoldsASpreadAxisAtItsCoordinate) {
  prepare(3);
  DoubleArray array = coordinateArray({3, 4});
  fill<double, 2>(array, {3, 4}, {1, 0}, {0, 2});
  EXPECT_EQ(filled(), "filled () double: 20 21 22");
}

TEST_F(ColumnFilling, VariesTheFirstIndexAxisFastest) {
  prepare(4);
  DoubleArray array = coordinateArray({2, 3, 2});
  fill<double, 3>(array, {2, 3, 2}, {1, 0, 1}, {0, 1, 0});
  EXPECT_EQ(filled(), "filled () double: 10 11 110 111");
}

TEST_F(ColumnFilling, WritesOneRowWhenNoDimensionIsAnIndexAxis) {
  prepare(3);
  DoubleArray array = coordinateArray({3, 4});
  fill<double, 2>(array, {3, 4}, {0, 0}, {2, 1});
  EXPECT_THAT(m_frame.calls(), ::testing::ElementsAre("write(1, 0, 1, 12)"));
}

TEST_F(ColumnFilling, WritesNothingForAnEmptyIndexAxis) {
  prepare(3);
  DoubleArray array = coordinateArray({3});
  fill<double, 1>(array, {0}, {1}, {0});
  EXPECT_THAT(m_frame.calls(), ::testing::IsEmpty());
}

TEST_F(ColumnFilling, TakesSignedValuesWhole) {
  prepare(2, tabra::DataTypeId::Int64);
  IntArray array("a", {{"x", 2}}, {std::numeric_limits<long>::min(), -1});
  fill<long, 1>(array, {2}, {1}, {0});
  EXPECT_EQ(filled(), "filled () int: -9223372036854775808 -1");
}

TEST_F(ColumnFilling, TakesUnsignedValuesWhole) {
  prepare(2, tabra::DataTypeId::UInt64);
  UIntArray array("a", {{"x", 2}}, {~0UL, 0});
  fill<unsigned long, 1>(array, {2}, {1}, {0});
  EXPECT_EQ(filled(), "filled () uint: 18446744073709551615 0");
}

TEST_F(ColumnFilling, KeepsTheRowsWrittenBeforeAnAccessorFails) {
  prepare(3);
  DoubleArray array = coordinateArray({2});
  EXPECT_THROW((fill<double, 1>(array, {3}, {1}, {0})), std::out_of_range);
  EXPECT_THAT(m_frame.calls(), ::testing::ElementsAre("write(1, 0, 1, 0)", "write(1, 1, 1, 1)"));
  EXPECT_THROW((fill<long, 1>(array, {3}, {1}, {0})), InvalidCall);
}

TEST_F(ColumnFilling, LetsAFailureOfTheFrameThrough) {
  prepare(2);
  DoubleArray array = coordinateArray({3});
  EXPECT_THROW((fill<double, 1>(array, {3}, {1}, {0})), std::out_of_range);
  EXPECT_EQ(filled(), "filled () double: 0 1");
}

}  // namespace
}  // namespace object_model
