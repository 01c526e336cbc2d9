/// @file
/// The suite for table classes.
#pragma once

#include <gtest/gtest.h>
#include <tabra/DataFrameView.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace quillon::testing {

/// Checks a table class against what the library expects of it:
/// `INSTANTIATE_TYPED_TEST_SUITE_P(Frames, DataFrameSuite, FrameSubject);`, after
/// `using namespace quillon::testing;`.
///
/// A subject is a class with a function `make()` that returns a `std::unique_ptr` or a
/// `std::shared_ptr` to a new, empty table.
template <class Subject>
class DataFrameSuite : public ::testing::Test {
 protected:
  /// Fails where there is nothing to check.
  void SetUp() override { ASSERT_NE(m_frame, nullptr) << "make() gives no table"; }

  /// What `tabra::DataFrameView::shape` returns: columns, then rows.
  using Shape = std::array<unsigned long, 2>;

  /// The table of the subject.
  tabra::DataFrameView& frame() { return *m_frame; }

  /// Adds a column of 64-bit integers behind the last one.
  void addColumn(const std::string& name) {
    m_frame->addColumn(name, tabra::DataType(tabra::DataTypeId::Int64));
  }

  /// Writes `values` into a column from the row `firstRow` on.
  void write(unsigned long column, unsigned long firstRow, const std::vector<long>& values) {
    m_frame->write(column, firstRow, values.size(), values.data());
  }

  /// The values of `count` rows of a column from the row `firstRow` on.
  std::vector<long> read(unsigned long column, unsigned long firstRow, unsigned long count) const {
    std::vector<long> values(count);
    m_frame->read(column, firstRow, count, values.data());
    return values;
  }

  /// The names of the columns in their order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (unsigned long column = 0; column < m_frame->shape()[0]; ++column) {
      names.push_back(m_frame->columnName(column));
    }
    return names;
  }

  /// Four columns a, b, c, d of three rows; column k holds 10 k, 10 k + 1, 10 k + 2.
  void fill() {
    m_frame->addRows(0, 3);
    for (const char* name : {"a", "b", "c", "d"}) {
      const auto first = static_cast<long>(10 * m_frame->shape()[0]);
      addColumn(name);
      write(m_frame->shape()[0] - 1, 0, {first, first + 1, first + 2});
    }
  }

 private:
  const decltype(Subject::make()) m_frame = Subject::make();
};

// The tests, whose names say what they check.
/// @cond

TYPED_TEST_SUITE_P(DataFrameSuite);

TYPED_TEST_P(DataFrameSuite, IsEmptyAtFirst) {
  EXPECT_EQ(this->frame().shape(), (typename TestFixture::Shape{0, 0}));
}

TYPED_TEST_P(DataFrameSuite, ShapeIsColumnsAndRows) {
  this->fill();
  EXPECT_EQ(this->frame().shape(), (typename TestFixture::Shape{4, 3}));
}

TYPED_TEST_P(DataFrameSuite, ColumnsKeepNameAndType) {
  using tabra::DataTypeId;
  for (const DataTypeId type : {DataTypeId::UInt64, DataTypeId::Int64, DataTypeId::Float64}) {
    this->frame().addColumn("same name", tabra::DataType(type));
    const unsigned long column = this->frame().shape()[0] - 1;
    EXPECT_EQ(this->frame().columnDataType(column).id(), type);
    EXPECT_EQ(this->frame().columnName(column), "same name");
  }
}

TYPED_TEST_P(DataFrameSuite, UnitsAreEmptyUntilTheyAreSet) {
  this->fill();
  EXPECT_EQ(this->frame().columnUnit(1), "");
  this->frame().setColumnUnit(1, "mm");
  this->frame().setUnit(2, "s");
  EXPECT_EQ(this->frame().columnUnit(0), "");
  EXPECT_EQ(this->frame().columnUnit(1), "mm");
  EXPECT_EQ(this->frame().columnUnit(2), "s");
}

TYPED_TEST_P(DataFrameSuite, WrittenCellsReadBack) {
  this->fill();
  EXPECT_EQ(this->read(2, 0, 3), (std::vector<long>{20, 21, 22}));
  this->write(2, 1, {-7});
  EXPECT_EQ(this->read(2, 0, 3), (std::vector<long>{20, -7, 22}));
  EXPECT_EQ(this->read(2, 1, 2), (std::vector<long>{-7, 22}));
  EXPECT_EQ(this->read(1, 0, 3), (std::vector<long>{10, 11, 12}));
}

TYPED_TEST_P(DataFrameSuite, NumbersKeepAllTheirBits) {
  this->frame().addRows(0, 1);
  this->frame().addColumn("x", tabra::DataType(tabra::DataTypeId::Float64));
  const double written = 0.1;
  double read = 0;
  this->frame().write(0, 0, 1, &written);
  this->frame().read(0, 0, 1, &read);
  EXPECT_EQ(read, written);
}

TYPED_TEST_P(DataFrameSuite, ReadingNothingNeedsNoPlace) {
  this->fill();
  this->frame().read(0, 0, 0, nullptr);
  EXPECT_EQ(this->read(0, 0, 3), (std::vector<long>{0, 1, 2}));
}

TYPED_TEST_P(DataFrameSuite, InsertedRowsLeaveTheOthersAsTheyAre) {
  this->fill();
  this->frame().addRows(1, 2);
  EXPECT_EQ(this->frame().shape()[1], 5U);
  for (unsigned long column = 0; column < 4; ++column) {
    const auto first = static_cast<long>(10 * column);
    EXPECT_EQ(this->read(column, 0, 1), std::vector<long>{first});
    EXPECT_EQ(this->read(column, 3, 2), (std::vector<long>{first + 1, first + 2}));
  }
}

TYPED_TEST_P(DataFrameSuite, AppendedRowsComeLast) {
  this->fill();
  this->frame().addRows(3, 1);
  this->write(0, 3, {99});
  EXPECT_EQ(this->read(0, 0, 4), (std::vector<long>{0, 1, 2, 99}));
}

TYPED_TEST_P(DataFrameSuite, RemovedRowsLeaveTheOthersAsTheyAre) {
  this->fill();
  this->frame().removeRows(0, 2);
  EXPECT_EQ(this->frame().shape()[1], 1U);
  EXPECT_EQ(this->read(1, 0, 1), std::vector<long>{12});
}

TYPED_TEST_P(DataFrameSuite, ARemovedColumnIsGone) {
  this->fill();
  this->frame().removeColumn(1);
  EXPECT_EQ(this->names(), (std::vector<std::string>{"a", "c", "d"}));
  EXPECT_EQ(this->read(1, 0, 3), (std::vector<long>{20, 21, 22}));
}

TYPED_TEST_P(DataFrameSuite, ARunOfRemovalsCountsColumnsAsTheyWere) {
  this->fill();
  this->frame().removeColumn(0);
  this->frame().removeColumn(2);
  EXPECT_EQ(this->names(), (std::vector<std::string>{"b", "d"}));
}

TYPED_TEST_P(DataFrameSuite, RemovingAllColumnsInTheirOrderEmptiesTheTable) {
  this->fill();
  for (unsigned long column = 0; column < 4; ++column) {
    this->frame().removeColumn(column);
  }
  EXPECT_EQ(this->frame().shape(), (typename TestFixture::Shape{0, 3}));
}

TYPED_TEST_P(DataFrameSuite, AnyOtherCallEndsARunOfRemovals) {
  this->fill();
  this->frame().removeColumn(0);
  EXPECT_EQ(this->frame().columnName(0), "b");
  this->frame().removeColumn(0);
  EXPECT_EQ(this->names(), (std::vector<std::string>{"c", "d"}));
}

REGISTER_TYPED_TEST_SUITE_P(DataFrameSuite, IsEmptyAtFirst, ShapeIsColumnsAndRows,
                            ColumnsKeepNameAndType, UnitsAreEmptyUntilTheyAreSet,
                            WrittenCellsReadBack, NumbersKeepAllTheirBits,
                            ReadingNothingNeedsNoPlace, InsertedRowsLeaveTheOthersAsTheyAre,
                            AppendedRowsComeLast, RemovedRowsLeaveTheOthersAsTheyAre,
                            ARemovedColumnIsGone, ARunOfRemovalsCountsColumnsAsTheyWere,
                            RemovingAllColumnsInTheirOrderEmptiesTheTable,
                            AnyOtherCallEndsARunOfRemovals);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DataFrameSuite);

/// @endcond

}  // namespace quillon::testing
