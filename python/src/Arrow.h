#pragma once

#include <memory>

#include "PyRef.h"
#include "TableHandle.h"

namespace quillon::python {

/// The columns of a table, and its rows run by run, through the C interface of Apache Arrow: a
/// capsule "arrow_schema" and one "arrow_array_stream".
py::capsule arrowSchema(const TableHandle& table);
py::capsule arrowStream(const TableHandle& table);

}  // namespace quillon::python
