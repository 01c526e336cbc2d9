#include <quillon/netcdf/LibraryLock.h>

namespace quillon::netcdf {

std::mutex& libraryLock() {
  static std::mutex lock;  // needs no destruction, so that files may be closed at the very end
  return lock;
}

}  // namespace quillon::netcdf
