#include "Groups.h"

namespace quillon::tools {

namespace {

void collectGroups(const object_model::Dictionary& group, const std::string& start,
                   std::vector<std::string>& paths) {
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    if (const object_model::Dictionary* inner = group.data(i)->asDictionary()) {
      paths.push_back(start + inner->getName());
      collectGroups(*inner, paths.back() + "/", paths);
    }
  }
}

}  // namespace

std::vector<std::string> groupsBelow(const object_model::Dictionary& group) {
  std::vector<std::string> paths;
  collectGroups(group, {}, paths);
  return paths;
}

std::string pathOf(const object_model::Data& group) {
  const object_model::Data* parent = group.parent();
  if (parent == nullptr) {
    return "/";
  }
  return pathOf(*parent, group.getName());
}

std::string pathOf(const object_model::Data& group, const std::string& name) {
  const std::string start = pathOf(group);
  return (start == "/" ? start : start + "/") + name;
}

std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped) {
  const std::string start = pathOf(group, {});
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
