#include <object_model/TupleX.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/Values.h>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

#include "StridedCopy.h"

namespace quillon::memory {
namespace {

using object_model::Array;
using object_model::BulkValues;
using object_model::TupleX;
using object_model::ValuesInPlace;

const unsigned long* chunksOf(const Array& array) {
  const BulkValues* bulk = bulkValuesOf(array);
  return bulk == nullptr ? nullptr : bulk->chunkExtents();
}

/// Whether a chunk has at most so many values.
bool isChunkWithin(unsigned long most, const std::vector<unsigned long>& shape,
                   const unsigned long* chunks) {
  double values = 1;  // not a whole number, which it could exceed
  for (std::size_t k = 0; chunks != nullptr && k < shape.size(); ++k) {
    values *= static_cast<double>(std::min(chunks[k], shape[k]));
  }
  return chunks != nullptr && values <= static_cast<double>(most);
}

template <class Stored, class T>
void copyBulk(const BulkValues& bulk, const unsigned long* start, const unsigned long* extent,
              unsigned long dimensions, T* destination) {
  const ValuesInPlace values = bulk.valuesInPlace();
  if (values.first != nullptr) {
    copyInPlace<Stored>(values, start, extent, dimensions, destination);
  } else if constexpr (std::is_same_v<Stored, T>) {
    bulk.readValues(start, extent, destination);
  } else {
    const unsigned long count = countOf(extent, dimensions);
    const auto stored = std::make_unique<Stored[]>(count);
    bulk.readValues(start, extent, stored.get());
    std::transform(stored.get(), stored.get() + count, destination,
                   [](const Stored& value) { return static_cast<T>(value); });
  }
}

template <class T>
void copyByAccessor(const Array& array, const unsigned long* start, const unsigned long* extent,
                    unsigned long dimensions, T* destination) {
  const unsigned long length = dimensions == 0 ? 1 : extent[0];
  forEachRow(start, extent, dimensions, [&](TupleX& position) {
    for (unsigned long k = 0; k < length; ++k) {
      if (dimensions > 0) {
        position[0] = start[0] + k;
      }
      *destination = (array.*ElementTraits<T>::READ)(position);
      ++destination;
    }
  });
}

template <class T>
[[noreturn]] void rejectType(const Array& array) {
  using Traits = std::conditional_t<IS_STORED_TYPE<T>, StoredTraits<T>, ElementTraits<T>>;
  throw InvalidCall("Array '" + array.getName() + "' holds " + nameOf(array.getElementType()) +
                    ", not " + Traits::NAME);
}

}  // namespace

BlockLayout::BlockLayout(std::vector<unsigned long> shape, unsigned long maxValues,
                         const unsigned long* chunks)
    : m_shape(std::move(shape)), m_size(countOf(m_shape.data(), m_shape.size())) {
  if (m_shape.empty() || m_size == 0) {
    return;
  }
  while (m_split + 1 < m_shape.size() && m_shape[m_split] <= maxValues / m_slabValues) {
    m_slabValues *= m_shape[m_split];
    ++m_split;
  }
  m_slabs = std::clamp<unsigned long>(maxValues / m_slabValues, 1, m_shape[m_split]);
  const unsigned long chunk = chunks == nullptr ? 0 : chunks[m_split];
  if (chunk > 0 && m_slabs > chunk && m_slabs < m_shape[m_split]) {
    m_slabs -= m_slabs % chunk;
  }
}

BlockLayout::BlockLayout(const Array& array, unsigned long maxValues)
    : BlockLayout(shapeOf(array), maxValues, chunksOf(array)) {}

Block BlockLayout::blockAt(unsigned long offset) const {
  Block block{0, 1, std::vector<unsigned long>(m_shape.size(), 0), m_shape};
  if (m_shape.empty()) {
    return block;
  }
  const unsigned long slab = offset / m_slabValues;
  const unsigned long row = slab % m_shape[m_split];
  const unsigned long firstRow = row - row % m_slabs;
  const unsigned long rows = std::min(m_slabs, m_shape[m_split] - firstRow);
  block.first = (slab - row + firstRow) * m_slabValues;
  block.count = rows * m_slabValues;
  block.start[m_split] = firstRow;
  block.extent[m_split] = rows;
  unsigned long outer = slab / m_shape[m_split];
  for (std::size_t k = m_split + 1; k < m_shape.size(); ++k) {
    block.start[k] = outer % m_shape[k];
    block.extent[k] = 1;
    outer /= m_shape[k];
  }
  return block;
}

BoxLayout::BoxLayout(std::vector<unsigned long> shape, unsigned long maxValues,
                     const unsigned long* chunks)
    : m_shape(std::move(shape)), m_box(m_shape.size(), 1) {
  constexpr unsigned long CHUNK_LIMIT = 16;
  if (isChunkWithin(CHUNK_LIMIT * maxValues, m_shape, chunks)) {
    for (std::size_t k = 0; k < m_box.size(); ++k) {
      m_box[k] = std::max(1UL, std::min(chunks[k], m_shape[k]));
    }
  }
  unsigned long values = countOf(m_box.data(), m_box.size());
  for (std::size_t k = 0; k < m_box.size(); ++k) {
    const unsigned long others = values / m_box[k];
    m_box[k] = std::min(m_box[k] * std::max(1UL, maxValues / values), m_shape[k]);
    if (m_box[k] < m_shape[k] || m_shape[k] == 0) {
      return;
    }
    values = others * m_box[k];
  }
}

unsigned long BoxLayout::boxesAlong(std::size_t dimension) const {
  const unsigned long extent = m_shape[dimension];
  return extent == 0 ? 0 : (extent - 1) / m_box[dimension] + 1;
}

unsigned long BoxLayout::size() const {
  unsigned long boxes = 1;
  for (std::size_t k = 0; k < m_shape.size(); ++k) {
    boxes *= boxesAlong(k);
  }
  return boxes;
}

Block BoxLayout::boxAt(unsigned long number) const {
  Block box;
  unsigned long step = 1;
  for (std::size_t k = 0; k < m_shape.size(); ++k) {
    const unsigned long boxes = std::max(1UL, boxesAlong(k));
    const unsigned long start = number % boxes * m_box[k];
    box.start.push_back(start);
    box.extent.push_back(std::min(m_box[k], m_shape[k] - start));
    box.first += start * step;
    box.count *= box.extent[k];
    step *= m_shape[k];
    number /= boxes;
  }
  return box;
}

template <class T>
void copyValues(const Array& array, const unsigned long* start, const unsigned long* extent,
                T* destination) {
  const unsigned long dimensions = array.size().size();
  if (const BulkValues* bulk = bulkValuesOf(array)) {
    bool copied = false;
    visitStoredType(bulk->storedType(), [&](auto tag) {
      using Stored = typename decltype(tag)::Type;
      if constexpr (std::is_same_v<Stored, T> || std::is_same_v<ElementOf<Stored>, T>) {
        copyBulk<Stored>(*bulk, start, extent, dimensions, destination);
        copied = true;
      }
    });
    if (copied) {
      return;
    }
  } else if constexpr (IS_ELEMENT_TYPE<T>) {
    if (array.getElementType() == ElementTraits<T>::TYPE) {
      copyByAccessor(array, start, extent, dimensions, destination);
      return;
    }
  }
  rejectType<T>(array);
}

#define QUILLON_COPY_VALUES(T)                                             \
  template void copyValues(const Array& array, const unsigned long* start, \
                           const unsigned long* extent,                    \
                           T* destination)  // NOLINT(bugprone-macro-parentheses): T is a type

QUILLON_COPY_VALUES(signed char);
QUILLON_COPY_VALUES(short);
QUILLON_COPY_VALUES(int);
QUILLON_COPY_VALUES(long);
QUILLON_COPY_VALUES(unsigned char);
QUILLON_COPY_VALUES(unsigned short);
QUILLON_COPY_VALUES(unsigned int);
QUILLON_COPY_VALUES(unsigned long);
QUILLON_COPY_VALUES(float);
QUILLON_COPY_VALUES(double);
QUILLON_COPY_VALUES(std::complex<float>);
QUILLON_COPY_VALUES(std::complex<double>);
QUILLON_COPY_VALUES(bool);
QUILLON_COPY_VALUES(std::string);

#undef QUILLON_COPY_VALUES

}  // namespace quillon::memory
