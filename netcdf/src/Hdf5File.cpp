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
  if (!access.exists() || H5Pget_driver(access.id()) != H5FD_SEC2 ||
      H5Fget_vfd_handle(id, H5P_DEFAULT, &handle) < 0 || handle == nullptr) {
    return false;
  }
  struct stat facts {};
  return fstat(*static_cast<const int*>(handle), &facts) == 0 &&
         FileIdentity{facts.st_dev, facts.st_ino} == file;
}

bool isReadOnly(hid_t id) {
  unsigned intent = H5F_ACC_RDWR;
  return H5Fget_intent(id, &intent) >= 0 && intent == H5F_ACC_RDONLY;
}

}  // namespace

Hdf5File::Hdf5File(const CheckedFile& file, hid_t opened) : m_file(file.identity()) {
  if (file.isClassic()) {
    return;
  }
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
  return file.exists() && isOpenAs(file.id(), m_file);
}

}  // namespace quillon::netcdf
