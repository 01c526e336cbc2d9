#pragma once

#include <initializer_list>
#include <vector>

namespace tabra {

template <class T>
class VectorX {
 public:
  explicit VectorX(unsigned long count);
  VectorX(std::initializer_list<T> list);
  VectorX(const VectorX& other);
  VectorX(VectorX&& other) noexcept;
  ~VectorX();

  unsigned long size() const;
  T& operator[](unsigned long index);
  const T& operator[](unsigned long index) const;

 private:
  std::vector<T> m_values;
};

extern template class VectorX<unsigned long>;

}  // namespace tabra
