#include "WriteGroup.h"

#include <quillon/memory/Axes.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Wording.h>

#include <map>
#include <utility>

#include "WriteAttributes.h"
#include "WriteCoordinates.h"
#include "WriteDimensions.h"
#include "WriteNames.h"
#include "WriteRefusal.h"
#include "WriteTypes.h"

namespace quillon::netcdf {
namespace {

using memory::AxisFacts;
using memory::inQuotes;
using object_model::Array;
using object_model::Dictionary;

constexpr std::size_t NO_MEMBER = static_cast<std::size_t>(-1);

PlannedVariable variableOf(std::string name, std::string path, const Array& array) {
  PlannedVariable variable;
  variable.name = std::move(name);
  variable.path = std::move(path);
  variable.array = &array;
  variable.type = writtenTypeOf(array, variable.path);
  variable.attributes = writtenAttributesOf(array, variable.type, variable.path);
  for (const AxisFacts& axis : memory::axesOf(array)) {
    variable.shape.push_back(axis.size);
  }
  return variable;
}

/// Plans one group, behind all that are around it.
class GroupPlanner {
 public:
  GroupPlanner(Plan& plan, std::size_t group) : m_plan(plan), m_group(group) {}

  /// @return the dictionaries in it, by name.
  std::vector<NamedDictionary> plan(const Dictionary& dictionary) {
    own().attributes = writtenAttributesOf(dictionary, own().path);
    readEntries(dictionary);
    nameAxes(m_members, [this](const std::string& name) { return isTaken(name); });
    requireAgreeingAxes(m_members);
    readCoordinates();
    addDimensions();
    addCoordinates();
    for (const Member& member : m_members) {
      add(member);
    }
    return std::move(m_dictionaries);
  }

 private:
  PlannedGroup& own() { return m_plan[m_group]; }

  void readEntries(const Dictionary& dictionary) {
    for (const auto& [name, data] : memory::entriesOf(dictionary)) {
      const std::string path = entryPath(own().path, name);
      requireName(name, inQuotes(path));
      if (!m_names.emplace(name, NO_MEMBER).second) {
        throw Refusal("there are two entries " + inQuotes(path));
      }
      if (const Array* const array = data == nullptr ? nullptr : data->asArray()) {
        m_names[name] = m_members.size();
        m_members.push_back({name, path, array, memory::axesOf(*array)});
      } else if (const Dictionary* const inner = data == nullptr ? nullptr : data->asDictionary()) {
        m_dictionaries.push_back({name, inner});
      } else {
        throw Refusal(inQuotes(path) + " is neither an array nor a dictionary");
      }
    }
  }

  bool isTaken(const std::string& name) const { return m_names.count(name) != 0; }

  /// The array of that name; null where there is none.
  const Member* findMember(const std::string& name) const {
    const auto found = m_names.find(name);
    return found == m_names.end() || found->second == NO_MEMBER ? nullptr
                                                                : &m_members[found->second];
  }

  /// Whether the array lies along that axis alone.
  static bool isAlong(const std::string& axis, const Member& member) {
    return member.axes.size() == 1 && member.axes[0].name == axis;
  }

  /// Collects the coordinates of all arrays, those of one name once.
  void readCoordinates() {
    for (const Member& member : m_members) {
      for (unsigned long k = 0; k < member.axes.size(); ++k) {
        const AxisFacts& axis = member.axes[k];
        AxisCoordinates some = coordinatesOf(*member.array, k, axis.name, axis.size, member.path);
        if (some.values != nullptr) {
          listCoordinatesOf(member, some);
          collect(std::move(some));
        }
      }
    }
  }

  void listCoordinatesOf(const Member& member, const AxisCoordinates& some) {
    if (!some.areOfAxis() && some.name != member.name) {
      m_listed[member.name].push_back(some.name);
    }
  }

  void collect(AxisCoordinates some) {
    const std::string path = entryPath(own().path, some.name);
    if (const Member* const member = findMember(some.name)) {
      requireSame(some, isAlong(some.axis, *member), *member->array, path);
      return;
    }
    if (isTaken(some.name)) {
      throw Refusal("the coordinates of axis " + inQuotes(some.axis) + " of " +
                    inQuotes(some.owner) + " would stand where the dictionary " + inQuotes(path) +
                    " does");
    }
    const auto known = m_coordinates.find(some.name);
    if (known != m_coordinates.end()) {
      requireSame(some, some.axis == known->second.axis, *known->second.values,
                  known->second.owner);
      return;
    }
    requireName(some.name, inQuotes(path));
    m_coordinates.emplace(some.name, std::move(some));
  }

  /// The coordinates of an axis itself; null where there are none.
  const Array* coordinatesOfAxis(const std::string& name) const {
    const auto found = m_coordinates.find(name);
    return found != m_coordinates.end() && found->second.areOfAxis() ? found->second.values.get()
                                                                     : nullptr;
  }

  void addDimensions() {
    for (const Member& member : m_members) {
      for (auto axis = member.axes.rbegin(); axis != member.axes.rend(); ++axis) {
        if (m_dimensions.count(axis->name) == 0) {
          m_dimensions.emplace(axis->name, dimensionOf(*axis, member));
        }
      }
    }
  }

  DimensionPlace dimensionOf(const AxisFacts& axis, const Member& member) {
    const Member* const named = findMember(axis.name);
    const bool isOwn = named != nullptr && isAlong(axis.name, *named);
    const DimensionPlace place =
        dimensionFor(axis, isOwn, coordinatesOfAxis(axis.name), m_group, m_plan);
    if (place.group == m_group && named == nullptr && isTaken(axis.name)) {
      throw Refusal("axis " + inQuotes(axis.name) + " of " + inQuotes(member.path) +
                    " is called as the dictionary " + inQuotes(entryPath(own().path, axis.name)) +
                    ", which netCDF files cannot tell apart");
    }
    return place;
  }

  /// Adds the variables of coordinates that are not there already.
  void addCoordinates() {
    for (const auto& [name, some] : m_coordinates) {
      const DimensionPlace place = m_dimensions.at(some.axis);
      if (isAround(some, place)) {
        continue;
      }
      PlannedVariable variable = variableOf(name, entryPath(own().path, name), *some.values);
      variable.coordinates = some.values;
      variable.dimensions = {place};
      own().variables.push_back(std::move(variable));
    }
  }

  /// Whether the nearest variable of their name around this group has the same coordinates.
  bool isAround(const AxisCoordinates& some, DimensionPlace place) const {
    for (std::size_t group = m_group; group != 0;) {
      group = m_plan[group].parent;
      for (const PlannedVariable& variable : m_plan[group].variables) {
        if (variable.name == some.name) {
          return variable.isAlong(place) && areSameCoordinates(*some.values, *variable.array);
        }
      }
    }
    return false;
  }

  void add(const Member& member) {
    PlannedVariable variable = variableOf(member.name, member.path, *member.array);
    for (auto axis = member.axes.rbegin(); axis != member.axes.rend(); ++axis) {
      variable.dimensions.push_back(m_dimensions.at(axis->name));
    }
    for (const std::string& name : m_listed[member.name]) {
      listCoordinates(name, variable.attributes);
    }
    own().variables.push_back(std::move(variable));
  }

  Plan& m_plan;
  std::size_t m_group;
  std::vector<Member> m_members;
  std::vector<NamedDictionary> m_dictionaries;
  std::map<std::string, std::size_t> m_names;  // of all entries, with the place of arrays
  std::map<std::string, AxisCoordinates> m_coordinates;
  std::map<std::string, std::vector<std::string>> m_listed;  // by array
  std::map<std::string, DimensionPlace> m_dimensions;
};

}  // namespace

std::vector<NamedDictionary> planGroup(const Dictionary& dictionary, std::size_t group,
                                       Plan& plan) {
  return GroupPlanner(plan, group).plan(dictionary);
}

}  // namespace quillon::netcdf
