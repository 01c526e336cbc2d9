// Tables and their writers.

#include <pybind11/stl.h>
#include <quillon/memory/HtmlText.h>
#include <quillon/memory/OutputTarget.h>
#include <quillon/memory/TemporaryFile.h>
#include <quillon/tables/Writers.h>
#include <sys/stat.h>

#include <memory>
#include <variant>

#include "Arrow.h"
#include "Errors.h"
#include "Module.h"
#include "Outline.h"
#include "TableHandle.h"

namespace quillon::python {
namespace {

using Names = std::vector<std::string>;

/// A choice along an axis as quillon._tables normalises it: the axis, "position", "positions",
/// "nearest" or "between", two ends and a step.
using Choice = std::tuple<std::string, std::string, py::object, py::object, long>;

std::optional<long> endOf(const py::object& end) {
  return end.is_none() ? std::nullopt : std::optional(end.cast<long>());
}

/// A text, a number or, as a tuple of one, microseconds since 1970.
tables::CoordinateValue coordinateOf(const py::object& value) {
  if (py::isinstance<py::str>(value)) {
    return utf8Of(value);
  }
  if (py::isinstance<py::tuple>(value)) {
    return tables::TimePoint{value.cast<py::tuple>()[0].cast<long>()};
  }
  return value.cast<double>();
}

tables::AxisSelection selectionOf(const Choice& choice) {
  const auto& [axis, kind, first, last, step] = choice;
  if (kind == "position") {
    return {axis, tables::Position{first.cast<long>()}};
  }
  if (kind == "positions") {
    return {axis, tables::PositionRange{endOf(first), endOf(last), step}};
  }
  if (kind == "nearest") {
    return {axis, tables::Nearest{coordinateOf(first)}};
  }
  return {axis, tables::CoordinateRange{coordinateOf(first), coordinateOf(last)}};
}

TableHandle makeTable(const SharedDictionary& dictionary, const std::optional<Names>& index,
                      const std::optional<Names>& variables, const std::vector<Choice>& choices,
                      const std::vector<std::pair<std::string, std::string>>& unreadable) {
  tables::Request request;
  request.index = index;
  request.variables = variables;
  request.allColumns = true;
  for (const Choice& choice : choices) {
    request.selections.push_back(selectionOf(choice));
  }
  for (const auto& [name, reason] : unreadable) {
    request.unreadable.push_back({name, reason});
  }
  const py::gil_scoped_release released;  // coordinates are read
  return {dictionary, request};
}

/// What `write(table, output)` writes, without the GIL.
template <class Write>
std::string written(const TableHandle& table, const Write& write) {
  const py::gil_scoped_release released;
  std::string text;
  write(table.shown(), tables::into(text));
  return text;
}

/// The descriptor of this process to write to, or the file, and the number of an error.
py::tuple outputTarget(const std::string& path) {
  const memory::OutputTarget target = memory::outputTargetOf(path);
  struct stat status = {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  const int fault = exists ? memory::errorOfReplacing(path, status) : target.error.value();
  return py::make_tuple(target.descriptor, py::bytes(target.file.string()), fault);
}

/// The writer called `format`.
void writeAs(const std::string& format, const tables::Table& table, const tables::Output& output,
             const tables::Shown& shown) {
  if (format == "csv") {
    tables::writeCsv(table, output, shown.maxRows);
  } else if (format == "json") {
    tables::writeJson(table, output, shown.maxRows);
  } else if (format == "html") {
    tables::writeHtml(table, output, shown);
  } else {
    tables::writeText(table, output, shown);
  }
}

py::str textAs(const TableHandle& table, const std::string& format, unsigned long maxRows,
               unsigned long width) {
  tables::Shown shown;
  shown.maxRows = maxRows;
  shown.width = width;
  return textOf(written(table, [&](const tables::Table& content, const tables::Output& output) {
    writeAs(format, content, output, shown);
  }));
}

/// Calls `take` with pieces of the text.
void writeTo(const TableHandle& table, const std::string& format, const py::object& take) {
  const py::gil_scoped_release released;
  tables::Shown shown;
  shown.maxRows = 0;
  writeAs(
      format, table.shown(),
      [&](std::string_view piece) {
        const py::gil_scoped_acquire gil;
        passingOn([&] { take(py::bytes(piece.data(), piece.size())); });
      },
      shown);
}

py::list columnsOf(const TableHandle& table) {
  py::list columns;
  const auto& all = table.shown().columns();
  for (unsigned long k = 0; k < all.size(); ++k) {
    columns.append(py::make_tuple(textOf(all[k].name), textOf(table.unitOf(k)), all[k].isIndex));
  }
  return columns;
}

py::list axesOfTable(const TableHandle& table) {
  py::list axes;
  for (const tables::IndexAxis& axis : table.plan().axes) {
    axes.append(py::make_tuple(textOf(axis.name), axis.size));
  }
  return axes;
}

}  // namespace

void bindTables(py::module_& module) {
  py::class_<TableHandle>(module, "Table")
      .def("columns", &columnsOf)
      .def("axes", &axesOfTable)
      .def_property_readonly("rows", [](const TableHandle& t) { return t.shown().rows(); })
      .def("notes", [](const TableHandle& t) { return t.shown().notes(); })
      .def("read", &TableHandle::read)
      .def("text", &textAs)
      .def("write", &writeTo)
      .def("arrow_schema", &arrowSchema)
      .def("arrow_stream", &arrowStream);
  module.def("make_table", &makeTable);
  module.def("table_from_arrow", &tableFromArrow);
  module.def("output_target", &outputTarget);
  py::class_<memory::TemporaryFile>(module, "TemporaryFile")
      .def(py::init([](const std::string& target) {
        return std::make_unique<memory::TemporaryFile>(target);
      }))
      .def_property_readonly("descriptor", &memory::TemporaryFile::descriptor)
      .def_property_readonly("error", &memory::TemporaryFile::error)
      .def("move_to_target", &memory::TemporaryFile::moveToTarget);
  module.def("in_html", [](const py::str& text) { return memory::inHtml(utf8Of(text)); });
}

}  // namespace quillon::python
