#pragma once

#include <object_model/Tuple.h>

#include <vector>

namespace test {

/// The values of a tuple, for whole comparisons.
inline std::vector<unsigned long> valuesOf(const object_model::Tuple& tuple) {
  std::vector<unsigned long> values;
  for (unsigned long k = 0; k < tuple.size(); ++k) {
    values.push_back(tuple[k]);
  }
  return values;
}

/// A view of values that somebody else owns, as a concrete array hands one out for its shape.
class View : public object_model::Tuple {
 public:
  View(unsigned long* values, unsigned long count) {
    m_data = values;
    m_size = count;
  }
};

/// The address of a tuple's first value; null when it has none.
class Address : public object_model::Tuple {
 public:
  static const unsigned long* of(const object_model::Tuple& tuple) {
    // A protected field may be named only through the derived class.
    return tuple.*(&Address::m_data);
  }
};

}  // namespace test
