#pragma once

#include <quillon/tables/ColumnSource.h>

#include <memory>
#include <vector>

namespace quillon::tables {

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
