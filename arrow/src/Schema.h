#pragma once

#include <quillon/arrow/Owned.h>
#include <quillon/tables/Table.h>

namespace quillon::arrow {

/// Whether the cells of a column are texts in a stream: texts, and times of days that Arrow's
/// calendar does not have.
bool isText(const tables::Column& column);

/// A struct with a field for each column of the table.
Owned<ArrowSchema> schemaOf(const tables::Table& table);

}  // namespace quillon::arrow
