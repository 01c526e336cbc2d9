#include "Arrow.h"

#include <quillon/arrow/Export.h>
#include <quillon/arrow/Import.h>

#include <memory>
#include <string>
#include <utility>

#include "Errors.h"

namespace quillon::python {
namespace {

constexpr const char* SCHEMA = "arrow_schema";
constexpr const char* STREAM = "arrow_array_stream";

/// A capsule that releases what nobody has taken out of it.
template <class Structure>
py::capsule capsuleOf(std::unique_ptr<Structure> content, const char* name) {
  py::capsule capsule(content.get(), name, [](PyObject* object) {
    auto* const left =
        static_cast<Structure*>(PyCapsule_GetPointer(object, PyCapsule_GetName(object)));
    if (left->release != nullptr) {
      left->release(left);
    }
    delete left;
  });
  static_cast<void>(content.release());  // the capsule's from now on
  return capsule;
}

/// What a Python function raised that gives values, in words.
std::string wordsOfRaised() {
  const py::gil_scoped_acquire gil;
  try {
    try {
      throw;
    } catch (const Raised& raised) {
      raised.rethrow();
    }
  } catch (const py::error_already_set& error) {
    return std::string("a Python function that gives values raised an exception: ") + error.what();
  }
}

}  // namespace

py::capsule arrowSchema(const TableHandle& table) {
  auto schema = std::make_unique<ArrowSchema>();
  arrow::exportSchema(table.shown(), schema.get());
  return capsuleOf(std::move(schema), SCHEMA);
}

py::capsule arrowStream(const TableHandle& table) {
  auto stream = std::make_unique<ArrowArrayStream>();
  arrow::StreamOptions options;
  options.explain = &wordsOfRaised;
  arrow::exportTable(table.shown(), stream.get(), options);
  return capsuleOf(std::move(stream), STREAM);
}

TableHandle tableFromArrow(const py::object& capsule) {
  auto* const stream = static_cast<ArrowArrayStream*>(PyCapsule_GetPointer(capsule.ptr(), STREAM));
  if (stream == nullptr) {
    throw py::error_already_set();
  }
  const py::gil_scoped_release released;
  return TableHandle(arrow::importTable(stream));
}

}  // namespace quillon::python
