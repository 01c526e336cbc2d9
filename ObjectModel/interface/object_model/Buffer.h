/// @file
/// A pointer to bytes and their number.
#pragma once

#include <object_model/Export.h>

namespace object_model {

/// A run of bytes that somebody else owns.
///
/// Ownership: none; whoever made the bytes keeps them alive and frees them.
/// Threads: const operations may run concurrently.
/// ABI: not polymorphic; the fields are the address and the size, in this order.
class OBJECT_MODEL_EXPORT Buffer {
 public:
  /// No bytes: a null pointer and size 0.
  Buffer();

  /// The `size` bytes from `buffer` on. Both are kept as they are given.
  Buffer(char* buffer, unsigned long size);

  /// The first byte.
  char* getBuffer();
  /// The first byte, read-only.
  const char* getBuffer() const;

  /// The number of bytes.
  unsigned long getSize() const;

 private:
  char* m_buffer;
  unsigned long m_size;
};

}  // namespace object_model
