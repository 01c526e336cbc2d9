#include "Groups.h"

namespace quillon::tools {

std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped) {
  const std::string start = memory::pathOf(group, {});
  std::vector<PassedOver> result;
  for (const netcdf::Skipped& variable : skipped) {
    if (variable.path.rfind(start, 0) == 0 &&
        variable.path.find('/', start.size()) == std::string::npos) {
      result.push_back({variable.path.substr(start.size()), variable.reason});
    }
  }
  return result;
}

}  // namespace quillon::tools
