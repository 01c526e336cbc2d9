#include "LongNames.h"

#include <array>
#include <cstring>
#include <vector>

namespace quillon::netcdf {
namespace {

// With room for what libnetcdf reads behind a name: up to the next zero in a number.
using RoomyName = std::array<char, std::size_t{4} * NC_MAX_NAME>;

template <class List>
std::vector<int> idsOf(const List& list) {
  int count = 0;
  list(&count, nullptr);
  std::vector<int> ids(static_cast<std::size_t>(count));
  list(&count, ids.data());
  return ids;
}

std::string pathOfGroup(int group) {
  std::size_t length = 0;
  nc_inq_grpname_full(group, &length, nullptr);
  std::string path(length, '\0');
  nc_inq_grpname_full(group, nullptr, path.data());
  return path == "/" ? std::string() : path;
}

/// Walks through a file's groups, the outer ones first.
class LongNameSearch {
 public:
  explicit LongNameSearch(int file) : m_groups{file} {}

  std::string find() {
    while (!m_groups.empty() && m_finding.empty()) {
      const int group = m_groups.back();
      m_groups.pop_back();
      lookAtAll(
          group, [group](int* count, int* ids) { nc_inq_typeids(group, count, ids); },
          [group](int id, char* name) { nc_inq_type(group, id, name, nullptr); });
      lookAtAll(
          group, [group](int* count, int* ids) { nc_inq_dimids(group, count, ids, 0); },
          [group](int id, char* name) { nc_inq_dimname(group, id, name); });
      lookAtAll(
          group, [group](int* count, int* ids) { nc_inq_varids(group, count, ids); },
          [group](int id, char* name) { nc_inq_varname(group, id, name); });
      const auto listGroups = [group](int* count, int* ids) { nc_inq_grps(group, count, ids); };
      lookAtAll(group, listGroups, [](int id, char* name) { nc_inq_grpname(id, name); });
      const std::vector<int> inner = idsOf(listGroups);
      m_groups.insert(m_groups.end(), inner.begin(), inner.end());
    }
    return m_finding;
  }

 private:
  template <class List, class Ask>
  void lookAtAll(int group, const List& list, const Ask& ask) {
    for (const int id : idsOf(list)) {
      RoomyName name{};
      ask(id, name.data());
      if (std::strlen(name.data()) > LONGEST_NAME) {
        m_finding = "the name of '" + pathOfGroup(group) + "/" +
                    std::string(name.data(), NC_MAX_NAME) + "' is longer than " +
                    std::to_string(LONGEST_NAME) + " bytes";
      }
    }
  }

  std::vector<int> m_groups;
  std::string m_finding;
};

}  // namespace

std::string findLongName(int file) { return LongNameSearch(file).find(); }

}  // namespace quillon::netcdf
