/// @file
/// The view of a sequence of unsigned 64-bit values: a shape or a position.
#pragma once

#include <object_model/Export.h>

namespace object_model {

/// A view of unsigned 64-bit values that somebody else owns: the shape of an array (one extent per
/// dimension, dimension 0 first) or the position of one element (one index per dimension).
///
/// Ownership: none. A view is valid as long as the values that it shows; copy it into a `TupleX` to
/// keep them. Copying a `Tuple` makes a second view of the same values.
/// Threads: const operations may run concurrently.
/// ABI: the destructor is the only virtual; the fields are the address and the count, in this
/// order. size() and operator[] read them directly, so every derived class keeps them true; they
/// are inline, since positions are read once for every element, and exported all the same.
class OBJECT_MODEL_EXPORT Tuple {
 public:
  /// An empty view: size() is 0.
  Tuple();

  /// Another view of the values that `other` shows.
  Tuple(const Tuple& other);

  virtual ~Tuple();  // slots 0 and 1

  /// Always throws: a view has no values of its own to assign to; only `TupleX` takes values.
  /// @throws std::runtime_error "invalid call"; nothing is changed.
  Tuple& operator=(const Tuple& other);

  /// The number of values.
  OBJECT_MODEL_EXPORT unsigned long size() const { return m_size; }

  /// The value at `index`, which must be below size(); it is not checked.
  OBJECT_MODEL_EXPORT const unsigned long& operator[](unsigned long index) const {
    return m_data[index];
  }

  /// The same, writable: the write reaches the values that this view shows.
  OBJECT_MODEL_EXPORT unsigned long& operator[](unsigned long index) { return m_data[index]; }

 protected:
  unsigned long* m_data = nullptr;  ///< the first value; null when there are none
  unsigned long m_size = 0;         ///< the number of values
};

}  // namespace object_model
