#include <hdf5.h>
#include <quillon/netcdf/LibraryLock.h>

namespace quillon::netcdf {
namespace {

/// Keeps libhdf5 from printing what fails in this thread, which libnetcdf does for the thread that
/// uses it first: it looks for attributes that need not be there.
bool keepQuiet(std::mutex& lock) {
  const std::lock_guard<std::mutex> guard(lock);
  return H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr) >= 0;
}

}  // namespace

std::mutex& libraryLock() {
  static std::mutex lock;  // needs no destruction, so that files may be closed at the very end
  [[maybe_unused]] thread_local const bool isQuiet = keepQuiet(lock);
  return lock;
}

}  // namespace quillon::netcdf
