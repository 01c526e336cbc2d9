#include <tabra/DataFrameView.h>
#include <tabra/DataType.h>
#include <tabra/VectorX.h>

#include <utility>

namespace tabra {

DataType::DataType(DataTypeId id) : m_name("closed"), m_id(id) {}

DataTypeId DataType::id() const { return m_id; }

DataFrameView::~DataFrameView() = default;

void DataFrameView::setUnit(unsigned long column, const std::string& unit) {
  setColumnUnit(column, unit);
}

template <class T>
VectorX<T>::VectorX(unsigned long count) : m_values(count) {}

template <class T>
VectorX<T>::VectorX(std::initializer_list<T> list) : m_values(list) {}

template <class T>
VectorX<T>::VectorX(const VectorX& other) = default;

template <class T>
VectorX<T>::VectorX(VectorX&& other) noexcept = default;

template <class T>
VectorX<T>::~VectorX() = default;

template <class T>
unsigned long VectorX<T>::size() const {
  return m_values.size();
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
