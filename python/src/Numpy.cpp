#include "Numpy.h"

#include <quillon/memory/StridedArray.h>
#include <quillon/memory/Values.h>

#include <utility>

#include "Ticks.h"

namespace quillon::python {
namespace {

using object_model::StoredType;

std::string nameOf(const py::dtype& dtype) {
  return py::str(static_cast<const py::object&>(dtype)).cast<std::string>();
}

bool isTicks(const py::dtype& dtype) { return dtype.kind() == 'M' || dtype.kind() == 'm'; }

class DictionaryElements final : public memory::ValueArray<memory::Dictionary> {
 public:
  DictionaryElements(const Outline& outline,
                     std::vector<std::shared_ptr<SharedDictionary>> elements)
      : ValueArray(outline.name, axesOf(outline)), m_elements(std::move(elements)) {
    requireCount(m_elements.size());
  }

  const object_model::Data* valueAt(const object_model::Tuple& index) const override {
    return m_elements[offsetOf(index)].get();
  }

 private:
  std::vector<std::shared_ptr<SharedDictionary>> m_elements;
};

template <class T>
ArrayPointer strided(const std::string& name, std::vector<memory::Axis> axes,
                     const py::array& values) {
  std::vector<long> strides(values.strides(), values.strides() + values.ndim());
  return std::make_shared<memory::StridedArray<T>>(
      name, std::move(axes), static_cast<const T*>(values.data()), reversed(strides), keep(values));
}

Outline outlineOf(const std::string& name, const std::vector<std::string>& dims,
                  const py::array& values) {
  return {name, dims, {values.shape(), values.shape() + values.ndim()}};
}

}  // namespace

namespace {

/// The stored types of one kind of dtypes, from the smallest to the largest.
std::vector<StoredType> typesOfKind(char kind) {
  switch (kind) {
    case 'i':
      return {StoredType::Int8, StoredType::Int16, StoredType::Int32, StoredType::Int64};
    case 'u':
      return {StoredType::UInt8, StoredType::UInt16, StoredType::UInt32, StoredType::UInt64};
    case 'f':
      return {StoredType::Float32, StoredType::Float64};
    case 'c':
      return {StoredType::Complex64, StoredType::Complex128};
    case 'b':
      return {StoredType::Boolean};
    case 'M':
    case 'm':
      return {StoredType::Int64};
    default:
      return {};
  }
}

}  // namespace

StoredType storedTypeOf(const py::dtype& dtype) {
  const bool isNative = dtype.byteorder() == '=' || dtype.byteorder() == '|';
  for (const StoredType type : typesOfKind(dtype.kind())) {
    if (isNative && memory::bytesOf(type) == static_cast<unsigned long>(dtype.itemsize())) {
      return type;
    }
  }
  throw py::type_error("no array holds values of the dtype '" + nameOf(dtype) + "'");
}

ArrayPointer arrayOver(const std::string& name, const std::vector<std::string>& dims,
                       const py::array& values) {
  const py::dtype dtype = values.dtype();
  const StoredType type = storedTypeOf(dtype);
  const std::vector<memory::Axis> axes = axesOf(outlineOf(name, dims, values));
  ArrayPointer array;
  memory::visitStoredType(
      type, [&](auto tag) { array = strided<typename decltype(tag)::Type>(name, axes, values); });
  return isTicks(dtype) ? ticksOf(name, array, tickUnitOf(dtype)) : array;
}

ArrayPointer arrayOfTexts(const Outline& outline, const py::list& texts) {
  std::vector<std::string> copies;
  copies.reserve(texts.size());
  for (const py::handle& text : texts) {
    copies.push_back(utf8Of(text));
  }
  return std::make_shared<memory::StringArray>(outline.name, axesOf(outline), std::move(copies));
}

ArrayPointer arrayOfDictionaries(const Outline& outline,
                                 const std::vector<std::shared_ptr<SharedDictionary>>& elements) {
  return std::make_shared<DictionaryElements>(outline, elements);
}

py::array emptyArray(const py::dtype& dtype, const std::vector<unsigned long>& shape) {
  return {dtype, std::vector<py::ssize_t>(shape.begin(), shape.end())};
}

py::array textsArray(const std::vector<std::string>& texts,
                     const std::vector<unsigned long>& shape) {
  py::array result = emptyArray(py::dtype("O"), shape);
  auto* const cells = static_cast<PyObject**>(result.mutable_data());
  for (std::size_t k = 0; k < texts.size(); ++k) {
    PyObject* const before = cells[k];
    cells[k] = textOf(texts[k]).release().ptr();
    Py_XDECREF(before);
  }
  return result;
}

namespace {

py::array readTexts(const object_model::Array& array, const std::vector<unsigned long>& start,
                    const std::vector<unsigned long>& extent) {
  unsigned long count = 1;
  for (const unsigned long size : extent) {
    count *= size;
  }
  std::vector<std::string> texts(count);
  {
    const py::gil_scoped_release released;
    memory::copyValues(array, reversed(start).data(), reversed(extent).data(), texts.data());
  }
  return textsArray(texts, extent);
}

}  // namespace

py::array readBlock(const object_model::Array& array, const std::vector<unsigned long>& start,
                    const std::vector<unsigned long>& extent) {
  const object_model::BulkValues* const bulk = memory::bulkValuesOf(array);
  if (bulk == nullptr) {
    return readTexts(array, start, extent);
  }
  py::array values = emptyArray(dtypeOf(array), extent);
  void* const destination = values.mutable_data();
  if (values.size() > 0) {
    const py::gil_scoped_release released;
    bulk->readValues(reversed(start).data(), reversed(extent).data(), destination);
  }
  return values;
}

}  // namespace quillon::python
