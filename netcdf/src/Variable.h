#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Source.h"
#include "WindowLayout.h"

namespace quillon::netcdf {

/// A variable of an open file.
struct Variable {
  std::shared_ptr<const Source> source;
  int group = -1;
  int id = -1;
  std::string path;                 ///< in the file, such as "/climate/SST"
  std::vector<std::size_t> shape;   ///< slowest dimension first
  std::vector<std::size_t> chunks;  ///< the extents of a chunk; empty when stored in one piece

  /// How the variable's subject appears in error messages.
  std::string subject() const;

  /// How the first `dimensions` of its dimensions are divided into windows when each of their
  /// values takes `valueBytes` in memory.
  WindowLayout windows(std::size_t dimensions, std::size_t valueBytes) const;

  /// The block around `offset` for who reads all values of `valueBytes` block after block: a small
  /// one where the file makes nothing of it.
  Block runAround(unsigned long offset, std::size_t valueBytes) const;

  /// Reads the values of `block` as they are stored. @throws Error
  void read(const Block& block, void* values) const;

  /// Tells the caller of this library that values came.
  void reportRead(unsigned long bytes) const;

 private:
  WindowLayout layout(std::size_t dimensions, std::size_t maxValues) const;
};

}  // namespace quillon::netcdf
