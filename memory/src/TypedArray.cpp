#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillon::memory {

using object_model::Tuple;

template <class T>
TypedArray<T>::TypedArray(std::string name, std::vector<Axis> axes, std::vector<T> values)
    : ValueArray<T>(std::move(name), std::move(axes)) {
  this->requireCount(values.size());
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
    : ValueArray<T>(std::move(name), std::move(axes)), m_values(values) {
  this->requireCount(count);
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
    : ValueArray<T>(std::move(other)),
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
    this->setPlace(m_values, packedStrides(this->size(), sizeof(T)));
  }
}

template <class T>
const T& TypedArray<T>::value(const Tuple& index) const {
  return m_values[this->offsetOf(index)];
}

template <class T>
void TypedArray<T>::setValue(const Tuple& index, T value) {
  const unsigned long offset = this->offsetOf(index);
  data()[offset] = std::move(value);  // a dictionary keeps the container of its place
}

template <class T>
T* TypedArray<T>::data() {
  if (m_writable == nullptr && m_values != nullptr) {
    throw InvalidCall("Array '" + getName() +
                      "' views values that it does not own; change them where they are");
  }
  return m_writable;
}

template <class T>
ResultOf<T> TypedArray<T>::valueAt(const Tuple& index) const {
  if constexpr (std::is_same_v<T, Dictionary>) {
    return &value(index);
  } else {
    return value(index);
  }
}

template class TypedArray<signed char>;
template class TypedArray<short>;
template class TypedArray<int>;
template class TypedArray<long>;
template class TypedArray<unsigned char>;
template class TypedArray<unsigned short>;
template class TypedArray<unsigned int>;
template class TypedArray<unsigned long>;
template class TypedArray<float>;
template class TypedArray<double>;
template class TypedArray<std::complex<float>>;
template class TypedArray<std::complex<double>>;
template class TypedArray<std::string>;
template class TypedArray<bool>;
template class TypedArray<Dictionary>;

}  // namespace quillon::memory
