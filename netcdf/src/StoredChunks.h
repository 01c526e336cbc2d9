#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Hdf5File.h"
#include "Source.h"
#include "StoredChunk.h"
#include "StoredValues.h"

namespace quillon::netcdf {

/// What is known of a chunked data set.
struct ChunkedData {
  std::string path;  ///< in the file
  int type = 0;      ///< libnetcdf's number of the values' type
  ChunkFormat format;
  std::vector<unsigned long> extents;  ///< fastest dimension first
  std::vector<unsigned long> chunks;   ///< the extents of a chunk
  std::vector<char> fill;  ///< the value in chunks that were never written; empty if there is none
};

/// The bytes of a chunk as they are stored.
struct PackedChunk {
  std::vector<unsigned long> first;  ///< the chunk's first position
  std::unique_ptr<char[]> bytes;     ///< the stored ones, first
  unsigned long capacity = 0;        ///< of `bytes`
  unsigned long size = 0;            ///< 0 for one that was never written
  std::uint32_t skipped = 0;         ///< a bit for each filter that was not applied
};

/// Values in chunks that libhdf5 finds and that are unpacked here.
class StoredChunks final : public StoredValues {
 public:
  StoredChunks(std::shared_ptr<const Source> source, ChunkedData data);

  /// Blocks of whole chunks only; others are better read by who keeps unpacked chunks. They are
  /// unpacked by as many threads as the machine runs at a time.
  bool read(const unsigned long* start, const unsigned long* extent, void* values) const override;

  bool holdsSame(const StoredValues& other, const unsigned long* start,
                 const unsigned long* extent) const override;

 private:
  class Unpacking;

  bool hasBlock(const unsigned long* start, const unsigned long* extent) const;
  Hdf5Object open() const;
  bool fetch(hid_t data, PackedChunk& chunk) const;
  bool fetchAll(std::vector<PackedChunk>& chunks, unsigned long count) const;
  bool isSame(const PackedChunk& mine, const StoredChunks& other, const PackedChunk& others) const;

  std::shared_ptr<const Source> m_source;
  ChunkedData m_data;
  unsigned long m_number;  // tells this object from all others there ever were

  // Under libraryLock(): whether chunks that are larger than the blocks that were asked for are the
  // same as those of the object of that number.
  mutable unsigned long m_comparedWith = 0;
  mutable std::map<std::vector<unsigned long>, bool> m_verdicts;
};

}  // namespace quillon::netcdf
