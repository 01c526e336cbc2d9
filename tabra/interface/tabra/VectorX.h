/// @file
/// The table library's vector of shapes and positions.
#pragma once

#include <tabra/Export.h>

#include <initializer_list>
#include <memory>

namespace tabra {

/// A vector of fixed length that owns its values. The library holds the instance for
/// `unsigned long`, used as a shape or a position.
///
/// Threads: const operations may run concurrently.
template <class T>
class TABRA_EXPORT VectorX {
 public:
  /// `count` values, all 0. @throws std::bad_alloc when memory runs out.
  explicit VectorX(unsigned long count);
  /// The values of `list`, in order. @throws std::bad_alloc when memory runs out.
  VectorX(std::initializer_list<T> list);
  /// An independent copy. @throws std::bad_alloc when memory runs out.
  VectorX(const VectorX& other);
  /// Takes the values over and leaves `other` empty.
  VectorX(VectorX&& other) noexcept;
  ~VectorX();

  /// The number of values.
  unsigned long size() const;

  /// The value at `index`, which must be below size(); it is not checked.
  T& operator[](unsigned long index);
  /// The same, read-only.
  const T& operator[](unsigned long index) const;

 private:
  unsigned long m_size;
  std::unique_ptr<T[]> m_values;
};

extern template class VectorX<unsigned long>;

}  // namespace tabra
