#pragma once

#include <quillon/tables/Table.h>

#include <memory>
#include <vector>

namespace quillon::tables {

/// What a column is read from.
class ColumnSource {
 public:
  ColumnSource() = default;
  ColumnSource(const ColumnSource&) = delete;
  ColumnSource& operator=(const ColumnSource&) = delete;
  virtual ~ColumnSource() = default;

  /// Unit, type and calendar.
  virtual void describe(Column& column) const = 0;
  /// Copies cells, in the column's type; the rows must be there.
  virtual void read(unsigned long firstRow, unsigned long count, void* destination) const = 0;
  virtual memory::TimeForm timeForm() const { return memory::TimeForm::Date; }
  /// Whether reading any rows costs no more than copying them.
  virtual bool isInMemory() const { return true; }
  /// The array's chunks along the index axes, one for each; empty where there are none.
  virtual std::vector<unsigned long> chunks() const { return {}; }
};

/// The grid of rows: how many points each index axis has.
using Grid = std::vector<unsigned long>;

/// An array's values, found by way of what each of its dimensions is used for.
/// @param array what `dimensions` was planned for; kept.
/// @throws Error for an array that has another shape.
std::unique_ptr<ColumnSource> sourceOf(std::shared_ptr<const object_model::Array> array,
                                       const std::vector<DimensionUse>& dimensions,
                                       const Grid& grid);

/// Positions along an index axis, or the one position of an axis that is not in the index.
std::unique_ptr<ColumnSource> positionsOf(const DimensionUse& dimension, const Grid& grid);

/// A column of a table of another kind.
/// @throws Error that names a column of a type that is not listed.
std::unique_ptr<ColumnSource> columnOf(std::shared_ptr<const tabra::DataFrameView> view,
                                       unsigned long column);

}  // namespace quillon::tables
