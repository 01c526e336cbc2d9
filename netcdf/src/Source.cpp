#include "Source.h"

#include <netcdf.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "ClassicHeader.h"
#include "HeapDamage.h"

namespace quillon::netcdf {

Source::Source(std::string path, OpenOptions options)
    : m_path(std::move(path)), m_options(std::move(options)) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(m_path, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    fail("there is no such file");
  }
  if (status.type() == std::filesystem::file_type::none) {
    fail(error.message());
  }
  if (std::filesystem::is_directory(status)) {
    fail("it is a directory");
  }
  if (!std::filesystem::is_regular_file(status)) {
    fail("it is not a regular file");
  }
  m_fileBytes = std::filesystem::file_size(m_path, error);
  if (error) {
    fail(error.message());
  }
  if (m_fileBytes == 0) {
    fail("it is empty");
  }
  open();
}

void Source::open() {
  for (const auto& findDamage : {findClassicDamage, findHeapDamage}) {
    const std::string damage = findDamage(m_path, m_fileBytes);
    if (!damage.empty()) {
      fail(damage);
    }
  }
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

void Source::fail(const std::string& what) const {
  throw Error("Cannot read '" + m_path + "': " + what);
}

void Source::require(int status, const std::string& subject) const {
  if (status != NC_NOERR) {
    fail(subject + " (" + nc_strerror(status) + ")");
  }
}

}  // namespace quillon::netcdf
