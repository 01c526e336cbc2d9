#include "StoredChunks.h"

#include <quillon/memory/Bounded.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <mutex>
#include <new>
#include <utility>

#include "Parallel.h"
#include "StoredRun.h"

namespace quillon::netcdf {
namespace {

/// Whether a block of an array of the extents `shape` begins and ends where chunks do, or at the
/// array's end. Dimension 0 comes first.
bool isOfWholeChunks(const std::vector<unsigned long>& shape,
                     const std::vector<unsigned long>& chunks, const unsigned long* start,
                     const unsigned long* extent) {
  for (std::size_t k = 0; k < shape.size(); ++k) {
    const unsigned long end = start[k] + extent[k];
    if (start[k] % chunks[k] != 0 || (end % chunks[k] != 0 && end != shape[k])) {
      return false;
    }
  }
  return true;
}

// Of unpacked chunks whose stored bytes are held at a time, unless one alone has more.
constexpr unsigned long BATCH_BYTES = 1UL << 24U;
// A chunk whose stored bytes are more is left to libnetcdf.
constexpr unsigned long MOST_STORED_BYTES = 1UL << 26U;
constexpr std::size_t MOST_VERDICTS = 4096;

unsigned long nextNumber() {
  static std::atomic<unsigned long> last{0};
  return ++last;
}

/// The chunks that a block touches.
class ChunkWalk {
 public:
  ChunkWalk(const ChunkedData& data, const unsigned long* start, const unsigned long* extent)
      : m_data(data) {
    for (std::size_t k = 0; k < data.chunks.size(); ++k) {
      const unsigned long first = start[k] / data.chunks[k];
      m_first.push_back(first);
      m_counts.push_back((start[k] + extent[k] - 1) / data.chunks[k] - first + 1);
      m_size *= m_counts.back();
    }
  }

  unsigned long size() const { return m_size; }

  /// The first position of a chunk.
  std::vector<unsigned long> positionOf(unsigned long number) const {
    std::vector<unsigned long> position;
    for (std::size_t k = 0; k < m_counts.size(); ++k) {
      position.push_back((m_first[k] + number % m_counts[k]) * m_data.chunks[k]);
      number /= m_counts[k];
    }
    return position;
  }

 private:
  const ChunkedData& m_data;
  std::vector<unsigned long> m_first;
  std::vector<unsigned long> m_counts;
  unsigned long m_size = 1;
};

/// Whether the values of a whole chunk follow each other where they go to, too.
bool areOneRun(unsigned long valueBytes, const std::vector<RunDimension>& dimensions) {
  unsigned long bytes = valueBytes;
  return std::all_of(dimensions.begin(), dimensions.end(), [&bytes](const RunDimension& next) {
    const bool follows = next.extent == 1 || next.toStep == bytes;
    bytes *= next.extent;
    return follows;
  });
}

}  // namespace

/// Puts the chunks of a block into place. One for each thread.
class StoredChunks::Unpacking {
 public:
  Unpacking(const ChunkedData& data, const unsigned long* start, const unsigned long* extent,
            char* values)
      : m_data(data), m_start(start), m_extent(extent), m_values(values), m_unpacker(data.format) {}

  bool unpack(const PackedChunk& chunk) {
    const unsigned long valueBytes = m_data.format.valueBytes;
    std::vector<RunDimension> dimensions;
    unsigned long values = 1;
    unsigned long offset = 0;
    unsigned long fromStep = valueBytes;
    unsigned long toStep = valueBytes;
    for (std::size_t k = 0; k < m_data.chunks.size(); ++k) {
      const unsigned long skipped = chunk.first[k] - m_start[k];
      const unsigned long extent = std::min(m_data.chunks[k], m_extent[k] - skipped);
      dimensions.push_back({extent, fromStep, toStep});
      values *= extent;
      offset += skipped * toStep;
      fromStep *= m_data.chunks[k];
      toStep *= m_extent[k];
    }
    char* const to = m_values + offset;
    if (values * valueBytes == m_data.format.bytes && areOneRun(valueBytes, dimensions)) {
      return unpackTo(chunk, to);
    }
    m_unpacked.resize(m_data.format.bytes);
    return unpackTo(chunk, m_unpacked.data()) &&
           // never false: copying does not fail
           forEachRun(valueBytes, dimensions,
                      [&](unsigned long from, unsigned long place, unsigned long bytes) {
                        std::memcpy(to + place, m_unpacked.data() + from, bytes);
                        return true;
                      });
  }

 private:
  bool unpackTo(const PackedChunk& chunk, char* to) {
    if (chunk.size > 0) {
      return m_unpacker.unpack(chunk.bytes.get(), chunk.size, chunk.skipped, to);
    }
    for (unsigned long k = 0; k < m_data.format.bytes; k += m_data.fill.size()) {
      std::memcpy(to + k, m_data.fill.data(), m_data.fill.size());
    }
    return true;
  }

  const ChunkedData& m_data;
  const unsigned long* m_start;
  const unsigned long* m_extent;
  char* m_values;
  ChunkUnpacker m_unpacker;
  std::vector<char> m_unpacked;
};

StoredChunks::StoredChunks(std::shared_ptr<const Source> source, ChunkedData data)
    : m_source(std::move(source)), m_data(std::move(data)), m_number(nextNumber()) {}

/// Whether the block lies in the data set, which may be shorter than the variable.
bool StoredChunks::hasBlock(const unsigned long* start, const unsigned long* extent) const {
  for (std::size_t k = 0; k < m_data.extents.size(); ++k) {
    if (memory::boundedSum(start[k], extent[k]) > m_data.extents[k]) {
      return false;
    }
  }
  return true;
}

Hdf5Object StoredChunks::open() const {
  return {H5Dopen2(m_source->plainFile().id(), m_data.path.c_str(), H5P_DEFAULT), H5Dclose};
}

/// Fetches the chunk at `chunk.first`. To be called under libraryLock(): libhdf5 keeps what it has
/// last looked up, so that it writes just as many bytes as it has announced. It announces none
/// where no chunk was ever written, and fails for one that is missing among others.
bool StoredChunks::fetch(hid_t data, PackedChunk& chunk) const {
  const std::vector<hsize_t> offset(chunk.first.rbegin(), chunk.first.rend());
  hsize_t size = 0;
  if (H5Dget_chunk_storage_size(data, offset.data(), &size) < 0 ||
      size >
          std::min({mostStoredBytes(m_data.format), m_source->file().bytes(), MOST_STORED_BYTES})) {
    return false;
  }
  chunk.size = size;
  if (size == 0) {
    return !m_data.fill.empty();
  }
  if (chunk.capacity < size) {
    chunk.bytes.reset(new char[size]);  // not make_unique, which would fill it
    chunk.capacity = size;
  }
  return H5Dread_chunk(data, H5P_DEFAULT, offset.data(), &chunk.skipped, chunk.bytes.get()) >= 0;
}

bool StoredChunks::fetchAll(std::vector<PackedChunk>& chunks, unsigned long count) const {
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  const Hdf5Object data = open();
  // never false: it was found there before
  return data.exists() && std::all_of(chunks.begin(), chunks.begin() + static_cast<long>(count),
                                      [&](PackedChunk& chunk) { return fetch(data.id(), chunk); });
}

bool StoredChunks::read(const unsigned long* start, const unsigned long* extent,
                        void* values) const {
  if (!hasBlock(start, extent) || !isOfWholeChunks(m_data.extents, m_data.chunks, start, extent)) {
    return false;
  }
  const ChunkWalk walk(m_data, start, extent);
  const unsigned long batch =
      std::min(walk.size(), std::max(1UL, BATCH_BYTES / m_data.format.bytes));
  const unsigned threads = threadsFor(batch, batch * m_data.format.bytes);
  std::deque<Unpacking> unpackings;
  for (unsigned k = 0; k < threads; ++k) {
    unpackings.emplace_back(m_data, start, extent, static_cast<char*>(values));
  }
  std::vector<PackedChunk> chunks(batch);
  for (unsigned long done = 0; done < walk.size(); done += batch) {
    const unsigned long count = std::min(batch, walk.size() - done);
    for (unsigned long k = 0; k < count; ++k) {
      chunks[k].first = walk.positionOf(done + k);
    }
    if (!fetchAll(chunks, count)) {
      return false;
    }
    std::atomic<bool> isUnpacked{true};
    inParallel(threads, count, [&](unsigned worker, unsigned long k) {
      if (isUnpacked && !unpackings[worker].unpack(chunks[k])) {
        isUnpacked = false;
      }
    });
    if (!isUnpacked) {
      return false;
    }
  }
  return true;
}

bool StoredChunks::isSame(const PackedChunk& mine, const StoredChunks& other,
                          const PackedChunk& others) const {
  if (mine.size == 0 || others.size == 0) {
    return mine.size == others.size && m_data.fill == other.m_data.fill;
  }
  return mine.size == others.size && mine.skipped == others.skipped &&
         std::memcmp(mine.bytes.get(), others.bytes.get(), mine.size) == 0;
}

bool StoredChunks::holdsSame(const StoredValues& other, const unsigned long* start,
                             const unsigned long* extent) const {
  const auto* const second = dynamic_cast<const StoredChunks*>(&other);
  if (second == nullptr || m_data.type != second->m_data.type ||
      !(m_data.format == second->m_data.format) || m_data.chunks != second->m_data.chunks ||
      !hasBlock(start, extent) || !second->hasBlock(start, extent)) {
    return false;
  }
  const bool isWhole = isOfWholeChunks(m_data.extents, m_data.chunks, start, extent);
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  const Hdf5Object firstData = open();
  const Hdf5Object secondData = second->open();
  // never true: both were found there before
  if (!firstData.exists() || !secondData.exists()) {
    return false;  // never run: likewise
  }
  if (m_comparedWith != second->m_number || m_verdicts.size() > MOST_VERDICTS) {
    m_verdicts.clear();
    m_comparedWith = second->m_number;
  }
  PackedChunk mine;
  PackedChunk others;
  const auto compare = [&](const std::vector<unsigned long>& position) {
    mine.first = others.first = position;
    return fetch(firstData.id(), mine) && second->fetch(secondData.id(), others) &&
           isSame(mine, *second, others);
  };
  const ChunkWalk walk(m_data, start, extent);
  for (unsigned long k = 0; k < walk.size(); ++k) {
    const std::vector<unsigned long> position = walk.positionOf(k);
    if (isWhole) {
      if (!compare(position)) {
        return false;
      }
      continue;
    }
    auto verdict = m_verdicts.find(position);
    if (verdict == m_verdicts.end()) {
      verdict = m_verdicts.emplace(position, compare(position)).first;
    }
    if (!verdict->second) {
      return false;
    }
  }
  return true;
}

}  // namespace quillon::netcdf
