#include "UncheckedFrame.h"

#include <cstring>

namespace benchmarks {
namespace {

using Cell = unsigned long;  // all column types take 8 bytes a cell

std::vector<Cell> cellsOf(const tabra::DataFrameView& frame, unsigned long column) {
  std::vector<Cell> cells(frame.shape()[1]);
  frame.read(column, 0, cells.size(), cells.data());
  return cells;
}

}  // namespace

const std::array<unsigned long, 2>& UncheckedFrame::shape() const { return m_shape; }

const std::string& UncheckedFrame::columnName(unsigned long column) const {
  return m_columns[column].name;
}

const std::string& UncheckedFrame::columnUnit(unsigned long column) const {
  return m_columns[column].unit;
}

void UncheckedFrame::setColumnUnit(unsigned long column, const std::string& unit) {
  m_columns[column].unit = unit;
}

tabra::DataType UncheckedFrame::columnDataType(unsigned long column) const {
  return m_columns[column].type;
}

void UncheckedFrame::read(unsigned long column, unsigned long firstRow, unsigned long count,
                          void* destination) const {
  std::memcpy(destination, m_columns[column].cells.data() + firstRow, count * sizeof(Cell));
}

void UncheckedFrame::write(unsigned long column, unsigned long firstRow, unsigned long count,
                           const void* source) {
  Cell* const destination = m_columns[column].cells.data() + firstRow;
  if (count == 1) {
    std::memcpy(destination, source, sizeof(Cell));  // one move, no call
  } else {
    std::memcpy(destination, source, count * sizeof(Cell));
  }
}

void UncheckedFrame::addColumn(const std::string& name, tabra::DataType type) {
  if (m_shape[0] == m_columns.size()) {
    m_columns.push_back({{}, {}, type, {}});
  }
  Column& column = m_columns[m_shape[0]++];
  column.name = name;
  column.unit.clear();
  column.type = type;
  column.cells.resize(m_shape[1]);
}

void UncheckedFrame::addRows(unsigned long /*firstRow*/, unsigned long count) {
  m_shape[1] += count;
}

void UncheckedFrame::removeColumn(unsigned long /*column*/) { --m_shape[0]; }

void UncheckedFrame::removeRows(unsigned long /*firstRow*/, unsigned long count) {
  m_shape[1] -= count;
}

bool sameTables(const tabra::DataFrameView& first, const tabra::DataFrameView& second) {
  bool same = first.shape() == second.shape();
  for (unsigned long k = 0; same && k < first.shape()[0]; ++k) {
    same = first.columnName(k) == second.columnName(k) &&
           first.columnUnit(k) == second.columnUnit(k) &&
           first.columnDataType(k).id() == second.columnDataType(k).id() &&
           cellsOf(first, k) == cellsOf(second, k);
  }
  return same;
}

}  // namespace benchmarks
