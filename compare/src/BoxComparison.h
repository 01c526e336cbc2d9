#pragma once

#include <quillon/memory/ElementTypes.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "Tally.h"

namespace quillon::compare {

/// Values in memory at regular steps.
struct StridedValues {
  object_model::StoredType type;
  const char* first;
};

/// One dimension of a box of pairs: how many there are, and how far apart the next ones lie.
struct BoxDimension {
  unsigned long extent;
  long firstStride;        ///< in bytes, in the first side
  long secondStride;       ///< in bytes, in the second side
  unsigned long gridStep;  ///< in values, in the grid that offsets count in
};

/// A box of pairs of values.
struct Box {
  StridedValues first;
  StridedValues second;
  unsigned long offset;                  ///< of the first pair in the grid
  std::vector<BoxDimension> dimensions;  ///< dimension 0 first
};

/// The same box in as few dimensions as have steps of their own: those that continue the one before
/// on both sides and in the grid are one with it. There is always one.
std::vector<BoxDimension> joined(const std::vector<BoxDimension>& dimensions);

/// Compares the pairs of a box, whose sides are given as the types `T` and `U` by the tally. Where
/// a side does not have its values in that type one after the other along dimension 0, they are
/// copied in tiles that fit the nearest cache.
template <class T, class U>
class BoxComparison {
 public:
  BoxComparison(const Box& box, Tally<T, U>& tally)
      : m_first(box.first),
        m_second(box.second),
        m_dimensions(joined(box.dimensions)),
        m_tally(tally),
        m_offset(box.offset) {
    const unsigned long extent = m_dimensions[0].extent;
    if (isDirect<T>(m_first, m_dimensions[0].firstStride) &&
        isDirect<U>(m_second, m_dimensions[0].secondStride)) {
      m_length = extent;
      return;
    }
    m_across = dimensionAcross();
    m_length = std::min(extent, m_across == 0 ? TILE * TILE : TILE);
    m_width = m_across == 0 ? 1 : std::min(m_dimensions[m_across].extent, TILE);
  }

  void run() {
    std::vector<unsigned long> position(m_dimensions.size(), 0);
    do {
      compareTile(position);
    } while (advance(position));
  }

 private:
  static constexpr unsigned long TILE = 64;

  template <class V>
  static bool isDirect(const StridedValues& values, long stride) {
    return values.type == memory::StoredTraits<V>::TYPE && stride == static_cast<long>(sizeof(V));
  }

  /// The dimension other than 0 along which a side that runs the other way has its values close
  /// together; 0 where none does.
  std::size_t dimensionAcross() const {
    for (const auto stride : {&BoxDimension::secondStride, &BoxDimension::firstStride}) {
      const auto nearest = std::min_element(
          m_dimensions.begin(), m_dimensions.end(),
          [&](const auto& a, const auto& b) { return std::abs(a.*stride) < std::abs(b.*stride); });
      if (nearest != m_dimensions.begin()) {
        return static_cast<std::size_t>(nearest - m_dimensions.begin());
      }
    }
    return 0;
  }

  unsigned long stepAlong(std::size_t k) const {
    return k == 0 ? m_length : k == m_across ? m_width : 1;
  }

  /// Moves on by a tile; false behind the last one.
  bool advance(std::vector<unsigned long>& position) const {
    for (std::size_t k = 0; k < position.size(); ++k) {
      position[k] += stepAlong(k);
      if (position[k] < m_dimensions[k].extent) {
        return true;
      }
      position[k] = 0;
    }
    return false;
  }

  void compareTile(const std::vector<unsigned long>& position) {
    const char* first = m_first.first;
    const char* second = m_second.first;
    unsigned long offset = m_offset;
    for (std::size_t k = 0; k < position.size(); ++k) {
      first += static_cast<long>(position[k]) * m_dimensions[k].firstStride;
      second += static_cast<long>(position[k]) * m_dimensions[k].secondStride;
      offset += position[k] * m_dimensions[k].gridStep;
    }
    const BoxDimension& along = m_dimensions[0];
    const BoxDimension& across = m_dimensions[m_across];
    const unsigned long length = std::min(m_length, along.extent - position[0]);
    const unsigned long width = std::min(m_width, across.extent - position[m_across]);
    const Rows<T> a = rowsOf(m_first.type, first, along.firstStride, across.firstStride, length,
                             width, m_firstCopies);
    const Rows<U> b = rowsOf(m_second.type, second, along.secondStride, across.secondStride, length,
                             width, m_secondCopies);
    for (unsigned long k = 0; k < width; ++k) {
      m_tally.addRun(offset + k * across.gridStep, along.gridStep, a.at(k), b.at(k), length);
    }
  }

  /// The rows of a tile, each with its values one after the other.
  template <class V>
  struct Rows {
    const char* first;
    long stride;  ///< from row to row, in bytes

    const V* at(unsigned long row) const {
      return reinterpret_cast<const V*>(first + static_cast<long>(row) * stride);
    }
  };

  /// The rows in place, or copied to `copies`.
  template <class V>
  static Rows<V> rowsOf(object_model::StoredType type, const char* values, long along, long across,
                        unsigned long length, unsigned long width, std::unique_ptr<V[]>& copies) {
    if (isDirect<V>({type, values}, along)) {
      return {values, across};
    }
    if (copies == nullptr) {
      copies.reset(new V[TILE * TILE]);
    }
    memory::visitStoredType(type, [&](auto tag) {
      using Stored = typename decltype(tag)::Type;
      if constexpr (std::is_same_v<memory::ElementOf<Stored>, memory::ElementOf<V>>) {
        copyTile<Stored>(values, along, across, length, width, copies.get());
      }
    });
    return {reinterpret_cast<const char*>(copies.get()), static_cast<long>(length * sizeof(V))};
  }

  /// Copies in the order in which the values lie closer together.
  template <class Stored, class V>
  static void copyTile(const char* values, long along, long across, unsigned long length,
                       unsigned long width, V* to) {
    const auto copy = [&](unsigned long i, unsigned long j) {
      const char* from = values + static_cast<long>(i) * along + static_cast<long>(j) * across;
      // NOLINTNEXTLINE(bugprone-signed-char-misuse): numbers, whose sign is to be kept
      to[j * length + i] = static_cast<V>(*reinterpret_cast<const Stored*>(from));
    };
    if (width > 1 && std::abs(across) < std::abs(along)) {
      for (unsigned long i = 0; i < length; ++i) {
        for (unsigned long j = 0; j < width; ++j) {
          copy(i, j);
        }
      }
    } else {
      for (unsigned long j = 0; j < width; ++j) {
        for (unsigned long i = 0; i < length; ++i) {
          copy(i, j);
        }
      }
    }
  }

  StridedValues m_first;
  StridedValues m_second;
  std::vector<BoxDimension> m_dimensions;
  Tally<T, U>& m_tally;
  unsigned long m_offset;
  std::size_t m_across = 0;    // the dimension along which tiles have their width; 0 for none
  unsigned long m_length = 1;  // of a tile along dimension 0
  unsigned long m_width = 1;   // of a tile along m_across; 1 for none
  std::unique_ptr<T[]> m_firstCopies;
  std::unique_ptr<U[]> m_secondCopies;
};

}  // namespace quillon::compare
