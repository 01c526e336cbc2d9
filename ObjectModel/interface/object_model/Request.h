/// @file
/// The interface of a request.
#pragma once

#include <object_model/Export.h>

namespace object_model {

/// A request of the toolkit. What it means belongs to the toolkit: the operations hold their places
/// in the virtual table and this library never calls them.
///
/// ABI: an interface without fields; each virtual is a slot in the order declared here.
class OBJECT_MODEL_EXPORT Request {
 public:
  virtual ~Request();  // slots 0 and 1

  virtual void reservedRequest0() const = 0;  ///< never called here; slot 2
  virtual void reservedRequest1() const = 0;  ///< never called here; slot 3
  virtual void reservedRequest2() const = 0;  ///< never called here; slot 4
  virtual void reservedRequest3() const = 0;  ///< never called here; slot 5
};

}  // namespace object_model
