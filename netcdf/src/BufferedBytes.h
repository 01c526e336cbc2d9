#pragma once

#include <array>

namespace quillon::netcdf {

/// Reads stretches of an open file. Short ones that are near each other are read together.
class BufferedBytes {
 public:
  /// The descriptor stays the caller's.
  explicit BufferedBytes(int descriptor) : m_descriptor(descriptor) {}

  /// Copies the `count` bytes from `position` on. @return whether the file has them all.
  bool read(unsigned long position, char* destination, unsigned long count);

 private:
  bool fill(unsigned long position);
  unsigned long readAt(unsigned long position, char* destination, unsigned long count) const;

  int m_descriptor;
  std::array<char, 8192> m_buffer{};
  unsigned long m_first = 0;  // where the buffered bytes stand in the file
  unsigned long m_count = 0;
};

}  // namespace quillon::netcdf
