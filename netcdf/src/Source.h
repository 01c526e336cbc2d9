#pragma once

#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::netcdf {

/// An open file: the library's handle, closed with the object, and what is needed to read from it
/// and to report errors.
class Source {
 public:
  /// Opens `path` for reading. @throws Error
  Source(std::string path, OpenOptions options);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  /// The root group's id.
  int id() const;
  const OpenOptions& options() const;

  /// The file's length in bytes.
  unsigned long fileBytes() const;

  /// @throws Error naming the file; `what` says what is wrong.
  [[noreturn]] void fail(const std::string& what) const;

  /// Fails with the library's own words after `subject` unless `status` is success.
  void require(int status, const std::string& subject) const;

 private:
  void open();

  std::string m_path;
  OpenOptions m_options;
  unsigned long m_fileBytes = 0;
  int m_id = -1;
};

}  // namespace quillon::netcdf
