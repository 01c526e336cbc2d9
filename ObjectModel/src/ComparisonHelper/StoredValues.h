#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>

#include <cstddef>
#include <type_traits>

namespace object_model::helper {

/// Whether elements that are read as `Value` can be had in bulk: numbers and booleans can.
template <class Value>
inline constexpr bool IN_BULK = !std::is_same_v<Value, std::string>;

/// Stored values that lie at equal distances, in bytes.
struct Run {
  const char* first = nullptr;
  long stride = 0;
};

/// How values of one stored type are read as `Value`.
template <class Value>
struct Storage {
  unsigned long bytes = 0;  ///< of each stored value; 0 where the type is none of `Value`'s

  /// The first `count` values of the run, one after the other: where they lie if they do so
  /// already, else converted into `buffer`.
  const Value* (*load)(const Run& run, std::size_t count, Value* buffer) = nullptr;
};

/// What is stored as `type` and belongs to elements that are read as `Value`.
template <class Value>
Storage<Value> storageOf(StoredType type);

/// The array as `BulkValues`; null where it is none.
const BulkValues* asBulkValues(const Array& array);

/// An array whose values are had in bulk.
template <class Value>
struct BulkSource {
  const BulkValues* values = nullptr;
  Storage<Value> storage = {};
};

/// `array` in bulk. Without `values` if it does not offer them in a type that belongs to its
/// elements; it then sees no call, or only one of storedType().
template <class Value>
BulkSource<Value> bulkSourceOf(const Array& array) {
  const BulkValues* const values = asBulkValues(array);
  if (values == nullptr) {
    return {};
  }
  const Storage<Value> storage = storageOf<Value>(values->storedType());
  return {storage.bytes == 0 ? nullptr : values, storage};
}

}  // namespace object_model::helper
