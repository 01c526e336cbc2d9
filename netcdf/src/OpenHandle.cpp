#include "OpenHandle.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "FileCheck.h"
#include "Hdf5Structure.h"
#include "LibraryPath.h"
#include "LongNames.h"

namespace quillon::netcdf {
namespace {

/// A file that the library has open.
struct Shared {
  FileIdentity file;
  int id = -1;
  hid_t hdf5 = H5I_INVALID_HID;
  unsigned long users = 0;
};

/// All netCDF-4 files that are open. To be used under libraryLock(). Never destroyed: files may be
/// closed while the process ends.
std::vector<Shared>& sharedFiles() {
  static auto& files = *new std::vector<Shared>();
  return files;
}

/// The files that are open in libhdf5.
std::vector<hid_t> openHdf5Files() {
  const auto all = static_cast<hid_t>(H5F_OBJ_ALL);
  const ssize_t count = H5Fget_obj_count(all, H5F_OBJ_FILE);
  if (count <= 0) {
    return {};
  }
  std::vector<hid_t> ids(static_cast<std::size_t>(count));
  const ssize_t listed = H5Fget_obj_ids(all, H5F_OBJ_FILE, ids.size(), ids.data());
  ids.resize(static_cast<std::size_t>(std::max<ssize_t>(listed, 0)));
  return ids;
}

std::string pathOf(hid_t file) {
  const ssize_t length = H5Fget_name(file, nullptr, 0);
  std::string name(static_cast<std::size_t>(std::max<ssize_t>(length, 0)), '\0');
  H5Fget_name(file, name.data(), name.size() + 1);
  return name;
}

/// The file that was not open `before`: the one of that name, should other threads have opened
/// files of their own meanwhile.
hid_t findOpened(const std::vector<hid_t>& before, const std::string& path) {
  std::vector<hid_t> opened = openHdf5Files();
  opened.erase(std::remove_if(opened.begin(), opened.end(),
                              [&before](hid_t id) {
                                return std::find(before.begin(), before.end(), id) != before.end();
                              }),
               opened.end());
  const auto named =
      std::find_if(opened.begin(), opened.end(), [&path](hid_t id) { return pathOf(id) == path; });
  // never true, never false: libhdf5 names the file by the path that libnetcdf was given
  return named != opened.end() ? *named : opened.size() == 1 ? opened.front() : H5I_INVALID_HID;
}

[[noreturn]] void failAsSound(const CheckedFile& file, const std::string& obstacle) {
  failReading(file.path(), "it is a sound HDF5 file, but cannot be read as netCDF: " + obstacle);
}

/// Says what it is that libnetcdf refuses the file for, unless that is damaged.
void requireDamage(const CheckedFile& file, const std::string& path, const std::string& refusal) {
  const Hdf5Verdict verdict = judgeHdf5(path);
  if (verdict.isSound) {
    failAsSound(file, verdict.obstacle.empty() ? refusal : verdict.obstacle);
  }
}

void requireShortNames(const CheckedFile& file, int id) {
  const std::string finding = file.isClassic() ? std::string() : findLongName(id);
  if (!finding.empty()) {
    failAsSound(file, finding);
  }
}

int openByLibrary(const CheckedFile& file, const std::string& path) {
  int id = -1;
  const int status = nc_open(path.c_str(), NC_NOWRITE, &id);
  if (status == NC_ENOTNC) {
    failReading(file.path(), "it is not a netCDF file");
  }
  if (status != NC_NOERR) {
    requireDamage(file, path, nc_strerror(status));
    failReading(file.path(), std::string("it cannot be opened, or is damaged or cut short (") +
                                 nc_strerror(status) + ")");
  }
  try {
    requireShortNames(file, id);
  } catch (...) {
    nc_close(id);
    throw;
  }
  return id;
}

/// Whether the file says near its start that libnetcdf wrote it.
bool isByLibnetcdf(const CheckedFile& file) {
  constexpr std::size_t NEAR = 65536;
  const std::string start = file.firstBytes(NEAR);
  const std::size_t mark = start.find("_NCProperties");
  return mark != std::string::npos && start.find(",netcdf=", mark) != std::string::npos;
}

/// A look at the whole structure is for files of other programs: it takes half as long as opening a
/// small one.
void requireNoTrap(const CheckedFile& file, const std::string& path) {
  const std::string trap = isByLibnetcdf(file) ? std::string() : findTrap(path);
  if (!trap.empty()) {
    failAsSound(file, trap);
  }
}

const Shared& openShared(const CheckedFile& file, const std::string& path) {
  std::vector<Shared>& files = sharedFiles();
  const auto open = std::find_if(files.begin(), files.end(), [&](const Shared& shared) {
    return shared.file == file.identity();
  });
  if (open != files.end()) {
    ++open->users;
    return *open;
  }
  requireNoTrap(file, path);
  files.reserve(files.size() + 1);  // what is open then has its place without fail
  const std::vector<hid_t> before = openHdf5Files();
  files.push_back({file.identity(), openByLibrary(file, path), H5I_INVALID_HID, 1});
  try {
    files.back().hdf5 = findOpened(before, path);
  } catch (...) {
    nc_close(files.back().id);
    files.pop_back();
    throw;
  }
  return files.back();
}

}  // namespace

OpenHandle::OpenHandle(const CheckedFile& file) {
  const std::string path = libraryPath(file.path());
  const std::lock_guard<std::mutex> guard(libraryLock());
  if (file.isClassic()) {
    m_id = openByLibrary(file, path);
    return;
  }
  const Shared& shared = openShared(file, path);
  m_id = shared.id;
  m_hdf5 = shared.hdf5;
}

// What the library says on closing a file that was only read does not matter.
OpenHandle::~OpenHandle() {
  const std::lock_guard<std::mutex> guard(libraryLock());
  std::vector<Shared>& files = sharedFiles();
  const auto shared = std::find_if(files.begin(), files.end(),
                                   [this](const Shared& open) { return open.id == m_id; });
  if (shared == files.end()) {
    nc_close(m_id);
  } else if (--shared->users == 0) {
    nc_close(m_id);
    files.erase(shared);
  }
}

}  // namespace quillon::netcdf
