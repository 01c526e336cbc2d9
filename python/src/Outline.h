#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/Axis.h>

#include <string>
#include <vector>

#include "PyRef.h"

namespace quillon::python {

/// What an array is called and measured in. Dimensions are in numpy's order, the slowest first.
struct Outline {
  std::string name;
  std::vector<std::string> dims;
  std::vector<unsigned long> shape;
};

/// The axes, dimension 0 (the fastest) first. "slice", "time", "channel" and "label" are axes of
/// these kinds.
std::vector<memory::Axis> axesOf(const Outline& outline);

/// The names of the array's dimensions, and their extents, in numpy's order.
std::vector<std::string> dimsOf(const object_model::Array& array);
std::vector<unsigned long> shapeOf(const object_model::Array& array);

/// The same as a tuple of integers.
py::tuple shapeTuple(const object_model::Array& array);

/// The other way round: numpy's order for dimension 0 first, and back.
template <class T>
std::vector<T> reversed(const std::vector<T>& list) {
  return {list.rbegin(), list.rend()};
}

/// An array whose numpy dtype its stored type does not tell, such as one of times.
class HasDtype {
 public:
  /// As numpy spells it, such as "<M8[ns]"; empty where the stored type tells.
  virtual std::string dtype() const = 0;

 protected:
  HasDtype() = default;
  HasDtype(const HasDtype&) = default;
  HasDtype(HasDtype&&) = default;
  HasDtype& operator=(const HasDtype&) = default;
  HasDtype& operator=(HasDtype&&) = default;
  ~HasDtype() = default;
};

/// What numpy calls the type of the array's values; object for texts and dictionaries.
py::dtype dtypeOf(const object_model::Array& array);

/// The spelling of `HasDtype::dtype`, or nothing.
std::string spelledDtypeOf(const object_model::Array& array);

/// A text of Python's as UTF-8, and back. What is no UTF-8 comes through as Python's file names do.
std::string utf8Of(const py::handle& text);
py::str textOf(const std::string& utf8);

}  // namespace quillon::python
