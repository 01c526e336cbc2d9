#include "BufferedBytes.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quillon::netcdf {

bool BufferedBytes::read(unsigned long position, char* destination, unsigned long count) {
  while (count > 0) {
    if ((position < m_first || position - m_first >= m_count) && !fill(position)) {
      return false;
    }
    const unsigned long offset = position - m_first;
    const unsigned long part = std::min(count, m_count - offset);
    std::copy_n(m_buffer.data() + offset, part, destination);
    destination += part;
    position += part;
    count -= part;
  }
  return true;
}

bool BufferedBytes::fill(unsigned long position) {
  ssize_t count = 0;
  do {
    count = pread(m_descriptor, m_buffer.data(), m_buffer.size(), static_cast<off_t>(position));
  } while (count < 0 && errno == EINTR);
  m_first = position;
  m_count = count > 0 ? static_cast<unsigned long>(count) : 0;
  return m_count > 0;
}

}  // namespace quillon::netcdf
