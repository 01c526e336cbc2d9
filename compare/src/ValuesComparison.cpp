#include "ValuesComparison.h"

#include <quillon/memory/Axes.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/Values.h>

#include <algorithm>
#include <string>

#include "BoxComparison.h"
#include "Side.h"
#include "Tally.h"

namespace quillon::compare {
namespace {

using memory::Block;
using memory::BoxLayout;
using object_model::Array;
using object_model::ElementType;
using object_model::StoredType;

// Bytes of a block, unless a chunk has more: what the caches of a processor hold.
constexpr unsigned long MOST_BYTES = 1UL << 20U;
// Of chunks that are fetched and perhaps unpacked, so many that several threads can do it.
constexpr unsigned long MOST_FETCHED_BYTES = 1UL << 23U;
// Where each value takes a call, larger blocks would only leave the nearest cache.
constexpr unsigned long MOST_CALLS = 4096;

/// Calls `visit(block)` for all blocks of a grid and tells the progress.
template <class Visit>
void forEachBlock(const BoxLayout& layout, const ValueOptions& options, const Visit& visit) {
  for (unsigned long k = 0; k < layout.size(); ++k) {
    const Block block = layout.boxAt(k);
    visit(block);
    if (options.progress) {
      options.progress(block.count);
    }
  }
}

unsigned long offsetOf(const Block& block, const GridPlace& place) {
  unsigned long offset = place.first;
  for (std::size_t k = 0; k < block.start.size(); ++k) {
    offset += block.start[k] * place.steps[k];
  }
  return offset;
}

Box boxOf(const Side& first, const Side& second, const Block& block, const GridPlace& place) {
  Box box{{first.storedType(), first.first()},
          {second.storedType(), second.first()},
          offsetOf(block, place),
          {}};
  for (std::size_t k = 0; k < block.extent.size(); ++k) {
    box.dimensions.push_back(
        {block.extent[k], first.strides()[k], second.strides()[k], place.steps[k]});
  }
  return box;
}

unsigned long mostBytes(const std::vector<unsigned long>& shape, const Side& side) {
  if (side.isInPlace() || side.chunkExtents() == nullptr) {
    return MOST_BYTES;
  }
  auto bytes = static_cast<double>(memory::bytesOf(side.storedType()));  // of a chunk
  for (std::size_t k = 0; k < shape.size(); ++k) {
    bytes *= static_cast<double>(std::min(side.chunkExtents()[k], shape[k]));
  }
  return bytes <= static_cast<double>(MOST_FETCHED_BYTES) ? MOST_FETCHED_BYTES : MOST_BYTES;
}

BoxLayout layoutOf(const Array& array, const Side& first, const Side& second) {
  const Side& read = first.chunkExtents() != nullptr ? first : second;
  if (read.chunkExtents() == nullptr && (first.isByAccessor() || second.isByAccessor())) {
    return {memory::shapeOf(array), MOST_CALLS};
  }
  const std::vector<unsigned long> shape = memory::shapeOf(array);
  return {shape, mostBytes(shape, read) / memory::bytesOf(read.storedType()), read.chunkExtents()};
}

/// Tells for blocks, without a look at their values, that they are the same.
class StoredBytes {
 public:
  /// What is the same in bytes is the same under every rule in which NaN equals NaN. Under others
  /// nothing is known.
  StoredBytes(const Array& first, const Array& second, const Rule& rule)
      : m_first(rule.nanEqual ? dynamic_cast<const memory::HasStoredBytes*>(&first) : nullptr),
        m_second(second) {}

  bool areSame(const Block& block) const {
    return m_first != nullptr &&
           m_first->holdsSameBytes(m_second, block.start.data(), block.extent.data());
  }

 private:
  const memory::HasStoredBytes* m_first;
  const Array& m_second;
};

bool isSingle(StoredType type) {
  return type == StoredType::Float32 || type == StoredType::Complex64;
}

/// The figures where the first side's values are taken as `T` and the second's as `U`.
template <class T, class U>
Figures figuresAs(const Array& array, const Array& other, Side& first, Side& second,
                  const ValueOptions& options, const GridPlace& place) {
  Tally<T, U> tally(options.rule, options.largest, isSingle(first.storedType()),
                    isSingle(second.storedType()), options.map);
  const StoredBytes bytes(array, other, options.rule);
  forEachBlock(layoutOf(array, first, second), options, [&](const Block& block) {
    if (bytes.areSame(block)) {
      tally.addSame(block.count);
      return;
    }
    first.load(block);
    second.load(block);
    BoxComparison<T, U>(boxOf(first, second, block, place), tally).run();
  });
  return tally.takeFigures();
}

/// Texts have no place in memory: they are read in blocks.
Figures figuresOfTexts(const Array& first, const Array& second, const ValueOptions& options,
                       const GridPlace& place) {
  Tally<std::string, std::string> tally(options.rule, options.largest, false, false, options.map);
  std::vector<std::string> a;
  std::vector<std::string> b;
  forEachBlock(BoxLayout(memory::shapeOf(first), MOST_CALLS), options, [&](const Block& block) {
    a.resize(block.count);
    b.resize(block.count);
    memory::copyValues(first, block, a.data());
    memory::copyValues(second, block, b.data());
    const unsigned long length = block.extent.empty() ? 1 : block.extent[0];
    // Rows, as those of a block that is part of a larger grid do not follow each other there.
    std::vector<unsigned long> position(block.extent.size(), 0);
    for (unsigned long k = 0; k < block.count; k += length) {
      unsigned long offset = offsetOf(block, place);
      for (std::size_t d = 1; d < position.size(); ++d) {
        offset += position[d] * place.steps[d];
      }
      tally.addRun(offset, 1, &a[k], &b[k], length);
      for (std::size_t d = 1; d < position.size() && ++position[d] == block.extent[d]; ++d) {
        position[d] = 0;
      }
    }
  });
  return tally.takeFigures();
}

/// Whether the array's values are integers the lowest of which stands for none.
bool lowestIsMissing(const Array& array) {
  return dynamic_cast<const memory::HasMissing*>(&array) != nullptr ||
         dynamic_cast<const memory::HasTimes*>(&array) != nullptr;
}

}  // namespace

GridPlace placeInGrid(const std::vector<unsigned long>& start,
                      const std::vector<unsigned long>& shape) {
  GridPlace place;
  unsigned long step = 1;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    place.first += start[k] * step;
    place.steps.push_back(step);
    step *= shape[k];
  }
  return place;
}

GridPlace wholeGrid(const object_model::Tuple& shape) {
  std::vector<unsigned long> extents(shape.size());
  for (std::size_t k = 0; k < extents.size(); ++k) {
    extents[k] = shape[k];
  }
  return placeInGrid(std::vector<unsigned long>(extents.size(), 0), extents);
}

bool areNumbers(ElementType type) {
  return type == ElementType::UInt || type == ElementType::Int || type == ElementType::Double ||
         type == ElementType::Complex;
}

bool areComparable(ElementType first, ElementType second) {
  return (areNumbers(first) && areNumbers(second)) ||
         (first == second && (first == ElementType::String || first == ElementType::Boolean));
}

std::vector<BoxDimension> joined(const std::vector<BoxDimension>& dimensions) {
  std::vector<BoxDimension> result;
  for (const BoxDimension& next : dimensions) {
    if (next.extent == 1) {
      continue;
    }
    BoxDimension* const last = result.empty() ? nullptr : &result.back();
    if (last != nullptr &&
        next.firstStride == last->firstStride * static_cast<long>(last->extent) &&
        next.secondStride == last->secondStride * static_cast<long>(last->extent) &&
        next.gridStep == last->gridStep * last->extent) {
      last->extent *= next.extent;
    } else {
      result.push_back(next);
    }
  }
  return result.empty() ? std::vector<BoxDimension>{{1, 0, 0, 1}} : result;
}

Figures figuresOf(const Array& first, const Array& second, const ValueOptions& options,
                  const GridPlace& place) {
  ValueOptions complete = options;
  complete.rule.lowestIsMissing = lowestIsMissing(first) && lowestIsMissing(second);
  if (first.getElementType() == ElementType::String) {
    return figuresOfTexts(first, second, complete, place);
  }
  Side a(first);
  Side b(second);
  Figures figures;
  memory::visitStoredType(a.storedType(), [&](auto firstTag) {
    memory::visitStoredType(b.storedType(), [&](auto secondTag) {
      using T = typename decltype(firstTag)::Type;
      using U = typename decltype(secondTag)::Type;
      if constexpr (std::is_same_v<T, U>) {
        figures = figuresAs<T, T>(first, second, a, b, complete, place);
      } else if constexpr (IS_NUMBER<T> && IS_NUMBER<U>) {
        figures = figuresAs<memory::ElementOf<T>, memory::ElementOf<U>>(first, second, a, b,
                                                                        complete, place);
      }
    });
  });
  return figures;
}

}  // namespace quillon::compare
