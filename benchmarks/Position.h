#pragma once

#include <object_model/Tuple.h>

#include <array>
#include <cstddef>
#include <vector>

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

/// A dimension that is walked.
struct Walked {
  std::size_t dimension;
  unsigned long extent;
};

/// Steps `position` in place through all points of one to four dimensions, the first varying
/// fastest, and calls `visit` at each. There are four plain loops; those not needed run once.
template <class Visit>
void walk(const std::vector<Walked>& dimensions, Position& position, Visit visit) {
  const auto extent = [&](std::size_t k) {
    return k < dimensions.size() ? dimensions[k].extent : 1;
  };
  const auto step = [&](std::size_t k, unsigned long coordinate) {
    if (k < dimensions.size()) {
      position.set(dimensions[k].dimension, coordinate);
    }
  };
  const Walked fastest = dimensions.front();
  for (unsigned long k3 = 0; k3 < extent(3); ++k3) {
    step(3, k3);
    for (unsigned long k2 = 0; k2 < extent(2); ++k2) {
      step(2, k2);
      for (unsigned long k1 = 0; k1 < extent(1); ++k1) {
        step(1, k1);
        for (unsigned long k0 = 0; k0 < fastest.extent; ++k0) {
          position.set(fastest.dimension, k0);
          visit();
        }
      }
    }
  }
}

}  // namespace benchmarks
