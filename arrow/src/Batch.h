#pragma once

#include <quillon/arrow/Owned.h>
#include <quillon/tables/Table.h>

namespace quillon::arrow {

/// Some rows of a table, at least one.
struct Rows {
  unsigned long first;
  unsigned long count;
};

/// The rows as a struct of a child for each column, to be released without the table.
/// @param nanIsNull whether NaN is null.
Owned<ArrowArray> batchOf(const tables::Table& table, Rows rows, bool nanIsNull);

}  // namespace quillon::arrow
