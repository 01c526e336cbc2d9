#pragma once

#include <object_model/ComparisonHelper.h>
#include <quillon/memory/TypedArray.h>

#include <complex>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "ObjectModel/ComparisonHelper/Outcome.h"

namespace quillon::test {

using object_model::ElementType;
using object_model::helper::ComparisonType;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

inline std::vector<memory::Axis> axes(const std::vector<unsigned long>& shape) {
  std::vector<memory::Axis> result;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    result.emplace_back("axis" + std::to_string(k), shape[k]);
  }
  return result;
}

template <class T>
memory::TypedArray<T> array(const std::string& name, const std::vector<unsigned long>& shape,
                            std::vector<T> values) {
  return memory::TypedArray<T>(name, axes(shape), std::move(values));
}

/// An array of one dimension.
template <class T>
memory::TypedArray<T> list(const std::string& name, std::vector<T> values) {
  const unsigned long size = values.size();
  return array<T>(name, {size}, std::move(values));
}

/// An array of any element type, or of none that exists, whose accessors all fail.
class UnreadableArray : public memory::ArrayBase {
 public:
  UnreadableArray(const std::string& name, int elementType, const std::vector<unsigned long>& shape)
      : ArrayBase(name, static_cast<ElementType>(elementType), axes(shape)) {}
};

template <class... Entries>
memory::Dictionary dictionary(const std::string& name, Entries&&... entries) {
  memory::Dictionary result(name);
  (result.add(std::forward<Entries>(entries)), ...);
  return result;
}

/// A vector of things that can only be moved.
template <class T, class... Rest>
std::vector<T> several(T&& first, Rest&&... rest) {
  std::vector<T> result;
  result.push_back(std::move(first));
  (result.push_back(std::move(rest)), ...);
  return result;
}

inline Outcome compareArrays(const object_model::Array& first, const object_model::Array& second,
                             ComparisonType type = ComparisonType::Exact, double tolerance = 0) {
  return outcomeOf([&](std::string* message) {
    return object_model::helper::areSameArrays(first, second, type, tolerance, message);
  });
}

inline Outcome compareDictionaries(const object_model::Dictionary& first,
                                   const object_model::Dictionary& second,
                                   ComparisonType type = ComparisonType::Exact,
                                   double tolerance = 0) {
  return outcomeOf([&](std::string* message) {
    return object_model::helper::areSameDictionaries(first, second, type, tolerance, message);
  });
}

inline Outcome compareOutlines(const object_model::Dictionary& first,
                               const object_model::Dictionary& second) {
  return outcomeOf([&](std::string* message) {
    return object_model::helper::areSimilarDictionaries(first, second, message);
  });
}

}  // namespace quillon::test
