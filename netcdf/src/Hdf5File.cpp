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
  const Hdf5Id access(H5Fget_access_plist(id), H5Pclose);
  void* handle = nullptr;
  if (!access.isOpen() || H5Pget_driver(access.get()) != H5FD_SEC2 ||
      H5Fget_vfd_handle(id, H5P_DEFAULT, &handle) < 0 || handle == nullptr) {
    return false;
  }
  struct stat facts {};
  return fstat(*static_cast<const int*>(handle), &facts) == 0 &&
         FileIdentity{facts.st_dev, facts.st_ino} == file;
}

/// All files that libhdf5 has open in this process.
std::vector<hid_t> openFiles() {
  const ssize_t count = H5Fget_obj_count(static_cast<hid_t>(H5F_OBJ_ALL), H5F_OBJ_FILE);
  std::vector<hid_t> ids(count > 0 ? static_cast<std::size_t>(count) : 0);
  if (!ids.empty()) {
    const ssize_t found =
        H5Fget_obj_ids(static_cast<hid_t>(H5F_OBJ_ALL), H5F_OBJ_FILE, ids.size(), ids.data());
    ids.resize(found > 0 ? std::min(ids.size(), static_cast<std::size_t>(found)) : 0);
  }
  return ids;
}

bool isReadOnly(hid_t id) {
  unsigned intent = H5F_ACC_RDWR;
  return H5Fget_intent(id, &intent) >= 0 && intent == H5F_ACC_RDONLY;
}

hid_t reopened(const FileIdentity& file) {
  const std::vector<hid_t> ids = openFiles();
  const auto open =
      std::find_if(ids.begin(), ids.end(), [&](hid_t id) { return isOpenAs(id, file); });
  return open == ids.end() || !isReadOnly(*open) ? H5I_INVALID_HID : H5Freopen(*open);
}

}  // namespace

Hdf5Id::Hdf5Id(Hdf5Id&& other) noexcept
    : m_id(std::exchange(other.m_id, H5I_INVALID_HID)), m_close(other.m_close) {}

Hdf5Id& Hdf5Id::operator=(Hdf5Id&& other) noexcept {
  std::swap(m_id, other.m_id);
  std::swap(m_close, other.m_close);
  return *this;
}

Hdf5Id::~Hdf5Id() {
  if (isOpen()) {
    m_close(m_id);
  }
}

QuietHdf5::QuietHdf5() {
  H5Eget_auto2(H5E_DEFAULT, &m_print, &m_data);
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

QuietHdf5::~QuietHdf5() { H5Eset_auto2(H5E_DEFAULT, m_print, m_data); }

Hdf5File::Hdf5File(const CheckedFile& file) : m_file(file.identity()) {
  if (file.isClassic()) {
    return;
  }
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  m_id = Hdf5Id(reopened(m_file), H5Fclose);
}

Hdf5File::~Hdf5File() {
  const std::lock_guard<std::mutex> guard(libraryLock());
  m_id = Hdf5Id();
}

bool Hdf5File::holds(hid_t object) const {
  const Hdf5Id file(H5Iget_file_id(object), H5Fclose);
  return file.isOpen() && isOpenAs(file.get(), m_file);
}

}  // namespace quillon::netcdf
