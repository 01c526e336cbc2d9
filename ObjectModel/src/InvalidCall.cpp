#include <object_model/InvalidCall.h>

namespace object_model {

InvalidCall::InvalidCall(const std::string& message) : Exception(message) {}

}  // namespace object_model
