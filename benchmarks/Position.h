#pragma once

#include <object_model/Tuple.h>

#include <array>
#include <cstddef>

namespace benchmarks {

/// A position on the stack, all 0 at first.
class Position final : public object_model::Tuple {
 public:
  static constexpr std::size_t MOST_DIMENSIONS = 4;

  explicit Position(unsigned long dimensions) {
    m_data = m_coordinates.data();
    m_size = dimensions;
  }

  void set(std::size_t dimension, unsigned long coordinate) {
    m_coordinates[dimension] = coordinate;
  }

 private:
  std::array<unsigned long, MOST_DIMENSIONS> m_coordinates = {};
};

}  // namespace benchmarks
