#pragma once

namespace quillon::netcdf {

struct Variable;

/// Decides how many unpacked chunks of a variable the library keeps.
///
/// A read that takes each of its chunks as a whole leaves nothing worth keeping: without a cache,
/// many variables that are read once take no memory for it. A read of parts of chunks is likely
/// followed by one of the other parts, and without room for all of these chunks each would be
/// unpacked for each read. Whoever reads in order is done with them at the variable's end.
///
/// Threads: everything here is done under libraryLock().
class ChunkCache {
 public:
  /// To be called before a block is read.
  void prepare(const Variable& variable, const unsigned long* start, const unsigned long* extent);

  /// To be called after it.
  void release(const Variable& variable, const unsigned long* start, const unsigned long* extent);

 private:
  bool m_isReadInPart = false;
};

}  // namespace quillon::netcdf
