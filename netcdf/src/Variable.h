#pragma once

#include <quillon/memory/Values.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "ChunkCache.h"
#include "Source.h"
#include "StoredValues.h"

namespace quillon::netcdf {

/// A variable of an open file. Its dimensions stand in the array's order, the fastest first.
///
/// Threads: the const operations take libraryLock() where they need it.
struct Variable {
  std::shared_ptr<const Source> source;
  int group = -1;
  int id = -1;
  std::string path;                    ///< in the file, such as "/climate/SST"
  std::size_t valueBytes = 0;          ///< of one value in the file
  std::vector<unsigned long> shape;    ///< as far as it is read
  std::vector<unsigned long> chunks;   ///< the extents of a chunk; empty when stored in one piece
  mutable ChunkCache chunkCache = {};  ///< under libraryLock()
  LazyStoredValues stored = {};        ///< what is read without libnetcdf

  /// How the variable's subject appears in error messages.
  std::string subject() const;

  /// How its dimensions from `first` on are divided into windows when each of their values takes
  /// `bytes` in memory.
  memory::BlockLayout windows(std::size_t first, std::size_t bytes) const;

  /// Reads a block of values as they are stored. @throws Error
  /// @param start, extent one number for each dimension.
  void read(const unsigned long* start, const unsigned long* extent, void* values) const;

  /// Whether another variable is known to have the same values as stored in a block, since its file
  /// has the same bytes for them. False where it is not known. @throws Error
  bool holdsSameBytes(const Variable& other, const unsigned long* start,
                      const unsigned long* extent) const;

  /// Tells the caller of this library that values came. Not to be called under a lock.
  void reportRead(unsigned long bytes) const;

  /// Makes `values` long enough for so many. @throws Error when memory is short.
  template <class Value>
  void makeRoom(std::vector<Value>& values, unsigned long count) const {
    try {
      if (values.size() < count) {
        values.resize(count);
      }
    } catch (const std::bad_alloc&) {
      failForMemory(count);
    } catch (const std::length_error&) {
      failForMemory(count);
    }
  }

  /// @throws Error that says that memory is short for `count` values.
  [[noreturn]] void failForMemory(unsigned long count) const;
};

}  // namespace quillon::netcdf
