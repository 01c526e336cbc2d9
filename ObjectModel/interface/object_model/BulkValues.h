/// @file
/// Values in bulk: what an array may offer beside one accessor call for each value.
#pragma once

#include <object_model/ElementType.h>

namespace object_model {

/// How the values of an array are stored. The accessors widen each to its element type.
enum class StoredType : int {
  Int8 = 0,         ///< `signed char`, of `ElementType::Int`
  Int16 = 1,        ///< `short`, of `ElementType::Int`
  Int32 = 2,        ///< `int`, of `ElementType::Int`
  Int64 = 3,        ///< `long`, of `ElementType::Int`
  UInt8 = 4,        ///< `unsigned char`, of `ElementType::UInt`
  UInt16 = 5,       ///< `unsigned short`, of `ElementType::UInt`
  UInt32 = 6,       ///< `unsigned int`, of `ElementType::UInt`
  UInt64 = 7,       ///< `unsigned long`, of `ElementType::UInt`
  Float32 = 8,      ///< `float`, of `ElementType::Double`
  Float64 = 9,      ///< `double`, of `ElementType::Double`
  Complex64 = 10,   ///< `std::complex<float>`, of `ElementType::Complex`
  Complex128 = 11,  ///< `std::complex<double>`, of `ElementType::Complex`
  Boolean = 12,     ///< `bool`, of `ElementType::Boolean`
};

/// Where the values of an array lie in memory.
struct ValuesInPlace {
  /// The value whose indices are all 0; null when the values do not lie in memory. It is aligned
  /// for its type.
  const void* first = nullptr;
  /// For each dimension, dimension 0 first, how many bytes one index further the next value lies.
  /// Zero and negative steps are allowed. Borrowed from the array; null without dimensions.
  const long* strides = nullptr;
};

/// What an array of numbers or booleans may be besides an `Array`: its values in bulk, in the type
/// in which they are stored. To be found by `dynamic_cast<const BulkValues*>(&array)`; an array
/// that is none is read value by value. Derive from it beside `Array` to opt in.
///
/// What it gives is what the array says: as many values as `Array::size()` tells, of the element
/// type that stands at `storedType()`, each equal to what the accessor gives for its position.
/// Functions that compare or copy arrays read such an array without calling its accessors.
///
/// Storage order is the order of positions in which dimension 0 varies fastest.
///
/// Ownership: as the array's. Threads: const operations may run concurrently where the array's may.
/// ABI: the four virtual operations are slots in this order; append after the last. The class is
/// header-only, nothing of it is exported: type information is compared by name, so that arrays and
/// readers in different libraries find each other.
class BulkValues {
 public:
  /// The type of each value.
  virtual StoredType storedType() const = 0;  // slot 0

  /// Where all values lie, if they lie in memory at regular steps; a null pointer otherwise. What
  /// it returns holds until the array changes or is destroyed.
  virtual ValuesInPlace valuesInPlace() const { return {}; }  // slot 1

  /// Copies a block of values, in storage order, to `destination`, without gaps.
  /// @param start, extent the block's first position and how many indices it spans, one for each
  ///   dimension, dimension 0 first; null without dimensions. The block must lie in the array.
  /// @param destination room for all values of the block in the stored type, aligned for it.
  /// @throws whatever the array's accessors throw where values cannot be had; `destination` then
  ///   holds anything.
  virtual void readValues(const unsigned long* start, const unsigned long* extent,
                          void* destination) const = 0;  // slot 2

  /// The extents of the blocks in which the values are kept, one for each dimension: whoever reads
  /// blocks that begin and end where these do has none of them fetched or unpacked twice. Null
  /// where it makes no difference. Borrowed from the array.
  virtual const unsigned long* chunkExtents() const { return nullptr; }  // slot 3

 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  BulkValues() = default;
  BulkValues(const BulkValues&) = default;
  BulkValues(BulkValues&&) = default;
  BulkValues& operator=(const BulkValues&) = default;
  BulkValues& operator=(BulkValues&&) = default;
  ~BulkValues() = default;  // arrays are destroyed as arrays
  /// @endcond
};

}  // namespace object_model
