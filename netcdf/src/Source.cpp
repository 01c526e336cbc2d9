#include "Source.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <mutex>
#include <utility>

#include "LibraryPath.h"

namespace quillon::netcdf {

Source::Source(const std::string& path, OpenOptions options)
    : m_file(path), m_options(std::move(options)) {
  const std::string unmistakable = libraryPath(path);
  const std::lock_guard<std::mutex> guard(libraryLock());
  const int status = nc_open(unmistakable.c_str(), NC_NOWRITE, &m_id);
  if (status == NC_ENOTNC) {
    fail("it is not a netCDF file");
  }
  require(status, "it cannot be opened, or is damaged or cut short");
}

// What the library says on closing a file that was only read does not matter.
Source::~Source() {
  const std::lock_guard<std::mutex> guard(libraryLock());
  nc_close(m_id);
}

int Source::id() const { return m_id; }
const OpenOptions& Source::options() const { return m_options; }
const CheckedFile& Source::file() const { return m_file; }
void Source::fail(const std::string& what) const { failReading(m_file.path(), what); }

void Source::require(int status, const std::string& subject) const {
  if (status != NC_NOERR) {
    fail(subject + " (" + nc_strerror(status) + ")");
  }
}

}  // namespace quillon::netcdf
