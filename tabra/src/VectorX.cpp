#include <tabra/VectorX.h>

#include <algorithm>
#include <utility>

namespace tabra {

template <class T>
VectorX<T>::VectorX(unsigned long count) : m_size(count), m_values(std::make_unique<T[]>(count)) {}

template <class T>
VectorX<T>::VectorX(std::initializer_list<T> list) : VectorX(list.size()) {
  std::copy(list.begin(), list.end(), m_values.get());
}

template <class T>
VectorX<T>::VectorX(const VectorX& other) : VectorX(other.m_size) {
  std::copy_n(other.m_values.get(), m_size, m_values.get());
}

template <class T>
VectorX<T>::VectorX(VectorX&& other) noexcept
    : m_size(std::exchange(other.m_size, 0)), m_values(std::move(other.m_values)) {}

template <class T>
VectorX<T>::~VectorX() = default;

template <class T>
unsigned long VectorX<T>::size() const {
  return m_size;
}

template <class T>
T& VectorX<T>::operator[](unsigned long index) {
  return m_values[index];
}

template <class T>
const T& VectorX<T>::operator[](unsigned long index) const {
  return m_values[index];
}

template class VectorX<unsigned long>;

}  // namespace tabra
