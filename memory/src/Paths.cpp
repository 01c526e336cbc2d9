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

std::string_view lastNameOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::vector<std::string> groupsBelow(const object_model::Dictionary& group) {
  std::vector<std::string> paths;
  collectGroups(group, {}, paths);
  return paths;
}

// Built from the names in one go: groups may nest thousands of levels deep.
std::string pathOf(const object_model::Data& object) {
  std::vector<std::string> names;
  for (const object_model::Data* at = &object; at->parent() != nullptr; at = at->parent()) {
    names.push_back(at->getName());
  }
  std::string path;
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    path += "/" + *name;
  }
  return path.empty() ? "/" : path;
}

std::string pathOf(const object_model::Data& group, const std::string& name) {
  const std::string start = pathOf(group);
  return (start == "/" ? start : start + "/") + name;
}

}  // namespace quillon::memory
