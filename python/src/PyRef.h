#pragma once

#include <pybind11/pybind11.h>

#include <memory>

namespace quillon::python {

namespace py = pybind11;

/// Keeps a Python object alive from any thread: only letting go of it takes the GIL.
using PyRef = std::shared_ptr<PyObject>;

/// A reference of one's own to `object`; null for None. Called with the GIL.
inline PyRef keep(const py::handle& object) {
  if (!object || object.is_none()) {
    return nullptr;
  }
  return {object.inc_ref().ptr(), [](PyObject* kept) {
            if (Py_IsInitialized() != 0) {
              const py::gil_scoped_acquire gil;
              Py_DECREF(kept);
            }
          }};
}

/// The object, or None. Called with the GIL.
inline py::object objectOf(const PyRef& reference) {
  return reference == nullptr ? py::none() : py::reinterpret_borrow<py::object>(reference.get());
}

}  // namespace quillon::python
