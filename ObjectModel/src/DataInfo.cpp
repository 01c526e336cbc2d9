#include <object_model/DataInfo.h>

namespace object_model {

DataInfo::~DataInfo() = default;

}  // namespace object_model
