#pragma once

#include <string>
#include <string_view>

namespace quillon::netcdf {

/// A file's bytes, read through memory.
class MappedFile {
 public:
  /// A file that cannot be mapped appears empty.
  MappedFile(const std::string& path, unsigned long bytes);
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  std::string_view bytes() const;

 private:
  void* m_address = nullptr;
  unsigned long m_bytes = 0;
};

}  // namespace quillon::netcdf
