#pragma once

#include <hdf5.h>

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

  /// The file as libnetcdf has it open in libhdf5, so that what both read of it goes through one
  /// handle; invalid for a classic file. What is opened through it is to be closed before this is.
  hid_t hdf5() const { return m_hdf5; }

 private:
  int m_id = -1;
  hid_t m_hdf5 = H5I_INVALID_HID;
};

}  // namespace quillon::netcdf
