#include <hdf5.h>
#include <quillon/netcdf/LibraryLock.h>

namespace quillon::netcdf {
namespace {

/// Keeps libhdf5 from printing what fails in this thread, which libnetcdf does for the thread that
/// uses it first: it looks for attributes that need not be there.
struct QuietThread {
  explicit QuietThread(std::mutex& lock) {
    const std::lock_guard<std::mutex> guard(lock);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  }
};

}  // namespace

std::mutex& libraryLock() {
  static std::mutex lock;  // needs no destruction, so that files may be closed at the very end
  [[maybe_unused]] thread_local const QuietThread quiet(lock);
  return lock;
}

}  // namespace quillon::netcdf
