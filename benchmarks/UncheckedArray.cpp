#include "UncheckedArray.h"

#include <object_model/InvalidCall.h>

#include <type_traits>
#include <utility>

namespace benchmarks {
namespace {

using object_model::ElementType;
using object_model::Tuple;

template <class T>
constexpr ElementType ELEMENT_TYPE = ElementType::String;
template <>
constexpr ElementType ELEMENT_TYPE<unsigned long> = ElementType::UInt;
template <>
constexpr ElementType ELEMENT_TYPE<long> = ElementType::Int;
template <>
constexpr ElementType ELEMENT_TYPE<double> = ElementType::Double;
template <>
constexpr ElementType ELEMENT_TYPE<std::complex<double>> = ElementType::Complex;

}  // namespace

template <class T>
UncheckedArray<T>::UncheckedArray(const std::string& name,
                                  const std::vector<quillon::memory::Axis>& axes,
                                  std::vector<T> values)
    : ArrayBase(name, ELEMENT_TYPE<T>, axes), m_values(std::move(values)) {
  unsigned long stride = 1;
  for (const quillon::memory::Axis& axis : axes) {
    m_strides.push_back(stride);
    stride *= axis.size();
  }
}

template <class T>
UncheckedArray<T>::UncheckedArray(UncheckedArray&& other) noexcept = default;

template <class T>
UncheckedArray<T>::~UncheckedArray() = default;

template <class T>
const T& UncheckedArray<T>::value(const Tuple& index) const {
  unsigned long offset = index[0];  // the stride of dimension 0 is 1
  for (unsigned long k = 1; k < index.size(); ++k) {
    offset += index[k] * m_strides[k];
  }
  return m_values[offset & (m_values.size() - 1)];
}

template <class T>
double UncheckedArray<T>::getValueAsDouble(const Tuple& index) const {
  if constexpr (std::is_same_v<T, double>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsDouble(index);
  }
}

template <class T>
unsigned long UncheckedArray<T>::getValueAsUInt(const Tuple& index) const {
  if constexpr (std::is_same_v<T, unsigned long>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsUInt(index);
  }
}

template <class T>
long UncheckedArray<T>::getValueAsInt(const Tuple& index) const {
  if constexpr (std::is_same_v<T, long>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsInt(index);
  }
}

template <class T>
std::string UncheckedArray<T>::getValueAsString(const Tuple& index) const {
  if constexpr (std::is_same_v<T, std::string>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsString(index);
  }
}

template <class T>
std::complex<double> UncheckedArray<T>::getValueAsComplex(const Tuple& index) const {
  if constexpr (std::is_same_v<T, std::complex<double>>) {
    return value(index);
  } else {
    return ArrayBase::getValueAsComplex(index);
  }
}

template class UncheckedArray<unsigned long>;
template class UncheckedArray<long>;
template class UncheckedArray<double>;
template class UncheckedArray<std::complex<double>>;
template class UncheckedArray<std::string>;

}  // namespace benchmarks
