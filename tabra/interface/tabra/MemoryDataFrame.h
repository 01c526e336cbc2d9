/// @file
/// A table held in memory.
#pragma once

#include <tabra/DataFrameView.h>
#include <tabra/Export.h>

#include <array>
#include <memory>
#include <string>

namespace tabra {

/// A table whose columns stand in memory, each in one contiguous run of 8 bytes a cell.
///
/// New cells are 0. A column may have a type that is none of the three of `DataTypeId`; its cells
/// too take 8 bytes each. read() copies nothing to a null destination, and write() nothing from a
/// null source.
///
/// Removing columns: a run of removeColumn() calls counts columns as they were when the run began,
/// so that removing 0, 1, ... n-1 in that order empties the table. Any other call, one that fails
/// included, ends the run, and the columns that are left are counted from 0 again.
///
/// Errors: every index and range is checked; one outside the table raises `std::out_of_range` with
/// a sentence that names it, and nothing is changed. More rows than memory can hold raise
/// `std::length_error` or `std::bad_alloc`, and nothing is changed.
/// Threads: const operations may run concurrently with each other, not with others.
class TABRA_EXPORT MemoryDataFrame : public DataFrameView {
 public:
  /// A table without columns and rows.
  MemoryDataFrame();
  ~MemoryDataFrame() override;
  MemoryDataFrame(const MemoryDataFrame&) = delete;
  MemoryDataFrame& operator=(const MemoryDataFrame&) = delete;

  const std::array<unsigned long, 2>& shape() const override;
  const std::string& columnName(unsigned long column) const override;
  const std::string& columnUnit(unsigned long column) const override;
  void setColumnUnit(unsigned long column, const std::string& unit) override;
  DataType columnDataType(unsigned long column) const override;
  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override;
  void write(unsigned long column, unsigned long firstRow, unsigned long count,
             const void* source) override;
  void addColumn(const std::string& name, DataType type) override;
  void addRows(unsigned long firstRow, unsigned long count) override;
  void removeColumn(unsigned long column) override;
  void removeRows(unsigned long firstRow, unsigned long count) override;

 private:
  struct Content;
  std::unique_ptr<Content> m_content;
};

}  // namespace tabra
