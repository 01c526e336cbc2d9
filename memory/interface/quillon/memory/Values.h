/// @file
/// Reading the values of any array in blocks, by the fastest way that it offers.
#pragma once

#include <object_model/Array.h>
#include <quillon/memory/ElementTypes.h>

#include <string>
#include <vector>

namespace quillon::memory {

/// A block of positions of an array. Dimension 0 comes first; without dimensions both are empty and
/// the block is the one value.
struct Block {
  unsigned long first = 0;            ///< where its first value stands in storage order
  unsigned long count = 1;            ///< how many values it has
  std::vector<unsigned long> start;   ///< its first position
  std::vector<unsigned long> extent;  ///< how many indices it spans along each dimension
};

/// Divides an array's grid of values into blocks that follow each other in storage order (dimension
/// 0 varies fastest) and have a limited size: the whole grid where it fits, else as many
/// neighbouring slabs of the slowest dimension as fit or, where one slab alone does not, of the
/// next slowest dimension whose slabs do.
class BlockLayout {
 public:
  /// Divides a grid of the extents `shape` into blocks of at most `maxValues` values, but of one at
  /// least. With `chunks`, the extents in which the values are kept, a block ends where a chunk
  /// does if it has room for one, so that none is fetched twice.
  BlockLayout(std::vector<unsigned long> shape, unsigned long maxValues,
              const unsigned long* chunks = nullptr);

  /// The layout for the array's shape and, where it offers bulk values, its chunks.
  BlockLayout(const object_model::Array& array, unsigned long maxValues);

  /// How many values the grid has; 0 where an extent is 0, 1 without dimensions.
  unsigned long size() const { return m_size; }

  /// The block that holds the value at `offset` in storage order, which must be below size().
  /// Stepping from `first + count` of one block to the next meets every value once.
  Block blockAt(unsigned long offset) const;

 private:
  std::vector<unsigned long> m_shape;
  unsigned long m_size = 1;
  std::size_t m_split = 0;         // the dimension across which blocks are cut
  unsigned long m_slabValues = 1;  // values for each index of that dimension
  unsigned long m_slabs = 1;       // indices of that dimension in each block
};

/// Divides an array's grid of values into boxes of whole chunks, for whoever needs all values in
/// any order: each chunk is fetched once, and the memory for a box does not grow with the grid.
class BoxLayout {
 public:
  /// Divides a grid of the extents `shape` into boxes of at most `maxValues` values or, where one
  /// of `chunks` has more, of one chunk. Chunks of more than sixteen times as many are not kept
  /// whole. Without chunks the boxes are runs in storage order.
  BoxLayout(std::vector<unsigned long> shape, unsigned long maxValues,
            const unsigned long* chunks = nullptr);

  /// How many boxes there are; 0 where an extent is 0, 1 without dimensions.
  unsigned long size() const;

  /// The box of that number, which must be below size().
  Block boxAt(unsigned long number) const;

 private:
  unsigned long boxesAlong(std::size_t dimension) const;

  std::vector<unsigned long> m_shape;
  std::vector<unsigned long> m_box;  // the extents of a box
};

/// Copies the values of a block to `destination`, in storage order: from where they lie, in bulk,
/// or one accessor call a value, whichever the array offers. `T` is the type of the array's
/// elements (`double` for `Double`, …; `std::string` for `String`) or, where the array offers bulk
/// values, the type in which they are stored.
/// @param array where the values come from.
/// @param start, extent the block, one number for each dimension, dimension 0 first; it must lie in
///   the array.
/// @param destination room for all values of the block.
/// @throws InvalidCall for a `T` that the array's values are not of.
///   Whatever the array's own operations throw passes through.
template <class T>
void copyValues(const object_model::Array& array, const unsigned long* start,
                const unsigned long* extent, T* destination);

/// The same for a block, such as one of a `BlockLayout`.
template <class T>
void copyValues(const object_model::Array& array, const Block& block, T* destination) {
  copyValues(array, block.start.data(), block.extent.data(), destination);
}

}  // namespace quillon::memory
