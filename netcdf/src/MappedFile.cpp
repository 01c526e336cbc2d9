#include "MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quillon::netcdf {

MappedFile::MappedFile(const std::string& path, unsigned long bytes) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    return;
  }
  void* address = mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE, file, 0);
  close(file);
  if (address != MAP_FAILED) {
    m_address = address;
    m_bytes = bytes;
  }
}

MappedFile::~MappedFile() {
  if (m_address != nullptr) {
    munmap(m_address, m_bytes);
  }
}

std::string_view MappedFile::bytes() const {
  return {static_cast<const char*>(m_address), m_bytes};
}

}  // namespace quillon::netcdf
