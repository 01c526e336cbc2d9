#pragma once

#include <object_model/BulkValues.h>
#include <quillon/memory/ElementTypes.h>

#include <functional>
#include <numeric>
#include <utility>
#include <vector>

#include "ObjectModel/ComparisonHelper/Samples.h"

namespace quillon::test {

using Numbers = std::vector<unsigned long>;

inline std::size_t elementsOf(const Numbers& shape) {
  return std::accumulate(shape.begin(), shape.end(), std::size_t(1), std::multiplies<>());
}

/// Calls `visit(position)` for each position of a block, in storage order.
template <class Visit>
void forEachPosition(const Numbers& start, const Numbers& extent, const Visit& visit) {
  object_model::TupleX position(start.data(), start.size());
  for (std::size_t count = elementsOf(extent); count > 0; --count) {
    visit(position);
    for (std::size_t k = 0; k < extent.size() && ++position[k] == start[k] + extent[k]; ++k) {
      position[k] = start[k];
    }
  }
}

/// How values lie in a buffer, in elements: that at position 0, and one index further.
struct Places {
  long first = 0;
  std::vector<long> strides;
  std::size_t size = 0;  ///< of the buffer

  std::size_t of(const object_model::Tuple& position) const {
    long place = first;
    for (std::size_t k = 0; k < strides.size(); ++k) {
      place += static_cast<long>(position[k]) * strides[k];
    }
    return static_cast<std::size_t>(place);
  }
};

/// One value after the other, dimension 0 varying fastest.
inline Places packed(const Numbers& shape) {
  Places places = {0, {}, 1};
  for (const unsigned long extent : shape) {
    places.strides.push_back(static_cast<long>(places.size));
    places.size *= extent;
  }
  return places;
}

/// An array whose values lie anywhere in a buffer and are read by the accessor. It counts its
/// calls.
template <class Stored>
class PlacedArray : public memory::ArrayBase {
 public:
  using Element = memory::ElementOf<Stored>;

  PlacedArray(const Numbers& shape, Places places, const std::vector<Stored>& values)
      : ArrayBase("A", memory::ElementTraits<Element>::TYPE, axes(shape)),
        m_places(std::move(places)),
        m_buffer(std::make_unique<Stored[]>(m_places.size)) {
    if (!values.empty()) {
      auto value = values.begin();
      forEachPosition(Numbers(shape.size()), shape, [&](const object_model::Tuple& position) {
        m_buffer[m_places.of(position)] = *value;
        ++value;
      });
    }
    for (const long stride : m_places.strides) {
      m_byteStrides.push_back(stride * static_cast<long>(sizeof(Stored)));
    }
  }

  mutable unsigned long accessorCalls = 0;

  double getValueAsDouble(const object_model::Tuple& at) const override { return as<double>(at); }
  unsigned long getValueAsUInt(const object_model::Tuple& at) const override {
    return as<unsigned long>(at);
  }
  long getValueAsInt(const object_model::Tuple& at) const override { return as<long>(at); }
  bool getValueAsBoolean(const object_model::Tuple& at) const override { return as<bool>(at); }
  std::complex<double> getValueAsComplex(const object_model::Tuple& at) const override {
    return as<std::complex<double>>(at);
  }

 protected:
  const Stored& at(const object_model::Tuple& position) const {
    return m_buffer[m_places.of(position)];
  }
  object_model::ValuesInPlace places() const {
    return {&m_buffer[static_cast<std::size_t>(m_places.first)], m_byteStrides.data()};
  }

 private:
  template <class T>
  T as(const object_model::Tuple& position) const {
    if constexpr (std::is_same_v<T, Element>) {
      ++accessorCalls;
      return static_cast<T>(at(position));
    } else {
      throw std::logic_error("an accessor that is not the array's");
    }
  }

  Places m_places;
  std::unique_ptr<Stored[]> m_buffer;
  std::vector<long> m_byteStrides;
};

/// The same with bulk values: in place, or to be read.
template <class Stored>
class BulkArray : public PlacedArray<Stored>, public object_model::BulkValues {
 public:
  using PlacedArray<Stored>::PlacedArray;

  bool inPlace = true;
  object_model::StoredType type = memory::StoredTraits<Stored>::TYPE;
  Numbers chunks;
  /// The first position and the extents of each block that was read.
  using Blocks = std::vector<std::pair<Numbers, Numbers>>;
  mutable Blocks blocks;
  /// Called before a block is read.
  std::function<void()> beforeReading = [] {};

  object_model::StoredType storedType() const override { return type; }
  object_model::ValuesInPlace valuesInPlace() const override {
    return inPlace ? this->places() : object_model::ValuesInPlace();
  }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    const unsigned long dimensions = this->size().size();
    blocks.emplace_back(Numbers(start, start + dimensions), Numbers(extent, extent + dimensions));
    beforeReading();
    auto* value = static_cast<Stored*>(destination);
    forEachPosition(blocks.back().first, blocks.back().second,
                    [&](const object_model::Tuple& position) {
                      *value = this->at(position);
                      ++value;
                    });
  }
  const unsigned long* chunkExtents() const override {
    return chunks.empty() ? nullptr : chunks.data();
  }
};

/// An array of one dimension with bulk values in place.
template <class Stored>
BulkArray<Stored> bulkList(const std::vector<Stored>& values) {
  const Numbers shape = {values.size()};
  return {shape, packed(shape), values};
}

}  // namespace quillon::test
