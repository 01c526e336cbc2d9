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

}  // namespace

std::string Variable::subject() const { return "variable '" + path + "'"; }

memory::BlockLayout Variable::windows(std::size_t first, std::size_t bytes) const {
  return {{shape.begin() + static_cast<std::ptrdiff_t>(first), shape.end()},
          source->options().windowBytes / bytes,
          chunks.empty() ? nullptr : chunks.data() + first};
}

void Variable::read(const unsigned long* start, const unsigned long* extent, void* values) const {
  const std::vector<std::size_t> first = inFileOrder(start, shape.size());
  const std::vector<std::size_t> counts = inFileOrder(extent, shape.size());
  const std::lock_guard<std::mutex> guard(libraryLock());
  chunkCache.prepare(*this, start, extent);
  const int status = nc_get_vara(group, id, first.data(), counts.data(), values);
  chunkCache.release(*this, start, extent);
  source->file().requireUncut();
  source->require(status, subject() + " cannot be read");
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
