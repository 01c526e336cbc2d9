#include <object_model/DynamicDictionary.h>

namespace object_model {

DynamicDictionary::~DynamicDictionary() = default;

}  // namespace object_model
