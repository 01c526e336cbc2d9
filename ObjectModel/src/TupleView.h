#pragma once

#include <object_model/Tuple.h>

namespace object_model {

/// A tuple over values that stand elsewhere, such as on the stack, so that a position can be
/// stepped in place without an allocation.
class TupleView final : public Tuple {
 public:
  TupleView(unsigned long* values, unsigned long count) {
    m_data = values;
    m_size = count;
  }
};

}  // namespace object_model
