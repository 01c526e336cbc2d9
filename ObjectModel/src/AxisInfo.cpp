#include <object_model/AxisInfo.h>

namespace object_model {

AxisInfo::~AxisInfo() = default;

std::string AxisInfo::getAxisName() const {
  switch (getAxisType()) {
    case AxisType::Slice:
      return "slice";
    case AxisType::Time:
      return "time";
    case AxisType::Channel:
      return "channel";
    case AxisType::Label:
      return "label";
  }
  return "";
}

}  // namespace object_model
