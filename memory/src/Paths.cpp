#include <quillon/memory/Paths.h>

namespace quillon::memory {

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

std::string pathOf(const object_model::Data& object) {
  const object_model::Data* parent = object.parent();
  if (parent == nullptr) {
    return "/";
  }
  return pathOf(*parent, object.getName());
}

std::string pathOf(const object_model::Data& group, const std::string& name) {
  const std::string start = pathOf(group);
  return (start == "/" ? start : start + "/") + name;
}

}  // namespace quillon::memory
