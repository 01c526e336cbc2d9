#include "Outline.h"

#include <quillon/memory/Axes.h>
#include <quillon/memory/ElementTypes.h>

#include <array>
#include <utility>

namespace quillon::python {
namespace {

using object_model::AxisType;

memory::Axis axisOf(const std::string& name, unsigned long size) {
  static const std::array<std::pair<std::string, AxisType>, 4> kinds = {
      {{"slice", AxisType::Slice},
       {"time", AxisType::Time},
       {"channel", AxisType::Channel},
       {"label", AxisType::Label}}};
  for (const auto& [kindName, type] : kinds) {
    if (kindName == name) {
      return {type, size};
    }
  }
  return {name, size};
}

}  // namespace

std::vector<memory::Axis> axesOf(const Outline& outline) {
  std::vector<memory::Axis> axes;
  for (std::size_t k = outline.dims.size(); k > 0; --k) {
    axes.push_back(axisOf(outline.dims[k - 1], outline.shape.at(k - 1)));
  }
  return axes;
}

std::vector<std::string> dimsOf(const object_model::Array& array) {
  std::vector<std::string> names;
  for (const memory::AxisFacts& axis : memory::axesOf(array)) {
    names.push_back(axis.name);
  }
  return reversed(names);
}

std::vector<unsigned long> shapeOf(const object_model::Array& array) {
  std::vector<unsigned long> shape;
  for (unsigned long k = array.size().size(); k > 0; --k) {
    shape.push_back(array.size()[k - 1]);
  }
  return shape;
}

py::tuple shapeTuple(const object_model::Array& array) {
  const std::vector<unsigned long> shape = shapeOf(array);
  py::tuple tuple(shape.size());
  for (std::size_t k = 0; k < shape.size(); ++k) {
    tuple[k] = shape[k];
  }
  return tuple;
}

std::string spelledDtypeOf(const object_model::Array& array) {
  const auto* const known = dynamic_cast<const HasDtype*>(&array);
  return known == nullptr ? std::string() : known->dtype();
}

py::dtype dtypeOf(const object_model::Array& array) {
  const std::string spelled = spelledDtypeOf(array);
  if (!spelled.empty()) {
    return py::dtype(spelled);
  }
  const object_model::BulkValues* const bulk = memory::bulkValuesOf(array);
  return py::dtype(bulk == nullptr ? "O" : memory::nameOf(bulk->storedType()));
}

std::string utf8Of(const py::handle& text) {
  if (PyBytes_Check(text.ptr())) {
    return py::reinterpret_borrow<py::bytes>(text);
  }
  Py_ssize_t length = 0;
  if (const char* const plain = PyUnicode_AsUTF8AndSize(text.ptr(), &length)) {
    return {plain, static_cast<std::size_t>(length)};
  }
  PyErr_Clear();
  const auto bytes = py::reinterpret_steal<py::object>(
      PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
  if (!bytes) {
    throw py::error_already_set();
  }
  return py::reinterpret_borrow<py::bytes>(bytes);
}

py::str textOf(const std::string& utf8) {
  PyObject* const text =
      PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "surrogateescape");
  if (text == nullptr) {
    throw py::error_already_set();
  }
  return py::reinterpret_steal<py::str>(text);
}

}  // namespace quillon::python
