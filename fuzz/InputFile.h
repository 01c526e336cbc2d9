#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Law.h"

namespace quillon::fuzz {

/// A file that lasts as long as the object. It stands in a directory, since libhdf5 follows links
/// to the end, and the one that leads to a file in memory ends nowhere.
class InputFile {
 public:
  InputFile(const std::uint8_t* bytes, std::size_t size)
      : m_path(std::filesystem::temp_directory_path() / "quillon-fuzz-XXXXXX") {
    const int file = mkstemp(m_path.data());
    const bool isWritten = file >= 0 && ::write(file, bytes, size) == static_cast<ssize_t>(size);
    if (!isWritten || ::close(file) != 0) {
      reportBreach("no file for the reader can be made");
    }
  }
  ~InputFile() { ::unlink(m_path.c_str()); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const std::string& path() const { return m_path; }

 private:
  std::string m_path;
};

}  // namespace quillon::fuzz
