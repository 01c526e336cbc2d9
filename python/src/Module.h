#pragma once

#include <pybind11/pybind11.h>

#include <memory>

#include "SharedDictionary.h"

namespace quillon::python {

/// An array as Python holds it.
struct ArrayHandle {
  ArrayPointer array;
  PyRef source;  ///< the numpy array that it was made of; null where values are read
};

/// A dictionary as Python holds it.
using DictionaryHandle = std::shared_ptr<SharedDictionary>;

/// What a function of the libraries is given: an `ArrayHandle` or a `DictionaryHandle`.
const object_model::Data& dataOf(const py::handle& handle);

// What each library folder has to offer.
void bindMemory(py::module_& module);
void bindObjectModel(py::module_& module);
void bindCompare(py::module_& module);
void bindTables(py::module_& module);
void bindNetcdf(py::module_& module);

}  // namespace quillon::python
