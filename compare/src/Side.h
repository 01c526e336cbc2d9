#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <quillon/memory/Values.h>

#include <memory>
#include <vector>

namespace quillon::compare {

/// The numbers or truth values of one array of a pair, a block of them at a time: where they lie,
/// or in a buffer of its own.
class Side {
 public:
  /// Borrows the array, which must be of numbers or truth values.
  explicit Side(const object_model::Array& array);

  /// The type of the values in memory: that in which they are stored or, for an array that is read
  /// by its accessor, of the accessor.
  object_model::StoredType storedType() const { return m_storedType; }

  /// Whether no value is copied.
  bool isInPlace() const { return m_origin != nullptr; }

  /// Whether it takes a call for each value.
  bool isByAccessor() const { return m_bulk == nullptr; }

  /// The extents in which the values are best read; null where it makes no difference.
  const unsigned long* chunkExtents() const;

  /// Makes the values of a block available until the next call.
  void load(const memory::Block& block);

  /// The first value of the block.
  const char* first() const { return m_first; }

  /// How many bytes one index further the next value lies, dimension 0 first.
  const std::vector<long>& strides() const { return m_strides; }

 private:
  void read(const memory::Block& block);

  const object_model::Array& m_array;
  const object_model::BulkValues* m_bulk;
  object_model::StoredType m_storedType;
  const char* m_origin = nullptr;  // the value at position 0; null where they are read
  const char* m_first = nullptr;
  std::vector<long> m_strides;
  std::unique_ptr<char[]> m_buffer;
  unsigned long m_room = 0;  // bytes in the buffer
};

}  // namespace quillon::compare
