// Arrays and dictionaries in memory.

#include <pybind11/numpy.h>
#include <pybind11/stl.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Nearest.h>
#include <quillon/memory/Outline.h>

#include "Attributes.h"
#include "LazyArray.h"
#include "Module.h"
#include "Numpy.h"
#include "Ticks.h"

namespace quillon::python {

const object_model::Data& dataOf(const py::handle& handle) {
  if (py::isinstance<ArrayHandle>(handle)) {
    return *handle.cast<const ArrayHandle&>().array;
  }
  return *handle.cast<DictionaryHandle>();
}

namespace {

using Names = std::vector<std::string>;
using Extents = std::vector<unsigned long>;

ArrayHandle overNumpy(const std::string& name, const Names& dims, const py::array& values) {
  return {arrayOver(name, dims, values), keep(values)};
}

ArrayHandle ofTexts(const std::string& name, const Names& dims, const py::array& values) {
  const Outline outline{name, dims, {values.shape(), values.shape() + values.ndim()}};
  return {arrayOfTexts(outline, values.attr("ravel")().attr("tolist")()), keep(values)};
}

ArrayHandle ofDictionaries(const std::string& name, const Names& dims, const py::array& values,
                           const std::vector<DictionaryHandle>& elements) {
  const Outline outline{name, dims, {values.shape(), values.shape() + values.ndim()}};
  return {arrayOfDictionaries(outline, elements), keep(values)};
}

ArrayHandle lazily(const std::string& name, const Names& dims, const Extents& shape,
                   const py::dtype& dtype, const py::object& read, unsigned long window) {
  const auto spelled = dtype.attr("str").cast<std::string>();
  const LazyRequest request{{name, dims, shape}, storedTypeOf(dtype), spelled, keep(read), window};
  ArrayPointer array = lazyArray(request);
  if (dtype.kind() == 'M' || dtype.kind() == 'm') {
    array = ticksOf(name, array, tickUnitOf(dtype));
  }
  return {array, nullptr};
}

void setRemarks(const ArrayHandle& handle, const std::string& unit,
                const std::optional<std::string>& physicalUnit, const std::string& description,
                const py::dict& attributes) {
  handle.array->setUnit(unit);
  if (physicalUnit) {
    handle.array->setPhysicalUnit(*physicalUnit);
  }
  handle.array->setDescription(description);
  setAttributes(attributes, *handle.array);
}

py::object coordinatesOf(const ArrayHandle& handle, unsigned long dimension) {
  const unsigned long rank = handle.array->size().size();
  const auto found = std::dynamic_pointer_cast<const memory::ArrayBase>(
      handle.array->coordinates(rank - 1 - dimension));
  // Nobody changes what is handed out.
  return found == nullptr
             ? py::object(py::none())
             : py::cast(ArrayHandle{std::const_pointer_cast<memory::ArrayBase>(found), nullptr});
}

void setCoordinates(const ArrayHandle& handle, unsigned long dimension,
                    const ArrayHandle& coordinates) {
  handle.array->setCoordinates(handle.array->size().size() - 1 - dimension, coordinates.array);
}

std::string describeArray(const ArrayHandle& handle) { return memory::describe(*handle.array); }

void bindArrays(py::module_& module) {
  // The base's own units: those that were given, not those that a dtype brings.
  py::class_<ArrayHandle>(module, "Array")
      .def_property_readonly("name",
                             [](const ArrayHandle& h) { return textOf(h.array->getName()); })
      .def_property_readonly(
          "dims", [](const ArrayHandle& h) { return py::tuple(py::cast(dimsOf(*h.array))); })
      .def_property_readonly("shape", [](const ArrayHandle& h) { return shapeTuple(*h.array); })
      .def_property_readonly("dtype", [](const ArrayHandle& h) { return dtypeOf(*h.array); })
      .def_property_readonly(
          "unit", [](const ArrayHandle& h) { return textOf(h.array->ArrayBase::getUnit()); })
      .def_property_readonly(
          "physical_unit",
          [](const ArrayHandle& h) { return textOf(h.array->ArrayBase::getPhysicalUnit()); })
      .def_property_readonly("description",
                             [](const ArrayHandle& h) { return textOf(h.array->getDescription()); })
      .def_property_readonly("attrs", [](const ArrayHandle& h) { return attributesOf(*h.array); })
      .def_property_readonly(
          "element_type",
          [](const ArrayHandle& h) { return memory::nameOf(h.array->getElementType()); })
      .def_property_readonly("source", [](const ArrayHandle& h) { return objectOf(h.source); })
      .def("set_remarks", &setRemarks)
      .def("set_attrs", [](const ArrayHandle& h,
                           const py::dict& attributes) { setAttributes(attributes, *h.array); })
      .def("coordinates", &coordinatesOf)
      .def("set_coordinates", &setCoordinates)
      .def("read", [](const ArrayHandle& h, const Extents& start,
                      const Extents& extent) { return readBlock(*h.array, start, extent); })
      .def("renamed",
           [](const ArrayHandle& h, const std::string& name) {
             return ArrayHandle{siblingOf(h.array, name), h.source};
           })
      .def("describe", &describeArray);
  module.def("numbers", &overNumpy);
  module.def("texts", &ofTexts);
  module.def("dictionaries", &ofDictionaries);
  module.def("lazy", &lazily);
}

// -------------------------------------------------------------------------------------------------

py::object entryOf(const SharedDictionary& dictionary, const std::string& name) {
  const Entry& entry = dictionary.at(name);
  return entry.array == nullptr ? py::cast(entry.dictionary)
                                : py::cast(ArrayHandle{entry.array, entry.source});
}

void setArray(SharedDictionary& dictionary, const std::string& name, const ArrayHandle& handle) {
  dictionary.set({siblingOf(handle.array, name), handle.source, nullptr});
}

void setDictionary(SharedDictionary& dictionary, const std::string& name,
                   const DictionaryHandle& entry) {
  if (depthOf(dictionary) + heightOf(*entry) >= DEEPEST) {
    PyErr_SetString(
        PyExc_RecursionError,
        ("dictionaries may not nest deeper than " + std::to_string(DEEPEST) + " levels").c_str());
    throw py::error_already_set();
  }
  dictionary.set({nullptr, nullptr, copyOf(*entry, name)});
}

void bindDictionaries(py::module_& module) {
  py::class_<SharedDictionary, DictionaryHandle>(module, "Dictionary")
      .def(py::init<const std::string&, const std::string&>())
      .def_property_readonly("name", [](const SharedDictionary& d) { return textOf(d.getName()); })
      .def_property_readonly("description",
                             [](const SharedDictionary& d) { return textOf(d.getDescription()); })
      .def_property_readonly("attrs", [](const SharedDictionary& d) { return attributesOf(d); })
      .def("set_attrs",
           [](SharedDictionary& d, const py::dict& attributes) { setAttributes(attributes, d); })
      .def_readwrite("coordinates", &SharedDictionary::coordinates)
      .def_readwrite("is_read_only", &SharedDictionary::isReadOnly)
      .def("names", &SharedDictionary::names)
      .def("contains", &SharedDictionary::contains)
      .def("get", &entryOf)
      .def("set_array", &setArray)
      .def("set_dictionary", &setDictionary)
      .def("remove", &SharedDictionary::remove)
      .def("copy",
           [](const SharedDictionary& d, const std::string& name) { return copyOf(d, name); })
      .def("describe", [](const SharedDictionary& d) { return memory::describe(d); });
}

}  // namespace

void bindMemory(py::module_& module) {
  bindArrays(module);
  bindDictionaries(module);
  module.def("nearest_names", [](const std::string& name, const Names& names) {
    return memory::nearestNames(name, names);
  });
}

}  // namespace quillon::python
