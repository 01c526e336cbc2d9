#include "StoredRuns.h"

#include <quillon/memory/Bounded.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "BufferedBytes.h"
#include "ByteOrder.h"
#include "StoredRun.h"

namespace quillon::netcdf {
namespace {

// Of each file at a time, which a processor's caches hold.
constexpr unsigned long PIECE_BYTES = 1UL << 17U;

/// Compares stretches of two files.
class RunComparison {
 public:
  RunComparison(int first, int second)
      : m_first(first),
        m_second(second),
        m_firstBytes(new char[PIECE_BYTES]),
        m_secondBytes(new char[PIECE_BYTES]) {}

  bool areSame(unsigned long first, unsigned long second, unsigned long bytes) {
    for (unsigned long done = 0; done < bytes; done += PIECE_BYTES) {
      const unsigned long piece = std::min(PIECE_BYTES, bytes - done);
      if (!m_first.read(first + done, m_firstBytes.get(), piece) ||
          !m_second.read(second + done, m_secondBytes.get(), piece) ||
          std::memcmp(m_firstBytes.get(), m_secondBytes.get(), piece) != 0) {
        return false;
      }
    }
    return true;
  }

 private:
  BufferedBytes m_first;
  BufferedBytes m_second;
  std::unique_ptr<char[]> m_firstBytes;
  std::unique_ptr<char[]> m_secondBytes;
};

}  // namespace

StoredRuns::StoredRuns(std::shared_ptr<const Source> source, RunPlace place)
    : m_source(std::move(source)), m_place(std::move(place)) {}

/// Whether the block lies in the variable, and its bytes in the file.
bool StoredRuns::hasBlock(const unsigned long* start, const unsigned long* extent) const {
  unsigned long end = memory::boundedSum(m_place.begin, m_place.valueBytes);
  for (std::size_t k = 0; k < m_place.extents.size(); ++k) {
    const unsigned long last = memory::boundedSum(start[k], extent[k]);
    if (last > m_place.extents[k]) {
      return false;
    }
    end = memory::boundedSum(end, memory::boundedProduct(last - 1, m_place.steps[k]));
  }
  return end <= m_source->file().bytes();
}

unsigned long StoredRuns::positionOf(const unsigned long* start) const {
  unsigned long position = m_place.begin;
  for (std::size_t k = 0; k < m_place.steps.size(); ++k) {
    position += start[k] * m_place.steps[k];
  }
  return position;
}

bool StoredRuns::read(const unsigned long* start, const unsigned long* extent, void* values) const {
  if (!hasBlock(start, extent)) {
    return false;
  }
  std::vector<RunDimension> dimensions;
  unsigned long bytes = m_place.valueBytes;
  for (std::size_t k = 0; k < m_place.steps.size(); ++k) {
    dimensions.push_back({extent[k], m_place.steps[k], bytes});
    bytes *= extent[k];
  }
  BufferedBytes file(m_source->file().descriptor());
  auto* const to = static_cast<char*>(values);
  const unsigned long begin = positionOf(start);
  const bool isRead =
      forEachRun(m_place.valueBytes, dimensions,
                 [&](unsigned long from, unsigned long offset, unsigned long count) {
                   return file.read(begin + from, to + offset, count);
                 });
  toMachineOrder(to, bytes / m_place.valueBytes, m_place.valueBytes, m_place.isBigEndian);
  return isRead;
}

bool StoredRuns::holdsSame(const StoredValues& other, const unsigned long* start,
                           const unsigned long* extent) const {
  const auto* const second = dynamic_cast<const StoredRuns*>(&other);
  if (second == nullptr || m_place.type != second->m_place.type ||
      m_place.isBigEndian != second->m_place.isBigEndian ||
      m_place.extents.size() != second->m_place.extents.size() || !hasBlock(start, extent) ||
      !second->hasBlock(start, extent)) {
    return false;
  }
  std::vector<RunDimension> dimensions;
  for (std::size_t k = 0; k < m_place.steps.size(); ++k) {
    dimensions.push_back({extent[k], m_place.steps[k], second->m_place.steps[k]});
  }
  RunComparison comparison(m_source->file().descriptor(), second->m_source->file().descriptor());
  const unsigned long firstBegin = positionOf(start);
  const unsigned long secondBegin = second->positionOf(start);
  return forEachRun(m_place.valueBytes, dimensions,
                    [&](unsigned long first, unsigned long offset, unsigned long bytes) {
                      return comparison.areSame(firstBegin + first, secondBegin + offset, bytes);
                    });
}

}  // namespace quillon::netcdf
