#pragma once

#include <object_model/ElementType.h>

#include <optional>
#include <string>

namespace object_model {
class Array;
class Tuple;
}  // namespace object_model

namespace object_model::helper {

/// Two arrays that agree in everything but, perhaps, their values.
struct ArrayPair {
  const Array& first;
  const Array& second;
  const std::string& name;  ///< borrowed from who called pairUp()
  ElementType elementType;
  const Tuple& shape;  ///< borrowed from `first`
};

/// Checks names, element types and shapes, each asked once. Nothing if they differ, which is then
/// reported. `name` becomes the arrays' name and is to stay as long as the pair.
std::optional<ArrayPair> pairUp(const Array& first, const Array& second, std::string& name,
                                std::string* message);

}  // namespace object_model::helper
