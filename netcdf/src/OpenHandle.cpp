#include "OpenHandle.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include "FileCheck.h"
#include "LibraryPath.h"

namespace quillon::netcdf {
namespace {

/// A file that the library has open.
struct Shared {
  FileIdentity file;
  int id = -1;
  unsigned long users = 0;
};

/// All netCDF-4 files that are open. To be used under libraryLock(). Never destroyed: files may be
/// closed while the process ends.
std::vector<Shared>& sharedFiles() {
  static auto& files = *new std::vector<Shared>();
  return files;
}

int openByLibrary(const CheckedFile& file, const std::string& path) {
  int id = -1;
  const int status = nc_open(path.c_str(), NC_NOWRITE, &id);
  if (status == NC_ENOTNC) {
    failReading(file.path(), "it is not a netCDF file");
  }
  if (status != NC_NOERR) {
    failReading(file.path(), std::string("it cannot be opened, or is damaged or cut short (") +
                                 nc_strerror(status) + ")");
  }
  return id;
}

int openShared(const CheckedFile& file, const std::string& path) {
  std::vector<Shared>& files = sharedFiles();
  const auto open = std::find_if(files.begin(), files.end(), [&](const Shared& shared) {
    return shared.file == file.identity();
  });
  if (open != files.end()) {
    ++open->users;
    return open->id;
  }
  files.reserve(files.size() + 1);  // what is open then has its place without fail
  files.push_back({file.identity(), openByLibrary(file, path), 1});
  return files.back().id;
}

}  // namespace

OpenHandle::OpenHandle(const CheckedFile& file) {
  const std::string path = libraryPath(file.path());
  const std::lock_guard<std::mutex> guard(libraryLock());
  m_id = file.isClassic() ? openByLibrary(file, path) : openShared(file, path);
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
