// The place of every virtual operation of the table interface. A table of another library stands in
// for the bundled one by these places.
#include <gtest/gtest.h>
#include <tabra/DataFrameView.h>
#include <tabra/MemoryDataFrame.h>

#include <string>

#include "abi/SlotOf.h"

namespace tabra {
namespace {

using binary::Slot;
using binary::slotAfter;
using binary::slotOf;

class TableSlotOrderTest : public ::testing::TestWithParam<Slot> {};

TEST_P(TableSlotOrderTest, IsAsReleased) { EXPECT_EQ(GetParam().actual, GetParam().released); }

std::string operationOf(const ::testing::TestParamInfo<Slot>& row) { return row.param.operation; }

// Slots 0 and 1 are the destructor's.
INSTANTIATE_TEST_SUITE_P(
    DataFrameView, TableSlotOrderTest,
    ::testing::Values(Slot{"shape", slotOf(&DataFrameView::shape), 2},
                      Slot{"columnName", slotOf(&DataFrameView::columnName), 3},
                      Slot{"columnUnit", slotOf(&DataFrameView::columnUnit), 4},
                      Slot{"setColumnUnit", slotOf(&DataFrameView::setColumnUnit), 5},
                      Slot{"columnDataType", slotOf(&DataFrameView::columnDataType), 6},
                      Slot{"read", slotOf(&DataFrameView::read), 7},
                      Slot{"write", slotOf(&DataFrameView::write), 8},
                      Slot{"addColumn", slotOf(&DataFrameView::addColumn), 9},
                      Slot{"addRows", slotOf(&DataFrameView::addRows), 10},
                      Slot{"removeColumn", slotOf(&DataFrameView::removeColumn), 11},
                      Slot{"removeRows", slotOf(&DataFrameView::removeRows), 12}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(
    MemoryDataFrame, TableSlotOrderTest,
    ::testing::Values(Slot{"shape", slotOf(&MemoryDataFrame::shape), 2},
                      Slot{"columnName", slotOf(&MemoryDataFrame::columnName), 3},
                      Slot{"columnUnit", slotOf(&MemoryDataFrame::columnUnit), 4},
                      Slot{"setColumnUnit", slotOf(&MemoryDataFrame::setColumnUnit), 5},
                      Slot{"columnDataType", slotOf(&MemoryDataFrame::columnDataType), 6},
                      Slot{"read", slotOf(&MemoryDataFrame::read), 7},
                      Slot{"write", slotOf(&MemoryDataFrame::write), 8},
                      Slot{"addColumn", slotOf(&MemoryDataFrame::addColumn), 9},
                      Slot{"addRows", slotOf(&MemoryDataFrame::addRows), 10},
                      Slot{"removeColumn", slotOf(&MemoryDataFrame::removeColumn), 11},
                      Slot{"removeRows", slotOf(&MemoryDataFrame::removeRows), 12}),
    operationOf);

INSTANTIATE_TEST_SUITE_P(NextFree, TableSlotOrderTest,
                         ::testing::Values(Slot{"DataFrameView", slotAfter<DataFrameView>(), 13},
                                           Slot{"MemoryDataFrame", slotAfter<MemoryDataFrame>(),
                                                13}),
                         operationOf);

}  // namespace
}  // namespace tabra
