#include "WritePlan.h"

#include <quillon/memory/Wording.h>

#include "WriteGroup.h"
#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

using object_model::Dictionary;

/// Whether the group is made of `dictionary`, or stands in one that is.
bool isInside(const Dictionary* dictionary, std::size_t group, const Plan& plan,
              const std::vector<const Dictionary*>& dictionaries) {
  while (group != 0 && dictionaries[group] != dictionary) {
    group = plan[group].parent;
  }
  return dictionaries[group] == dictionary;
}

}  // namespace

Plan planOf(const Dictionary& dictionary) {
  Plan plan = {{"/", "/", 0, {}, {}, {}}};
  std::vector<const Dictionary*> dictionaries = {&dictionary};  // of the groups
  for (std::size_t group = 0; group < plan.size(); ++group) {
    for (const auto& [name, inner] : planGroup(*dictionaries[group], group, plan)) {
      const std::string path = entryPath(plan[group].path, name);
      if (isInside(inner, group, plan, dictionaries)) {
        throw Refusal("dictionary " + memory::inQuotes(path) + " contains itself");
      }
      plan.push_back({name, path, group, {}, {}, {}});
      dictionaries.push_back(inner);
    }
  }
  return plan;
}

}  // namespace quillon::netcdf
