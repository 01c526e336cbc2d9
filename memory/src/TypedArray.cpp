#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Text.h"

namespace quillon::memory {
namespace {

using object_model::Tuple;

void requireCount(const ArrayBase& array, unsigned long count) {
  if (count != array.numberOfElements()) {
    throw std::invalid_argument("Array '" + array.getName() + "' of shape " + toText(array.size()) +
                                " needs " + std::to_string(array.numberOfElements()) +
                                " values and was given " + std::to_string(count));
  }
}

}  // namespace

template <class T>
TypedArray<T>::TypedArray(std::string name, std::vector<Axis> axes, std::vector<T> values)
    : ArrayBase(std::move(name), ElementTraits<T>::TYPE, std::move(axes)) {
  requireCount(*this, values.size());
  if constexpr (std::is_same_v<T, bool>) {
    m_owned = std::make_unique<bool[]>(values.size());
    std::copy(values.begin(), values.end(), m_owned.get());
    m_writable = m_owned.get();
  } else {
    m_owned = std::move(values);
    m_writable = m_owned.data();
  }
  m_values = m_writable;
  placeValues();
  adoptElements();
}

template <class T>
TypedArray<T>::TypedArray(std::string name, std::vector<Axis> axes, const T* values,
                          unsigned long count)
    : ArrayBase(std::move(name), ElementTraits<T>::TYPE, std::move(axes)), m_values(values) {
  requireCount(*this, count);
  if (values == nullptr && count > 0) {
    throw std::invalid_argument("Array '" + getName() + "' was given no values to view");
  }
  placeValues();
}

template <class T>
TypedArray<T> TypedArray<T>::view(std::string name, std::vector<Axis> axes, const T* values,
                                  unsigned long count) {
  return TypedArray(std::move(name), std::move(axes), values, count);
}

template <class T>
TypedArray<T>::TypedArray(TypedArray&& other) noexcept
    : ArrayBase(std::move(other)),
      ValuesOf<T>(std::move(other)),
      m_owned(std::move(other.m_owned)),
      m_writable(std::exchange(other.m_writable, nullptr)),
      m_values(std::exchange(other.m_values, nullptr)) {
  adoptElements();
}

template <class T>
TypedArray<T>::~TypedArray() = default;

template <class T>
void TypedArray<T>::adoptElements() {
  if constexpr (std::is_same_v<T, Dictionary>) {
    for (Dictionary& element : m_owned) {
      element.setParent(this);
    }
  }
}

template <class T>
void TypedArray<T>::placeValues() {
  if constexpr (IS_STORED_TYPE<T>) {
    this->setPlace(m_values, packedStrides(size(), sizeof(T)));
  }
}

template <class T>
const T& TypedArray<T>::value(const Tuple& index) const {
  return m_values[offsetOf(index)];
}

template <class T>
void TypedArray<T>::setValue(const Tuple& index, T value) {
  const unsigned long offset = offsetOf(index);
  if (m_writable == nullptr) {
    throw InvalidCall("Array '" + getName() +
                      "' views values that it does not own; change them where they "
                      "are");
  }
  m_writable[offset] = std::move(value);  // a dictionary keeps the container of its place
}

template <class T>
double TypedArray<T>::getValueAsDouble(const Tuple& index) const {
  if constexpr (std::is_same_v<T, double>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsDouble(index);
  }
}

template <class T>
unsigned long TypedArray<T>::getValueAsUInt(const Tuple& index) const {
  if constexpr (std::is_same_v<T, unsigned long>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsUInt(index);
  }
}

template <class T>
long TypedArray<T>::getValueAsInt(const Tuple& index) const {
  if constexpr (std::is_same_v<T, long>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsInt(index);
  }
}

template <class T>
std::string TypedArray<T>::getValueAsString(const Tuple& index) const {
  if constexpr (std::is_same_v<T, std::string>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsString(index);
  }
}

template <class T>
const object_model::Data* TypedArray<T>::getValueAsDictionary(const Tuple& index) const {
  if constexpr (std::is_same_v<T, Dictionary>) {
    return &value(index);
  } else {
    return ArrayBase::getValueAsDictionary(index);
  }
}

template <class T>
bool TypedArray<T>::getValueAsBoolean(const Tuple& index) const {
  if constexpr (std::is_same_v<T, bool>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsBoolean(index);
  }
}

template <class T>
std::complex<double> TypedArray<T>::getValueAsComplex(const Tuple& index) const {
  if constexpr (std::is_same_v<T, std::complex<double>>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsComplex(index);
  }
}

template class TypedArray<unsigned long>;
template class TypedArray<long>;
template class TypedArray<double>;
template class TypedArray<std::complex<double>>;
template class TypedArray<std::string>;
template class TypedArray<bool>;
template class TypedArray<Dictionary>;

}  // namespace quillon::memory
