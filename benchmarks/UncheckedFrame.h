#pragma once

#include <tabra/DataFrameView.h>

#include <array>
#include <string>
#include <vector>

namespace benchmarks {

/// A table whose operations do next to nothing, so that what the library adds to them shows most:
/// nothing is checked, and columns that are removed and added again keep their memory.
///
/// It can be filled and emptied: rows go in before columns, and columns and rows go out together.
/// Defined apart from its users, so that no operation is inlined into a measured loop.
class UncheckedFrame : public tabra::DataFrameView {
 public:
  const std::array<unsigned long, 2>& shape() const override;
  const std::string& columnName(unsigned long column) const override;
  const std::string& columnUnit(unsigned long column) const override;
  void setColumnUnit(unsigned long column, const std::string& unit) override;
  tabra::DataType columnDataType(unsigned long column) const override;
  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override;
  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override;
  void addColumn(const std::string& name, tabra::DataType type) override;
  void addRows(unsigned long firstRow, unsigned long count) override;
  void removeColumn(unsigned long column) override;
  void removeRows(unsigned long firstRow, unsigned long count) override;

 private:
  struct Column {
    std::string name;
    std::string unit;
    tabra::DataType type;
    std::vector<unsigned long> cells;
  };

  std::array<unsigned long, 2> m_shape = {0, 0};
  std::vector<Column> m_columns;  // at least as many as the table has
};

/// Whether two tables agree in everything: names, units, types and cells.
bool sameTables(const tabra::DataFrameView& first, const tabra::DataFrameView& second);

}  // namespace benchmarks
