#pragma once

#include <quillon/netcdf/File.h>

#include <string>

#include "FileCheck.h"
#include "Hdf5File.h"
#include "OpenHandle.h"

namespace quillon::netcdf {

/// An open file: the library's handle, and what is needed to read from it and to report errors.
///
/// Threads: whoever calls the library with what is here holds libraryLock(). The constructor and
/// the destructor take it themselves, so that neither is to run under it.
class Source {
 public:
  /// Opens the file at `path` for reading. @throws Error
  Source(const std::string& path, OpenOptions options);

  /// The root group's id.
  int id() const;
  /// The file in libhdf5; invalid for a classic one.
  hid_t hdf5() const;
  const OpenOptions& options() const;

  /// The file itself, as the system has it.
  const CheckedFile& file() const;

  /// The same in libhdf5 where its bytes may be read past the libraries; else not open.
  const Hdf5File& plainFile() const;

  /// @throws Error naming the file; `what` says what is wrong.
  [[noreturn]] void fail(const std::string& what) const;

  /// Fails with the library's own words after `subject` unless `status` is success.
  void require(int status, const std::string& subject) const;

 private:
  CheckedFile m_file;
  OpenOptions m_options;
  OpenHandle m_handle;
  Hdf5File m_plainFile;  // behind the handle, which is closed after it
};

}  // namespace quillon::netcdf
