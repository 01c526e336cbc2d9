/// @file
/// The descriptor of one axis of an array.
#pragma once

#include <object_model/Export.h>

#include <string>

namespace object_model {

/// What the points along an axis stand for. Other values are allowed; such an axis has no name
/// unless its class gives it one.
enum class AxisType : int {
  Slice = 0,    ///< planes of an image stack; named "slice"
  Time = 1,     ///< time steps; named "time"
  Channel = 2,  ///< channels, such as colours or stains; named "channel"
  Label = 3,    ///< labelled objects, such as cells; named "label"
};

/// Describes one axis (dimension) of an array.
///
/// Ownership: belongs to the array's descriptor.
/// Threads: the library takes no locks; what may run concurrently is the concrete class's choice.
/// ABI: an interface without fields; each virtual is a slot in the order declared here.
class OBJECT_MODEL_EXPORT AxisInfo {
 public:
  virtual ~AxisInfo();  // slots 0 and 1

  /// What the points along the axis stand for.
  virtual AxisType getAxisType() const = 0;  // slot 2

  /// The axis's name: "slice", "time", "channel" or "label" after its kind, and empty for any other
  /// kind, unless a concrete class names its axes otherwise.
  virtual std::string getAxisName() const;  // slot 3
};

}  // namespace object_model
