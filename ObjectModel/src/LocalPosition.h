#pragma once

#include <object_model/Tuple.h>

#include <array>
#include <memory>

namespace object_model {

/// A position for calls of accessors, all 0 at first, that costs no allocation: it stands inside
/// the object, on the stack, unless it has very many dimensions.
class LocalPosition final : public Tuple {
 public:
  explicit LocalPosition(unsigned long dimensions) { reset(dimensions); }
  LocalPosition(const LocalPosition&) = delete;
  LocalPosition& operator=(const LocalPosition&) = delete;
  ~LocalPosition() override = default;

  /// Takes `dimensions` coordinates, all 0.
  void reset(unsigned long dimensions) {
    m_data = m_inside.data();
    if (dimensions > m_inside.size()) {
      m_outside = std::make_unique<unsigned long[]>(dimensions);
      m_data = m_outside.get();
    }
    m_inside.fill(0);
    m_size = dimensions;
  }

 private:
  std::array<unsigned long, 4> m_inside;
  std::unique_ptr<unsigned long[]> m_outside;
};

}  // namespace object_model
