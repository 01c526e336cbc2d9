/// @file
/// The error for a call that an object in memory does not allow.
#pragma once

#include <object_model/InvalidCall.h>

#include <stdexcept>
#include <string>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as its base: never deleted through a pointer

namespace quillon::memory {

/// A programming error of the caller, such as a value that is asked for as another type than the
/// array holds. The object that was called is unchanged.
///
/// It is caught as `object_model::InvalidCall`, as the contract has it, and as `std::exception`, so
/// that its sentence reaches handlers that know the standard exceptions alone. Both kinds of
/// `what()` give the same sentence; that of the class itself is the standard one.
///
/// Ownership and threads: as its bases.
class InvalidCall : public object_model::InvalidCall, public std::logic_error {
 public:
  /// Keeps copies of `message`, the full text that what() will return.
  explicit InvalidCall(const std::string& message)
      : object_model::InvalidCall(message), std::logic_error(message) {}

  // The two differ in what they return, so neither overrides the other.
  using std::logic_error::what;
};

}  // namespace quillon::memory

#pragma GCC diagnostic pop
