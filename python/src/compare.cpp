// Reports on differences.

#include <pybind11/stl.h>
#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>

#include <cmath>
#include <optional>

#include "Errors.h"
#include "Module.h"
#include "Numpy.h"
#include "Outline.h"
#include "ReportState.h"
#include "Sibling.h"

namespace quillon::python {
namespace {

using compare::Figures;
using compare::Options;
using compare::Report;

using PathTolerance = std::tuple<std::string, double, double>;

/// Lets a pending Ctrl-C end the comparison.
void checkSignals(unsigned long /*values*/) {
  const py::gil_scoped_acquire gil;
  passingOn([] {
    if (PyErr_CheckSignals() != 0) {
      throw py::error_already_set();
    }
  });
}

bool isDecoded(const object_model::Array& array) {
  const auto* const known = dynamic_cast<const SiblingInBulk*>(&array);
  return known != nullptr && known->isDecoded();
}

Options optionsOf(double atol, double rtol, bool equalNan, unsigned long largest) {
  Options options;
  options.tolerance = {atol, rtol};
  options.nanEqual = equalNan;
  options.largest = largest;
  options.progress = &checkSignals;
  options.isDecoded = &isDecoded;
  return options;
}

Report run(const object_model::Data& first, const object_model::Data& second,
           const Options& options) {
  const py::gil_scoped_release released;
  return compare::compare(first, second, options);
}

/// What `known(path, atol, rtol)` says of the figures of an array: None, or the figures and why
/// parts of it could not be compared.
std::optional<compare::FiguresInParts> askFor(const py::object& known, const std::string& path,
                                              const compare::Tolerance& tolerance) {
  const py::gil_scoped_acquire gil;
  return passingOn([&]() -> std::optional<compare::FiguresInParts> {
    const py::object answer = known(textOf(path), tolerance.absolute, tolerance.relative);
    if (answer.is_none()) {
      return {};
    }
    const auto parts = answer.cast<py::tuple>();
    return compare::FiguresInParts{parts[0].cast<Figures>(),
                                   parts[1].cast<std::vector<std::string>>()};
  });
}

Report compareHandles(const py::object& first, const py::object& second, double atol, double rtol,
                      const std::vector<PathTolerance>& tolerances, bool equalNan, bool attributes,
                      const std::vector<std::string>& ignore, unsigned long largest,
                      const py::object& known) {
  Options options = optionsOf(atol, rtol, equalNan, largest);
  for (const auto& [pattern, absolute, relative] : tolerances) {
    options.tolerances.push_back({pattern, {absolute, relative}});
  }
  options.attributes = attributes;
  options.ignore = ignore;
  if (!known.is_none()) {
    options.figures = [&known](const std::string& path, const compare::Tolerance& tolerance) {
      return askFor(known, path, tolerance);
    };
  }
  return run(dataOf(first), dataOf(second), options);
}

std::vector<std::string> namesOf(const py::array& values) {
  std::vector<std::string> names;
  for (py::ssize_t k = 0; k < values.ndim(); ++k) {
    names.push_back("dim_" + std::to_string(k));
  }
  return names;
}

/// The short way of two numpy arrays.
Report compareArrays(const py::array& first, const py::array& second, double atol, double rtol,
                     bool equalNan, unsigned long largest) {
  const ArrayPointer a = arrayOver({}, namesOf(first), first);
  const ArrayPointer b = arrayOver({}, namesOf(second), second);
  return run(*a, *b, optionsOf(atol, rtol, equalNan, largest));
}

/// Both reports as one, the rule of the first.
Report joined(Report report, const Report& other) {
  report.same = report.same && other.same;
  report.values += other.values;
  report.rows.insert(report.rows.end(), other.rows.begin(), other.rows.end());
  report.notCompared.insert(report.notCompared.end(), other.notCompared.begin(),
                            other.notCompared.end());
  return report;
}

py::dict whereOf(const compare::Difference& row) {
  py::dict where;
  if (!row.largest.empty()) {
    for (const compare::Place& place : row.largest.front().at) {
      where[textOf(place.dimension)] = place.index;
    }
  }
  return where;
}

py::tuple rowOf(const compare::Difference& row) {
  const double largest = row.largest.empty() ? std::nan("") : row.largest.front().delta;
  return py::make_tuple(textOf(row.path), compare::textOf(row.reason), row.count, row.size, largest,
                        whereOf(row), valueOf(row.first), valueOf(row.second), row.largestRelative,
                        row.mean, row.missing);
}

py::list rowsOf(const Report& report) {
  py::list rows;
  for (const compare::Difference& row : report.rows) {
    rows.append(rowOf(row));
  }
  return rows;
}

py::list notComparedOf(const Report& report) {
  py::list entries;
  for (const compare::NotCompared& entry : report.notCompared) {
    entries.append(py::make_tuple(textOf(entry.path), textOf(entry.reason)));
  }
  return entries;
}

/// The lines below each other, the `largest` largest deltas among them.
compare::LineOptions linesOf(unsigned long most, unsigned long largest) {
  return {most, largest > 1 ? largest : 0};
}

py::list linesIn(const Report& report, unsigned long largest) {
  py::list lines;
  for (const std::string& line : compare::lines(report, linesOf(compare::ALL_LINES, largest))) {
    lines.append(textOf(line));
  }
  return lines;
}

py::str textIn(const Report& report, unsigned long largest) {
  return textOf(compare::text(report, linesOf(compare::LineOptions().most, largest)));
}

void bindReport(py::module_& module) {
  py::class_<Report>(module, "Report")
      .def_property_readonly("same", [](const Report& r) { return r.same; })
      .def_property_readonly("values", [](const Report& r) { return r.values; })
      .def_property_readonly("message", [](const Report& r) { return textOf(compare::message(r)); })
      .def("rows", &rowsOf)
      .def("not_compared", &notComparedOf)
      .def("lines", &linesIn)
      .def("text", &textIn)
      .def("to_json",
           [](const Report& r, const std::string& first, const std::string& second) {
             return textOf(compare::toJson(r, first, second));
           })
      .def(py::pickle(&stateOf, &reportOf));
  module.def("compare", &compareHandles);
  module.def("compare_values", &compareArrays);
  module.def("joined", &joined);
}

// -------------------------------------------------------------------------------------------------

using Extents = std::vector<unsigned long>;

/// The figures of two blocks, whose place and grid are in numpy's order.
Figures figuresOf(const ArrayHandle& first, const ArrayHandle& second, const Extents& start,
                  const Extents& shape, double atol, double rtol, bool equalNan,
                  unsigned long largest) {
  const Options options = optionsOf(atol, rtol, equalNan, largest);
  const py::gil_scoped_release released;
  return compare::figures(*first.array, *second.array, options, reversed(start), reversed(shape));
}

void bindFigures(py::module_& module) {
  py::class_<Figures>(module, "Figures")
      .def(py::init<>())
      .def_property_readonly("values", [](const Figures& f) { return f.values; })
      .def_property_readonly("count", [](const Figures& f) { return f.count; })
      .def_property_readonly("missing", [](const Figures& f) { return f.missing; })
      .def_property_readonly("mean", [](const Figures& f) { return f.mean(); })
      .def_property_readonly("largest_relative", [](const Figures& f) { return f.largestRelative; })
      .def(py::pickle(&stateOfFigures, &figuresOfState));
  module.def("figures", &figuresOf);
  module.def("merge", &compare::merge);
}

}  // namespace

void bindCompare(py::module_& module) {
  bindReport(module);
  bindFigures(module);
}

}  // namespace quillon::python
