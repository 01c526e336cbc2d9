#pragma once

#include <object_model/TupleX.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "LocalPosition.h"

namespace object_model::helper {

/// Steps through the positions at which two arrays of one shape are compared, the first index
/// varying fastest.
///
/// Deliberate: there are four loops whatever the number of dimensions, and the fourth moves index 3
/// of four-dimensional positions only. With more dimensions index 3 and the following stay 0, and
/// the positions with index 3 at 0 come up as many times as dimension 3 is long.
class Positions {
 public:
  static constexpr std::size_t LOOPS = 4;

  /// The state of the four loops: what tells one position from another.
  using Indices = std::array<unsigned long, LOOPS>;

  /// Starts at the first position. `shape` is not kept.
  explicit Positions(const Tuple& shape);
  Positions(const Positions&) = delete;
  Positions& operator=(const Positions&) = delete;
  ~Positions() = default;

  /// Whether there is no position at all. Without dimensions there is one, the empty position.
  bool none() const;

  /// Whether no fewer than `least` positions come up. Not to be used when none().
  bool areAtLeast(std::uint32_t least) const;

  /// The current position, stepped in place by next(). Not to be used when none().
  const Tuple& current() const { return m_position; }

  /// The current position in short, for at().
  Indices indices() const { return {*m_index[0], *m_index[1], *m_index[2], *m_index[3]}; }

  /// The position that had these indices.
  TupleX at(const Indices& indices) const;

  /// Steps to the next position; false, and back at the first, after the last.
  bool next() { return ++*m_index[0] < m_bound[0] || nextRow(); }

  /// Calls `visit` at each position, from the first, where it must stand, to the last. Does what
  /// next() does in a loop, but counts apart from the position, which other code could change for
  /// all that the compiler knows. Not to be used when none().
  template <class Visit>
  void walk(Visit&& visit) {
    unsigned long& index = *m_index[0];
    const unsigned long bound = m_bound[0];
    do {
      for (unsigned long k = 0; k < bound; ++k) {
        index = k;
        visit();
      }
    } while (nextRow());
  }

 private:
  /// Sets the first loop back and steps the others; false after the last position.
  bool nextRow();

  LocalPosition m_position;
  Indices m_bound = {1, 1, 1, 1};
  Indices m_unseen = {};  // indices of the loops that the position does not show
  std::array<unsigned long*, LOOPS> m_index = {};  // each into m_position or m_unseen
};

}  // namespace object_model::helper
