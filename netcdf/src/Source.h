#pragma once

#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::netcdf {

/// An open file: the library's handle, closed with the object, and what is needed to read from it
/// and to report errors.
class Source {
 public:
  /// Opens the file at `path`, of `fileBytes` bytes, for reading. @throws Error
  Source(std::string path, unsigned long fileBytes, OpenOptions options);
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
  std::string m_path;
  unsigned long m_fileBytes;
  OpenOptions m_options;
  int m_id = -1;
};

}  // namespace quillon::netcdf
