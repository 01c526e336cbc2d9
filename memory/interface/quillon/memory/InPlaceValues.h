/// @file
/// Bulk values that lie in memory.
#pragma once

#include <object_model/BulkValues.h>
#include <quillon/memory/ElementTypes.h>

#include <vector>

namespace quillon::memory {

/// What an array whose values lie in memory at regular steps derives from beside `ArrayBase`, so
/// that comparisons, tables and copies read it without a call for each value.
///
/// `T` is one of the stored types, see `StoredTraits`.
/// Ownership: owns the steps, not the values. Threads: const operations may run concurrently.
template <class T>
class InPlaceValues : public object_model::BulkValues {
 public:
  /// The stored type that is `T`.
  object_model::StoredType storedType() const final { return StoredTraits<T>::TYPE; }
  /// Where setPlace() said that the values lie.
  object_model::ValuesInPlace valuesInPlace() const final { return {m_first, m_strides.data()}; }
  /// Copies a block of values, see `object_model::BulkValues`.
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const final;

 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  InPlaceValues() = default;
  InPlaceValues(const InPlaceValues&) = default;
  InPlaceValues(InPlaceValues&&) noexcept = default;
  InPlaceValues& operator=(const InPlaceValues&) = default;
  InPlaceValues& operator=(InPlaceValues&&) noexcept = default;
  ~InPlaceValues() = default;
  /// @endcond

  /// Where the values lie: that at position 0, and how many bytes one index further the next one
  /// lies, for each dimension, dimension 0 first.
  void setPlace(const T* first, std::vector<long> strides) {
    m_first = first;
    m_strides = std::move(strides);
  }

 private:
  const T* m_first = nullptr;
  std::vector<long> m_strides;
};

/// The steps between values of `bytes` each that stand one after the other, dimension 0 varying
/// fastest.
[[nodiscard]] std::vector<long> packedStrides(const object_model::Tuple& shape,
                                              unsigned long bytes);

}  // namespace quillon::memory
