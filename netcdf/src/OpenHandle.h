#pragma once

#include <string>

namespace quillon::netcdf {

class CheckedFile;

/// The library's handle of an open file, closed with the last object that has it.
///
/// A netCDF-4 file is open once, however many objects have it: the types of texts that libhdf5
/// keeps for a file point to the handle that was opened first, and reading one after that handle
/// was closed, by another handle that is still open, ends the process.
///
/// Threads: the constructor and the destructor take libraryLock(), so that neither is to run under
/// it.
class OpenHandle {
 public:
  /// @throws Error
  explicit OpenHandle(const CheckedFile& file);
  OpenHandle(const OpenHandle&) = delete;
  OpenHandle& operator=(const OpenHandle&) = delete;
  ~OpenHandle();

  /// The root group's id.
  int id() const { return m_id; }

 private:
  int m_id = -1;
};

}  // namespace quillon::netcdf
