#pragma once

#include <hdf5.h>

#include "FileCheck.h"

namespace quillon::netcdf {

/// An identifier of libhdf5's that is closed with the object, or none.
///
/// Threads: everything here, the destructor too, is done under libraryLock().
class Hdf5Id {
 public:
  using Close = herr_t (*)(hid_t);

  Hdf5Id() = default;
  /// Takes over what the library has returned; a negative number is none.
  Hdf5Id(hid_t id, Close close) : m_id(id), m_close(close) {}
  Hdf5Id(const Hdf5Id&) = delete;
  Hdf5Id& operator=(const Hdf5Id&) = delete;
  Hdf5Id(Hdf5Id&& other) noexcept;
  Hdf5Id& operator=(Hdf5Id&& other) noexcept;
  ~Hdf5Id();

  bool isOpen() const { return m_id >= 0; }
  hid_t get() const { return m_id; }

 private:
  hid_t m_id = H5I_INVALID_HID;
  Close m_close = nullptr;
};

/// While it lasts, libhdf5 prints no errors of this thread.
class QuietHdf5 {
 public:
  QuietHdf5();
  QuietHdf5(const QuietHdf5&) = delete;
  QuietHdf5& operator=(const QuietHdf5&) = delete;
  ~QuietHdf5();

 private:
  H5E_auto2_t m_print = nullptr;
  void* m_data = nullptr;
};

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
  /// Without a handle for a file that libnetcdf does not have open through libhdf5, or not as a
  /// plain file of the system, or that this process may write: what it has written need not be in
  /// the file yet.
  explicit Hdf5File(const CheckedFile& file);
  Hdf5File(const Hdf5File&) = delete;
  Hdf5File& operator=(const Hdf5File&) = delete;
  ~Hdf5File();

  bool isOpen() const { return m_id.isOpen(); }

  /// The file's identifier, negative where there is none.
  hid_t id() const { return m_id.get(); }

  /// Whether an object that was opened through id() stands in this very file, and not in one that a
  /// link leads to.
  bool holds(hid_t object) const;

 private:
  FileIdentity m_file;
  Hdf5Id m_id;
};

}  // namespace quillon::netcdf
