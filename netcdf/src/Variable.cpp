#include "Variable.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <functional>
#include <mutex>
#include <numeric>

#include "SteppedRead.h"

namespace quillon::netcdf {
namespace {

int readBlock(const Variable& variable, const unsigned long* start, const unsigned long* extent,
              void* values) {
  const std::vector<unsigned long> stored = variable.storedStart(start);
  if (!variable.isWithoutSteps()) {
    return readStepped(variable, stored, extent, values);
  }
  const std::vector<std::size_t> first =
      inFileOrder<std::size_t>(stored.data(), variable.shape.size());
  const std::vector<std::size_t> counts = inFileOrder<std::size_t>(extent, variable.shape.size());
  return nc_get_vara(variable.group, variable.id, first.data(), counts.data(), values);
}

// What takes libnetcdf no longer than finding out how it is stored.
constexpr unsigned long FEW_BYTES = 1UL << 14U;

bool isWorthALook(const Variable& variable, const unsigned long* extent) {
  return variable.valueBytes * variable.countOf(extent) > FEW_BYTES;
}

}  // namespace

std::string Variable::subject() const { return "variable '" + path + "'"; }

unsigned long Variable::storedIndex(std::size_t k, unsigned long index) const {
  return ranges.empty() ? index
                        : static_cast<unsigned long>(ranges[k].first) +
                              index * static_cast<unsigned long>(ranges[k].step);
}

std::vector<unsigned long> Variable::storedStart(const unsigned long* start) const {
  std::vector<unsigned long> first(start, start + shape.size());
  for (std::size_t k = 0; k < first.size(); ++k) {
    first[k] = storedIndex(k, start[k]);
  }
  return first;
}

unsigned long Variable::countOf(const unsigned long* extent) const {
  return std::accumulate(extent, extent + shape.size(), 1UL, std::multiplies<>());
}

bool Variable::isWithoutSteps() const {
  return std::all_of(ranges.begin(), ranges.end(),
                     [](const Range& range) { return range.step == 1; });
}

std::vector<unsigned long> Variable::blocks() const {
  std::vector<unsigned long> seen = chunks;
  for (std::size_t k = 0; k < seen.size() && !ranges.empty(); ++k) {
    const auto step = static_cast<unsigned long>(ranges[k].step);
    const unsigned long last = storedIndex(k, std::max(shape[k], 1UL) - 1);
    if (last / chunks[k] == storedIndex(k, 0) / chunks[k]) {
      seen[k] = std::max(shape[k], 1UL);
    } else if (storedIndex(k, 0) % chunks[k] == 0 && chunks[k] % step == 0) {
      seen[k] = chunks[k] / step;
    } else {
      return {};
    }
  }
  return seen;
}

memory::BlockLayout Variable::windows(std::size_t first, std::size_t bytes) const {
  const std::vector<unsigned long> ends = blocks();
  return {{shape.begin() + static_cast<std::ptrdiff_t>(first), shape.end()},
          source->options().windowBytes / bytes,
          ends.empty() ? nullptr : ends.data() + first};
}

void Variable::read(const unsigned long* start, const unsigned long* extent, void* values) const {
  if (isWorthALook(*this, extent) && isWithoutSteps()) {
    const auto known = stored.of(*this);
    if (known != nullptr && known->read(storedStart(start).data(), extent, values)) {
      return source->file().requireUncut();
    }
  }
  const std::lock_guard<std::mutex> guard(libraryLock());
  chunkCache.prepare(*this, start, extent);
  const int status = readBlock(*this, start, extent, values);
  chunkCache.release(*this, start, extent);
  source->file().requireUncut();
  source->require(status, subject() + " cannot be read");
}

bool Variable::holdsSameBytes(const Variable& other, const unsigned long* start,
                              const unsigned long* extent) const {
  const std::vector<unsigned long> first = storedStart(start);
  if (!isWorthALook(*this, extent) || !isWithoutSteps() || !other.isWithoutSteps() ||
      first != other.storedStart(start)) {
    return false;
  }
  const auto mine = stored.of(*this);
  const auto others = mine == nullptr ? nullptr : other.stored.of(other);
  const bool isSame = others != nullptr && mine->holdsSame(*others, first.data(), extent);
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
