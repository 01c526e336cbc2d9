#pragma once

#include <string>

namespace quillon::netcdf {

/// A file that is open for reading, checked before the library sees it.
class CheckedFile {
 public:
  /// Refuses a file that is missing, no regular file, empty or visibly damaged. @throws Error
  explicit CheckedFile(std::string path);
  CheckedFile(const CheckedFile&) = delete;
  CheckedFile& operator=(const CheckedFile&) = delete;
  ~CheckedFile();

  const std::string& path() const;

  /// The file's length when it was opened.
  unsigned long bytes() const;

  /// Refuses a file that has become shorter: the libraries below read zeros past its end.
  /// @throws Error
  void requireUncut() const;

 private:
  std::string m_path;
  int m_descriptor = -1;
  unsigned long m_bytes = 0;
};

/// @throws Error naming the file; `what` says what is wrong.
[[noreturn]] void failReading(const std::string& path, const std::string& what);

}  // namespace quillon::netcdf
