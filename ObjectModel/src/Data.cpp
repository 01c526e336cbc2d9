#include <object_model/Data.h>
#include <object_model/DataInfo.h>

namespace object_model {

Data::~Data() = default;

int Data::version() const { return 0; }

std::string Data::getName() const { return getInformation()->getName(); }

std::string Data::getDescription() const { return getInformation()->getDescription(); }

}  // namespace object_model
