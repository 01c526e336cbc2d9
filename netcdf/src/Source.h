#pragma once

#include <quillon/netcdf/File.h>

#include <string>

#include "FileCheck.h"

namespace quillon::netcdf {

/// An open file: the library's handle, closed with the object, and what is needed to read from it
/// and to report errors.
///
/// Threads: whoever calls the library with what is here holds libraryLock(). The constructor and
/// the destructor take it themselves, so that neither is to run under it.
class Source {
 public:
  /// Opens the file at `path` for reading. @throws Error
  Source(const std::string& path, OpenOptions options);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  /// The root group's id.
  int id() const;
  const OpenOptions& options() const;

  /// The file itself, as the system has it.
  const CheckedFile& file() const;

  /// @throws Error naming the file; `what` says what is wrong.
  [[noreturn]] void fail(const std::string& what) const;

  /// Fails with the library's own words after `subject` unless `status` is success.
  void require(int status, const std::string& subject) const;

 private:
  CheckedFile m_file;
  OpenOptions m_options;
  int m_id = -1;
};

}  // namespace quillon::netcdf
