#include "WriteDimensions.h"

#include <quillon/memory/Wording.h>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "WriteNames.h"
#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

using memory::AxisFacts;
using memory::inQuotes;

using Sizes = std::map<std::string, unsigned long>;

std::string freeName(unsigned long size, const std::vector<AxisFacts>& axes, const Sizes& sizes,
                     const IsTaken& isTaken) {
  for (unsigned long number = 0;; ++number) {
    std::string name = "dim_" + std::to_string(number);
    const auto known = sizes.find(name);
    if (memory::countOf(name, axes) == 0 && !isTaken(name) &&
        (known == sizes.end() || known->second == size)) {
      return name;
    }
  }
}

std::string conflict(const AxisFacts& axis, const Member& member, unsigned long otherSize,
                     const std::string& otherPath) {
  const std::string size = std::to_string(axis.size);
  const std::string other = std::to_string(otherSize);
  if (otherPath == member.path) {
    return "axis " + inQuotes(axis.name) + " of " + inQuotes(member.path) + " has both " + other +
           " and " + size + " points";
  }
  return "axis " + inQuotes(axis.name) + " has " + other + " points in " + inQuotes(otherPath) +
         " and " + size + " in " + inQuotes(member.path);
}

std::optional<std::size_t> find(const std::string& name, const PlannedGroup& group) {
  const auto found = std::find_if(group.dimensions.begin(), group.dimensions.end(),
                                  [&](const PlannedDimension& each) { return each.name == name; });
  return found == group.dimensions.end()
             ? std::nullopt
             : std::optional(static_cast<std::size_t>(found - group.dimensions.begin()));
}

/// The coordinates of a dimension in its own group; null where there are none.
const object_model::Array* coordinatesAt(DimensionPlace place, const Plan& plan) {
  const PlannedGroup& group = plan[place.group];
  for (const PlannedVariable& variable : group.variables) {
    if (variable.name == group.dimensions[place.dimension].name && variable.isAlong(place)) {
      return variable.array;
    }
  }
  return nullptr;
}

/// Whether the dimension can stand for an axis of a group below.
bool isShareable(DimensionPlace place, const AxisFacts& axis,
                 const object_model::Array* coordinates, const Plan& plan) {
  if (plan[place.group].dimensions[place.dimension].size != axis.size) {
    return false;
  }
  const object_model::Array* const there = coordinatesAt(place, plan);
  return coordinates == nullptr || (there != nullptr && areSameCoordinates(*coordinates, *there));
}

/// The dimension of that name in the nearest group around `group` that has one.
std::optional<DimensionPlace> findAround(const std::string& name, std::size_t group,
                                         const Plan& plan) {
  while (group != 0) {
    group = plan[group].parent;
    if (const std::optional<std::size_t> dimension = find(name, plan[group])) {
      return DimensionPlace{group, *dimension};
    }
  }
  return std::nullopt;
}

}  // namespace

void nameAxes(std::vector<Member>& members, const IsTaken& isTaken) {
  Sizes sizes;
  for (const Member& member : members) {
    for (const AxisFacts& axis : member.axes) {
      sizes.emplace(axis.name, axis.size);
    }
  }
  for (Member& member : members) {
    for (auto axis = member.axes.rbegin(); axis != member.axes.rend(); ++axis) {
      if (axis->name.empty()) {
        axis->name = freeName(axis->size, member.axes, sizes, isTaken);
        sizes.emplace(axis->name, axis->size);
      }
    }
  }
}

void requireAgreeingAxes(const std::vector<Member>& members) {
  std::map<std::string, std::pair<unsigned long, std::string>> known;
  for (const Member& member : members) {
    for (auto axis = member.axes.rbegin(); axis != member.axes.rend(); ++axis) {
      requireName(axis->name, "axis " + inQuotes(axis->name) + " of " + inQuotes(member.path));
      const auto [first, isNew] = known.emplace(axis->name, std::pair(axis->size, member.path));
      if (!isNew && first->second.first != axis->size) {
        throw Refusal(conflict(*axis, member, first->second.first, first->second.second));
      }
    }
  }
}

DimensionPlace dimensionFor(const AxisFacts& axis, bool isOwn,
                            const object_model::Array* coordinates, std::size_t group, Plan& plan) {
  const std::optional<DimensionPlace> around = findAround(axis.name, group, plan);
  if (!isOwn && around && isShareable(*around, axis, coordinates, plan)) {
    return *around;
  }
  plan[group].dimensions.push_back({axis.name, axis.size});
  return {group, plan[group].dimensions.size() - 1};
}

}  // namespace quillon::netcdf
