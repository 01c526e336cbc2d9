#pragma once

#include <memory>

#include "PyRef.h"
#include "TableHandle.h"

namespace quillon::python {

/// The columns of a table, and its rows run by run, through the C interface of Apache Arrow: a
/// capsule "arrow_schema" and one "arrow_array_stream".
py::capsule arrowSchema(const TableHandle& table);
py::capsule arrowStream(const TableHandle& table);

/// The table that the stream in a capsule "arrow_array_stream" has.
TableHandle tableFromArrow(const py::object& capsule);

}  // namespace quillon::python
