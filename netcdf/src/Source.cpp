#include "Source.h"

#include <netcdf.h>

#include <utility>

#include "FileCheck.h"

namespace quillon::netcdf {

Source::Source(std::string path, unsigned long fileBytes, OpenOptions options)
    : m_path(std::move(path)), m_fileBytes(fileBytes), m_options(std::move(options)) {
  const int status = nc_open(m_path.c_str(), NC_NOWRITE, &m_id);
  if (status == NC_ENOTNC) {
    fail("it is not a netCDF file");
  }
  require(status, "it cannot be opened, or is damaged or cut short");
}

// What the library says on closing a file that was only read does not matter.
Source::~Source() { nc_close(m_id); }

int Source::id() const { return m_id; }
const OpenOptions& Source::options() const { return m_options; }
unsigned long Source::fileBytes() const { return m_fileBytes; }
void Source::fail(const std::string& what) const { failReading(m_path, what); }

void Source::require(int status, const std::string& subject) const {
  if (status != NC_NOERR) {
    fail(subject + " (" + nc_strerror(status) + ")");
  }
}

}  // namespace quillon::netcdf
