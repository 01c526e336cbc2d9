#pragma once

#include <quillon/memory/AttributeList.h>

#include "PyRef.h"

namespace quillon::python {

/// The attributes as a dict: texts, lists of texts, numbers (Python's own where the type is 64 bits
/// long) and numpy arrays of several.
py::dict attributesOf(const memory::HasAttributes& owner);

/// Gives the owner the attributes of a mapping.
/// @throws py::type_error that names an attribute whose value none can have.
void setAttributes(const py::dict& attributes, memory::AttributeList& owner);

}  // namespace quillon::python
