#include "BufferedBytes.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quillon::netcdf {

bool BufferedBytes::read(unsigned long position, char* destination, unsigned long count) {
  while (count > 0) {
    unsigned long part = 0;
    if (position >= m_first && position - m_first < m_count) {
      const unsigned long offset = position - m_first;
      part = std::min(count, m_count - offset);
      std::copy_n(m_buffer.data() + offset, part, destination);
    } else if (count >= m_buffer.size() / 4) {
      part = readAt(position, destination, count);
    } else if (fill(position)) {
      continue;
    }
    if (part == 0) {
      return false;
    }
    destination += part;
    position += part;
    count -= part;
  }
  return true;
}

bool BufferedBytes::fill(unsigned long position) {
  m_first = position;
  m_count = readAt(position, m_buffer.data(), m_buffer.size());
  return m_count > 0;
}

/// @return how many bytes there are, at most `count`; 0 at the file's end and where it fails.
unsigned long BufferedBytes::readAt(unsigned long position, char* destination,
                                    unsigned long count) const {
  ssize_t read = 0;
  do {
    read = pread(m_descriptor, destination, count, static_cast<off_t>(position));
    // never true: no signal interrupts the reading of a regular file
  } while (read < 0 && errno == EINTR);
  return read > 0 ? static_cast<unsigned long>(read) : 0;
}

}  // namespace quillon::netcdf
