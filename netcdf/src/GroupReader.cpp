#include "GroupReader.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Attributes.h"

namespace quillon::netcdf {
namespace {

using memory::Attribute;

using Name = std::array<char, NC_MAX_NAME + 1>;

/// The group's attributes but its title, which is its description.
std::vector<Attribute> withoutTitle(std::vector<Attribute> attributes) {
  const auto isTitle = [](const Attribute& attribute) {
    return attribute.name == "title" && std::holds_alternative<std::string>(attribute.value);
  };
  attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isTitle), attributes.end());
  return attributes;
}

}  // namespace

GroupReader::GroupReader(std::shared_ptr<const ArrayMaker> maker, std::vector<Skipped>& skipped)
    : m_maker(std::move(maker)), m_skipped(skipped) {}

memory::Dictionary GroupReader::read(int group, const std::string& name, const std::string& path) {
  std::vector<Attribute> attributes = attributesOf(source(), group, NC_GLOBAL);
  memory::Dictionary dictionary(name, textOf(attributes, "title"));
  dictionary.setAttributes(withoutTitle(std::move(attributes)));
  addVariables(group, path, dictionary);
  addGroups(group, path, dictionary);
  return dictionary;
}

void GroupReader::addVariables(int group, const std::string& path, memory::Dictionary& to) {
  int count = 0;
  source().require(nc_inq_varids(group, &count, nullptr), "group '" + path + "'");
  std::vector<int> ids(static_cast<std::size_t>(count));
  source().require(nc_inq_varids(group, &count, ids.data()), "group '" + path + "'");
  for (const int id : ids) {
    ArrayMaker::Made made = m_maker->make({group, id}, path);
    if (made.array == nullptr) {
      m_skipped.push_back({made.path, made.unreadable});
      continue;
    }
    requireFree(to, path, made.array->getName());
    to.add(std::move(made.array));
  }
}

void GroupReader::addGroups(int group, const std::string& path, memory::Dictionary& to) {
  int count = 0;
  source().require(nc_inq_grps(group, &count, nullptr), "group '" + path + "'");
  std::vector<int> ids(static_cast<std::size_t>(count));
  source().require(nc_inq_grps(group, &count, ids.data()), "group '" + path + "'");
  for (const int id : ids) {
    Name name{};
    source().require(nc_inq_grpname(id, name.data()), "a group in '" + path + "'");
    requireFree(to, path, name.data());
    to.add(read(id, name.data(), path + name.data() + "/"));
  }
}

void GroupReader::requireFree(const memory::Dictionary& dictionary, const std::string& path,
                              const std::string& name) const {
  if (dictionary.contains(name)) {
    source().fail("group '" + path + "' has two entries called '" + name + "'");
  }
}

}  // namespace quillon::netcdf
