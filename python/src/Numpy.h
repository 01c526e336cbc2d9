#pragma once

#include <pybind11/numpy.h>

#include <string>
#include <vector>

#include "SharedDictionary.h"

namespace quillon::python {

/// An array over the values of a numpy array of numbers, booleans, times or durations, wherever
/// they lie. It must be aligned and of the machine's byte order.
/// @throws py::type_error for other dtypes.
ArrayPointer arrayOver(const std::string& name, const std::vector<std::string>& dims,
                       const py::array& values);

/// An array of copies of texts, which are `str` or `bytes` in C order.
ArrayPointer arrayOfTexts(const Outline& outline, const py::list& texts);

/// An array whose elements are dictionaries, in C order.
ArrayPointer arrayOfDictionaries(const Outline& outline,
                                 const std::vector<std::shared_ptr<SharedDictionary>>& elements);

/// The stored type of a dtype.
/// @throws py::type_error for one that is not stored as such.
object_model::StoredType storedTypeOf(const py::dtype& dtype);

/// The values of a block, read now. `start` and `extent` are in numpy's order. It lets go of the
/// GIL.
py::array readBlock(const object_model::Array& array, const std::vector<unsigned long>& start,
                    const std::vector<unsigned long>& extent);

/// An uninitialised numpy array.
py::array emptyArray(const py::dtype& dtype, const std::vector<unsigned long>& shape);

/// A numpy array of `str` objects.
py::array textsArray(const std::vector<std::string>& texts,
                     const std::vector<unsigned long>& shape);

}  // namespace quillon::python
