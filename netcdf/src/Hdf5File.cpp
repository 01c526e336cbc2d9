#include "Hdf5File.h"

#include <quillon/netcdf/LibraryLock.h>
#include <sys/stat.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace quillon::netcdf {
namespace {

/// Whether a file that libhdf5 has open is this one. Other drivers than the plain one have handles
/// of other types.
bool isOpenAs(hid_t id, const FileIdentity& file) {
  const Hdf5Object access(H5Fget_access_plist(id), H5Pclose);
  void* handle = nullptr;
  // never true: an open file has such a list
  if (!access.exists() || H5Pget_driver(access.id()) != H5FD_SEC2 ||
      // never true: that driver tells the handle of every open file
      H5Fget_vfd_handle(id, H5P_DEFAULT, &handle) < 0 || handle == nullptr) {
    return false;
  }
  struct stat facts {};
  // never false: the descriptor is that of an open file
  return fstat(*static_cast<const int*>(handle), &facts) == 0 &&
         FileIdentity{facts.st_dev, facts.st_ino} == file;
}

bool isReadOnly(hid_t id) {
  unsigned intent = H5F_ACC_RDWR;
  // never false: libhdf5 knows how it has a file open
  return H5Fget_intent(id, &intent) >= 0 && intent == H5F_ACC_RDONLY;
}

}  // namespace

Hdf5File::Hdf5File(const CheckedFile& file, hid_t opened) : m_file(file.identity()) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  if (opened >= 0 && isOpenAs(opened, m_file) && isReadOnly(opened)) {
    m_id = Hdf5Object(H5Freopen(opened), H5Fclose);
  }
}

Hdf5File::~Hdf5File() {
  const std::lock_guard<std::mutex> guard(libraryLock());
  m_id = Hdf5Object();
}

bool Hdf5File::holds(hid_t object) const {
  const Hdf5Object file(H5Iget_file_id(object), H5Fclose);
  // never false: every open object stands in a file
  return file.exists() && isOpenAs(file.id(), m_file);
}

}  // namespace quillon::netcdf
