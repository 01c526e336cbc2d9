#pragma once

#include <hdf5.h>

#include "FileCheck.h"
#include "Hdf5.h"

namespace quillon::netcdf {

/// A handle of libhdf5's for a netCDF-4 file that libnetcdf has open, to see what libnetcdf does
/// not tell.
///
/// The rule of closing: libnetcdf's handle is opened before this one and closed after it, and
/// whatever is opened through id() is closed before this object. The types of texts that libhdf5
/// keeps for a file point to the handle that was opened first; reading one when that is closed ends
/// the process. It is no second file either, but libnetcdf's reopened, so that both see the same
/// bytes, wherever the file's name leads by now.
///
/// A data set is not kept open through id() between reads: while it is, libnetcdf cannot give it
/// another chunk cache.
///
/// Threads: the constructor and the destructor take libraryLock(), so that neither is to run under
/// it. Whoever uses id() holds it.
class Hdf5File {
 public:
  /// @param opened libnetcdf's handle for the file.
  /// Without a handle of its own for a file that is not that one, or that libnetcdf does not have
  /// open as a plain file of the system, or that this process may write: what it has written need
  /// not be in the file yet.
  Hdf5File(const CheckedFile& file, hid_t opened);
  Hdf5File(const Hdf5File&) = delete;
  Hdf5File& operator=(const Hdf5File&) = delete;
  ~Hdf5File();

  bool isOpen() const { return m_id.exists(); }

  /// The file's identifier, negative where there is none.
  hid_t id() const { return m_id.id(); }

  /// Whether an object that was opened through id() stands in this very file, and not in one that a
  /// link leads to.
  bool holds(hid_t object) const;

 private:
  FileIdentity m_file;
  Hdf5Object m_id;
};

}  // namespace quillon::netcdf
