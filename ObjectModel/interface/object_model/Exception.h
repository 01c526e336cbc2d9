/// @file
/// The root of the library's own exceptions.
#pragma once

#include <object_model/Export.h>

#include <string>

// The class is polymorphic without a virtual destructor on purpose: `what` is its only slot, and
// exceptions are thrown by value and caught by reference, never deleted through a base pointer.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace object_model {

/// An error that the object model reports.
///
/// It does not derive from `std::exception`: a handler for standard exceptions does not catch it.
/// Catch `object_model::Exception` (or `InvalidCall`) by reference.
///
/// Ownership: owns its message. Threads: a const object may be read concurrently.
/// ABI: slot 0 is `what`; the only field is the message.
class OBJECT_MODEL_EXPORT Exception {
 public:
  /// Keeps a copy of `message`, the full text that what() will return.
  explicit Exception(const std::string& message);

  /// The full message, as an independent copy.
  virtual std::string what() const;  // slot 0

 private:
  std::string m_message;
};

}  // namespace object_model

#pragma GCC diagnostic pop
