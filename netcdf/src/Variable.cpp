#include "Variable.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <mutex>

namespace quillon::netcdf {
namespace {

/// The file's order of dimensions, slowest first.
std::vector<std::size_t> inFileOrder(const unsigned long* numbers, std::size_t dimensions) {
  return {std::make_reverse_iterator(numbers + dimensions), std::make_reverse_iterator(numbers)};
}

// What takes libnetcdf no longer than finding out how it is stored.
constexpr unsigned long FEW_BYTES = 1UL << 14U;

bool isWorthALook(const Variable& variable, const unsigned long* extent) {
  unsigned long bytes = variable.valueBytes;
  for (std::size_t k = 0; k < variable.shape.size(); ++k) {
    bytes *= extent[k];
  }
  return bytes > FEW_BYTES;
}

}  // namespace

std::string Variable::subject() const { return "variable '" + path + "'"; }

memory::BlockLayout Variable::windows(std::size_t first, std::size_t bytes) const {
  return {{shape.begin() + static_cast<std::ptrdiff_t>(first), shape.end()},
          source->options().windowBytes / bytes,
          chunks.empty() ? nullptr : chunks.data() + first};
}

void Variable::read(const unsigned long* start, const unsigned long* extent, void* values) const {
  if (isWorthALook(*this, extent)) {
    const auto known = stored.of(*this);
    if (known != nullptr && known->read(start, extent, values)) {
      return source->file().requireUncut();
    }
  }
  const std::vector<std::size_t> first = inFileOrder(start, shape.size());
  const std::vector<std::size_t> counts = inFileOrder(extent, shape.size());
  const std::lock_guard<std::mutex> guard(libraryLock());
  chunkCache.prepare(*this, start, extent);
  const int status = nc_get_vara(group, id, first.data(), counts.data(), values);
  chunkCache.release(*this, start, extent);
  source->file().requireUncut();
  source->require(status, subject() + " cannot be read");
}

bool Variable::holdsSameBytes(const Variable& other, const unsigned long* start,
                              const unsigned long* extent) const {
  if (!isWorthALook(*this, extent)) {
    return false;
  }
  const auto mine = stored.of(*this);
  const auto others = mine == nullptr ? nullptr : other.stored.of(other);
  const bool isSame = others != nullptr && mine->holdsSame(*others, start, extent);
  source->file().requireUncut();
  other.source->file().requireUncut();
  return isSame;
}

void Variable::reportRead(unsigned long bytes) const {
  if (source->options().onRead) {
    source->options().onRead(bytes);
  }
}

void Variable::failForMemory(unsigned long count) const {
  source->fail(subject() + " cannot be read: there is no memory for " + std::to_string(count) +
               " values at a time");
}

}  // namespace quillon::netcdf
