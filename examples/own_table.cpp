/// @file
/// A table of your own behind `tabra::DataFrameView`, filled by the export and printed.
#include <object_model/IO.h>
#include <quillon/memory/TypedArray.h>
#include <tabra/DataFrameView.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

using object_model::AxisType;
using namespace quillon::memory;

namespace {

/// A table that keeps each column as a run of cells. All column types take 8 bytes a cell, so a
/// cell is bytes to it, whatever the type.
class ColumnTable final : public tabra::DataFrameView {
 public:
  const std::array<unsigned long, 2>& shape() const override { return m_shape; }
  const std::string& columnName(unsigned long column) const override { return at(column).name; }
  const std::string& columnUnit(unsigned long column) const override { return at(column).unit; }
  tabra::DataType columnDataType(unsigned long column) const override { return at(column).type; }

  void setColumnUnit(unsigned long column, const std::string& unit) override {
    m_columns.at(column).unit = unit;
  }

  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    if (count > 0) {  // a table without rows is read into nowhere
      std::memcpy(destination, &at(column).cells.at(firstRow), count * sizeof(Cell));
    }
  }

  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override {
    if (count > 0) {
      std::memcpy(&m_columns.at(column).cells.at(firstRow), source, count * sizeof(Cell));
    }
  }

  void addColumn(const std::string& name, tabra::DataType type) override {
    m_columns.push_back({name, "", type, std::vector<Cell>(m_shape[1]), 0});
    m_shape[0] = m_columns.size();
    endRemovals();
  }

  void addRows(unsigned long firstRow, unsigned long count) override {
    for (Column& column : m_columns) {
      column.cells.insert(column.cells.begin() + offset(firstRow), count, Cell{0});
    }
    m_shape[1] += count;
    endRemovals();
  }

  void removeRows(unsigned long firstRow, unsigned long count) override {
    for (Column& column : m_columns) {
      const auto first = column.cells.begin() + offset(firstRow);
      column.cells.erase(first, first + offset(count));
    }
    m_shape[1] -= count;
    endRemovals();
  }

  // The export empties a table by removing the columns 0, 1, ... n - 1, in this order: in a run of
  // removals, columns go by the numbers that they had before the first. So a column keeps its
  // number until the run ends, here when a column or rows are added or rows removed.
  void removeColumn(unsigned long column) override {
    const auto isMeant = [column](const Column& other) { return other.number == column; };
    m_columns.erase(std::remove_if(m_columns.begin(), m_columns.end(), isMeant), m_columns.end());
    m_shape[0] = m_columns.size();
  }

 private:
  void endRemovals() {
    for (unsigned long i = 0; i < m_columns.size(); ++i) {
      m_columns[i].number = i;
    }
  }

  using Cell = std::uint64_t;
  struct Column {
    std::string name;
    std::string unit;
    tabra::DataType type;
    std::vector<Cell> cells;
    unsigned long number;
  };

  const Column& at(unsigned long column) const { return m_columns.at(column); }
  static std::ptrdiff_t offset(unsigned long n) { return static_cast<std::ptrdiff_t>(n); }

  std::array<unsigned long, 2> m_shape = {0, 0};  // columns, rows
  std::vector<Column> m_columns;
};

}  // namespace

int main() {
  Dictionary cells("cells");
  cells.add(UIntArray("area", {Axis(AxisType::Label, 2)}, {212, 96})).setUnit("um2");
  cells.add(DoubleArray("intensity", {Axis(AxisType::Label, 2), Axis(AxisType::Channel, 2)},
                        {0.51, 0.77, 1.02, 1.31}));

  const auto table = std::make_shared<ColumnTable>();
  object_model::exportToDataFrame(cells, table.get(), {"label", "channel"});
  object_model::exportToDataFrame(cells, table.get(), {"label"});  // takes the place of the first
  std::cout << object_model::exportDataFrameToString(table, 0);
  std::cout << "unit of " << table->columnName(1) << ": " << table->columnUnit(1) << '\n';
}
