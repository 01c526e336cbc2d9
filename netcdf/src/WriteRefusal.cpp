#include "WriteRefusal.h"

#include <netcdf.h>

#include <cerrno>
#include <system_error>

namespace quillon::netcdf {
namespace {

/// The library only says "HDF error" when the disk is full.
std::string reasonOf(int status, int systemError) {
  switch (systemError) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
      return std::generic_category().message(systemError);
    default:
      return nc_strerror(status);
  }
}

}  // namespace

std::string entryPath(const std::string& path, const std::string& name) {
  return (path == "/" ? path : path + "/") + name;
}

void requireWritten(int status, const std::string& subject) {
  if (status != NC_NOERR) {
    throw Refusal(subject + " (" + reasonOf(status, errno) + ")");
  }
}

}  // namespace quillon::netcdf
