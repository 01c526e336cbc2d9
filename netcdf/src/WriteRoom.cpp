#include "WriteRoom.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long MOST_PENDING = 64UL << 20U;

[[noreturn]] void fail(int error) { throw Refusal(std::generic_category().message(error)); }

/// Why a file of so many bytes cannot be; 0 where nothing speaks against it.
int errorOfReserving(int descriptor, unsigned long bytes) {
  rlimit limit{};
  // never false: the system knows this limit
  if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && bytes > limit.rlim_cur) {
    return EFBIG;
  }
  if (::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(bytes)) == 0) {
    return 0;
  }
  // never true: which of these is short depends on the file system
  return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? errno : 0;
}

}  // namespace

WriteRoom::WriteRoom(int descriptor, unsigned long outlineBytes)
    : m_descriptor(descriptor), m_outline(outlineBytes) {
  reserve();
}

void WriteRoom::reserve() const {
  // A hundredth more: compressed noise is a little longer, and lists of chunks take room.
  const unsigned long values = m_pending + m_pending / 100;
  if (const int error = errorOfReserving(m_descriptor, m_written + values + m_outline)) {
    fail(error);
  }
}

void WriteRoom::reserveFor(unsigned long bytes) {
  m_pending += bytes;
  reserve();
}

bool WriteRoom::isSyncDue() const { return m_pending >= MOST_PENDING; }

void WriteRoom::noteSync() {
  m_written = fileBytes();
  m_pending = 0;
}

void WriteRoom::release() const {
  // never true: a file can have the length that it has
  if (::ftruncate(m_descriptor, static_cast<off_t>(fileBytes())) != 0) {
    fail(errno);  // never run: a file can have the length that it has
  }
}

unsigned long WriteRoom::fileBytes() const {
  struct stat status = {};
  if (::fstat(m_descriptor, &status) != 0) {  // never true: the descriptor is open
    fail(errno);                              // never run: the descriptor is open
  }
  return static_cast<unsigned long>(status.st_size);
}

}  // namespace quillon::netcdf
