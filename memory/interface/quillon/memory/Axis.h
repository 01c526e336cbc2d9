/// @file
/// One axis of an array in memory.
#pragma once

#include <object_model/AxisInfo.h>

#include <string>

namespace quillon::memory {

/// The kind of an axis that is none of slices, time steps, channels and labels.
inline constexpr object_model::AxisType OTHER_AXIS = static_cast<object_model::AxisType>(4);

/// One axis of an array: what it is called, what its points stand for and how many there are.
///
/// Ownership: a value; arrays keep copies. Threads: const operations may run concurrently.
class Axis : public object_model::AxisInfo {
 public:
  /// An axis of one of the four kinds, called "slice", "time", "channel" or "label" after it.
  Axis(object_model::AxisType type, unsigned long size);

  /// An axis with a name of its own.
  Axis(std::string name, unsigned long size, object_model::AxisType type = OTHER_AXIS);

  object_model::AxisType getAxisType() const override;
  std::string getAxisName() const override;

  /// The number of points.
  unsigned long size() const;

 private:
  object_model::AxisType m_type;
  std::string m_name;
  unsigned long m_size;
};

}  // namespace quillon::memory
