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

class ArrayMaker;

/// A variable of an open file. Its dimensions stand in the array's order, the fastest first.
///
/// Threads: the const operations take libraryLock() where they need it.
struct Variable {
  std::shared_ptr<const Source> source;
  int group = -1;
  int id = -1;
  std::string path;                   ///< in the file, such as "/climate/SST"
  std::size_t valueBytes = 0;         ///< of one value in the file
  std::vector<unsigned long> shape;   ///< as far as it is read
  std::vector<unsigned long> chunks;  ///< the extents of a chunk; empty when stored in one piece
  std::vector<Range> ranges = {};     ///< which indices of each dimension; empty for all
  std::vector<int> dimensions = {};   ///< the library's numbers for them
  std::shared_ptr<const ArrayMaker> maker =
      nullptr;                         ///< who knows the coordinates; null for one of these
  mutable ChunkCache chunkCache = {};  ///< under libraryLock()
  LazyStoredValues stored = {};        ///< what is read without libnetcdf

  /// Where the file has the array's index `index` of the dimension `k`.
  unsigned long storedIndex(std::size_t k, unsigned long index) const;

  /// Where the file has a position of the array.
  std::vector<unsigned long> storedStart(const unsigned long* start) const;

  /// How many values a block of these extents has.
  unsigned long countOf(const unsigned long* extent) const;

  /// Whether the values of neighbouring indices are neighbours in the file, along each dimension.
  bool isWithoutSteps() const;

  /// The chunks as the array's indices meet them; empty where none of their ends can be told.
  std::vector<unsigned long> blocks() const;

  /// How the variable's subject appears in error messages.
  std::string subject() const;

  /// How its dimensions from `first` on are divided into windows when each of their values takes
  /// `bytes` in memory.
  memory::BlockLayout windows(std::size_t first, std::size_t bytes) const;

  /// Reads a block of values as they are stored; everything that comes of a variable's values
  /// comes through here. @throws Error
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
