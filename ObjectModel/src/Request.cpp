#include <object_model/Request.h>

namespace object_model {

Request::~Request() = default;

}  // namespace object_model
