/// @file
/// What one element of an array holds.
#pragma once

namespace object_model {

/// What one element of an `Array` holds, and so which of the array's accessors reads it.
///
/// The values are part of the binary interface and appear in comparison reports.
enum class ElementType : int {
  UInt = 0,        ///< unsigned 64-bit integer, read with `getValueAsUInt`
  Int = 1,         ///< signed 64-bit integer, read with `getValueAsInt`
  Double = 2,      ///< 64-bit IEEE floating point, read with `getValueAsDouble`
  Complex = 3,     ///< two 64-bit floating-point parts, read with `getValueAsComplex`
  String = 4,      ///< a standard string, read with `getValueAsString`
  Boolean = 5,     ///< a truth value, read with `getValueAsBoolean`
  Dictionary = 6,  ///< a nested dictionary, read with `getValueAsDictionary`
};

}  // namespace object_model
