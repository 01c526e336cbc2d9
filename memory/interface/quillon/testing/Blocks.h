/// @file
/// What the suites share: positions and blocks of arrays, and their values.
#pragma once

#include <gtest/gtest.h>
#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <object_model/TupleX.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/Values.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace quillon::testing {

/// The extents of a shape, dimension 0 first.
inline std::vector<unsigned long> extentsOf(const object_model::Tuple& shape) {
  std::vector<unsigned long> extents(shape.size());
  for (std::size_t k = 0; k < extents.size(); ++k) {
    extents[k] = shape[k];
  }
  return extents;
}

/// All positions of a block that begins at `start`, in storage order.
inline std::vector<std::vector<unsigned long>> positionsIn(
    const std::vector<unsigned long>& extents, const std::vector<unsigned long>& start) {
  std::vector<std::vector<unsigned long>> positions = {start};
  for (std::size_t k = extents.size(); k > 0;) {
    --k;  // the slowest dimension first, so that the fastest comes to vary fastest
    std::vector<std::vector<unsigned long>> finer;
    for (const std::vector<unsigned long>& position : positions) {
      for (unsigned long index = 0; index < extents[k]; ++index) {
        finer.push_back(position);
        finer.back()[k] += index;
      }
    }
    positions = std::move(finer);
  }
  return positions;
}

/// All positions of a grid, in storage order.
inline std::vector<std::vector<unsigned long>> positionsIn(
    const std::vector<unsigned long>& extents) {
  return positionsIn(extents, std::vector<unsigned long>(extents.size(), 0));
}

/// A block of a grid.
inline memory::Block blockOf(const std::vector<unsigned long>& extents,
                             const std::vector<unsigned long>& start,
                             const std::vector<unsigned long>& extent) {
  memory::Block block = {0, 1, start, extent};
  unsigned long step = 1;
  for (std::size_t k = 0; k < extents.size(); ++k) {
    block.first += start[k] * step;
    block.count *= extent[k];
    step *= extents[k];
  }
  return block;
}

/// Blocks of a grid: the whole, each half along each dimension, each position alone, the inner
/// part.
inline std::vector<memory::Block> blocksIn(const std::vector<unsigned long>& extents) {
  const std::vector<unsigned long> origin(extents.size(), 0);
  std::vector<memory::Block> blocks = {blockOf(extents, origin, extents)};
  for (std::size_t k = 0; k < extents.size(); ++k) {
    std::vector<unsigned long> lower = extents;
    std::vector<unsigned long> upper = extents;
    std::vector<unsigned long> middle = origin;
    lower[k] = extents[k] / 2;
    upper[k] = extents[k] - extents[k] / 2;
    middle[k] = extents[k] / 2;
    blocks.push_back(blockOf(extents, origin, lower));
    blocks.push_back(blockOf(extents, middle, upper));
  }
  for (const std::vector<unsigned long>& position : positionsIn(extents)) {
    blocks.push_back(blockOf(extents, position, std::vector<unsigned long>(extents.size(), 1)));
  }
  std::vector<unsigned long> start = origin;
  std::vector<unsigned long> inner = extents;
  for (std::size_t k = 0; k < extents.size(); ++k) {
    if (extents[k] > 2) {
      start[k] = 1;
      inner[k] = extents[k] - 2;
    }
  }
  blocks.push_back(blockOf(extents, start, inner));
  return blocks;
}

/// Whether two values are the same, a NaN and a NaN included.
template <class T>
bool isSame(const T& a, const T& b) {
  return a == b || (!(a == a) && !(b == b));
}

/// What the accessor of the element type of `T` gives at a position.
template <class T>
auto readAt(const object_model::Array& array, const std::vector<unsigned long>& position) {
  return (array.*
          memory::ElementTraits<T>::READ)(object_model::TupleX(position.data(), position.size()));
}

/// Whether `stored`, widened, is what the accessor gives at `position`.
template <class Stored>
bool isValueAt(const object_model::Array& array, const std::vector<unsigned long>& position,
               const Stored& stored) {
  using Element = memory::ElementOf<Stored>;
  const Element expected = readAt<Element>(array, position);
  return isSame(static_cast<Element>(stored), expected);
}

/// Compares the bulk values of a block, copied and in place, with what the accessor gives.
template <class Stored>
::testing::AssertionResult areBulkValuesTrue(const object_model::Array& array,
                                             const object_model::BulkValues& bulk,
                                             const memory::Block& block) {
  const auto positions = positionsIn(block.extent, block.start);
  const auto copied = std::make_unique<Stored[]>(positions.size() + 1);
  bulk.readValues(block.start.data(), block.extent.data(), copied.get());
  if (!(copied[positions.size()] == Stored())) {
    return ::testing::AssertionFailure() << "readValues() writes past the end of the block";
  }
  const object_model::ValuesInPlace inPlace = bulk.valuesInPlace();
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const std::string place = " at " + ::testing::PrintToString(positions[i]);
    if (!isValueAt(array, positions[i], copied[i])) {
      return ::testing::AssertionFailure() << "readValues() gives another value" << place;
    }
    const auto* at = static_cast<const char*>(inPlace.first);
    for (std::size_t k = 0; at != nullptr && k < positions[i].size(); ++k) {
      at += static_cast<long>(positions[i][k]) * inPlace.strides[k];
    }
    if (at != nullptr && !isValueAt(array, positions[i], *reinterpret_cast<const Stored*>(at))) {
      return ::testing::AssertionFailure() << "valuesInPlace() leads to another value" << place;
    }
  }
  return ::testing::AssertionSuccess();
}

/// Expects that no two attributes have one name, where the object offers attributes.
inline void expectUniqueAttributes(const object_model::Data& object) {
  const auto* attributes = dynamic_cast<const memory::HasAttributes*>(&object);
  if (attributes == nullptr) {
    return;
  }
  std::set<std::string> names;
  for (const memory::Attribute& attribute : attributes->attributes()) {
    EXPECT_TRUE(names.insert(attribute.name).second) << attribute.name << " occurs twice";
  }
}

}  // namespace quillon::testing
