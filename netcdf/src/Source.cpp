#include "Source.h"

#include <netcdf.h>

#include <utility>

namespace quillon::netcdf {

Source::Source(const std::string& path, OpenOptions options)
    : m_file(path),
      m_options(std::move(options)),
      m_handle(m_file),
      m_plainFile(m_file, m_handle.hdf5()) {}

int Source::id() const { return m_handle.id(); }
hid_t Source::hdf5() const { return m_handle.hdf5(); }
const OpenOptions& Source::options() const { return m_options; }
const CheckedFile& Source::file() const { return m_file; }
const Hdf5File& Source::plainFile() const { return m_plainFile; }
void Source::fail(const std::string& what) const { failReading(m_file.path(), what); }

void Source::require(int status, const std::string& subject) const {
  if (status != NC_NOERR) {
    fail(subject + " (" + nc_strerror(status) + ")");
  }
}

}  // namespace quillon::netcdf
