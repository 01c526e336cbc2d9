/// @file
/// The error for an operation that this kind of object does not allow.
#pragma once

#include <object_model/Exception.h>
#include <object_model/Export.h>

#include <string>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as its base: never deleted through a pointer

namespace object_model {

/// A programming error of the caller: an accessor that the concrete class does not support, a cast
/// to a descriptor kind that the object is not, a value outside an enumeration.
///
/// The object that was called is unchanged. Most messages read "Invalid call at FILE (LINE)", where
/// FILE is the source file below the project's root and LINE a number that is fixed for each place.
///
/// Ownership and threads: as `Exception`. ABI: adds no slot and no field.
class OBJECT_MODEL_EXPORT InvalidCall : public Exception {
 public:
  /// Keeps a copy of `message`, the full text that what() will return.
  explicit InvalidCall(const std::string& message);
};

}  // namespace object_model

#pragma GCC diagnostic pop
