#pragma once

#include <quillon/compare/Report.h>

#include "PyRef.h"

namespace quillon::python {

/// A value as Python has it: numpy's float32 and complex64 where it is one, else Python's own.
py::object valueOf(const compare::Value& value);

/// All of a report, and of figures, as tuples of Python's own objects, and back: for pickles.
py::tuple stateOf(const compare::Report& report);
compare::Report reportOf(const py::tuple& state);
py::tuple stateOfFigures(const compare::Figures& figures);
compare::Figures figuresOfState(const py::tuple& state);

}  // namespace quillon::python
