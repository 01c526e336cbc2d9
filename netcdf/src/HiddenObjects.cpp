#include "HiddenObjects.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "Attributes.h"
#include "Hdf5.h"

namespace quillon::netcdf {
namespace {

using Name = std::array<char, NC_MAX_NAME + 1>;

/// What libnetcdf shows of a group. What it cannot tell is taken for nothing.
class Shown {
 public:
  explicit Shown(int group) : m_group(group) {
    nc_inq_nvars(group, &m_variables);
    nc_inq_grps(group, &m_groups, nullptr);
    nc_inq_typeids(group, &m_types, nullptr);
    nc_inq_dimids(group, &m_dimensions, nullptr, 0);
  }

  /// How many links of the group libnetcdf made something of.
  unsigned long links() const {
    unsigned long links = 0;
    for (const int count : {m_variables, m_groups, m_types}) {
      links += static_cast<unsigned long>(count);
    }
    for (const int dimension : dimensions()) {
      links += hasLinkOfItsOwn(dimension) ? 1U : 0U;
    }
    return links;
  }

  std::vector<int> variables() const {
    std::vector<int> ids(static_cast<std::size_t>(m_variables));
    nc_inq_varids(m_group, nullptr, ids.data());
    return ids;
  }

  std::vector<int> groups() const {
    std::vector<int> ids(static_cast<std::size_t>(m_groups));
    nc_inq_grps(m_group, nullptr, ids.data());
    return ids;
  }

  /// The names of all data sets that are shown.
  std::set<std::string> names() const {
    std::set<std::string> names;
    Name name{};
    const auto add = [&](int status) {
      // never false: libnetcdf has just listed it
      if (status == NC_NOERR) {
        names.insert(name.data());
      }
    };
    for (const int id : variables()) {
      add(nc_inq_varname(m_group, id, name.data()));
    }
    for (const int id : dimensions()) {
      add(nc_inq_dimname(m_group, id, name.data()));
    }
    return names;
  }

 private:
  std::vector<int> dimensions() const {
    std::vector<int> ids(static_cast<std::size_t>(m_dimensions));
    nc_inq_dimids(m_group, nullptr, ids.data(), 0);
    return ids;
  }

  /// Those of coordinate variables stand for the variable, and those that libnetcdf makes up for
  /// data sets without any have none.
  bool hasLinkOfItsOwn(int dimension) const {
    Name name{};
    nc_inq_dimname(m_group, dimension, name.data());
    int variable = -1;
    return std::string(name.data()).rfind("phony_dim_", 0) != 0 &&
           nc_inq_varid(m_group, name.data(), &variable) != NC_NOERR;
  }

  int m_group;
  int m_variables = 0;
  int m_groups = 0;
  int m_types = 0;
  int m_dimensions = 0;
};

/// Attributes that tell libraries what belongs together, and no reader anything.
bool isInternal(const std::string& attribute) {
  static constexpr std::array<const char*, 9> NAMES = {"CLASS",
                                                       "NAME",
                                                       "DIMENSION_LIST",
                                                       "REFERENCE_LIST",
                                                       "DIMENSION_LABELS",
                                                       "_Netcdf4Dimid",
                                                       "_Netcdf4Coordinates",
                                                       "_nc3_strict",
                                                       "_NCProperties"};
  return std::find(NAMES.begin(), NAMES.end(), attribute) != NAMES.end();
}

class Search {
 public:
  Search(const Source& source, std::vector<Skipped>& datasets, std::vector<Skipped>& attributes)
      : m_datasets(datasets),
        m_attributes(attributes),
        m_areAttributesShown(
            textAttribute(source, source.id(), NC_GLOBAL, "_NCProperties").find(",netcdf=") !=
            std::string::npos) {}

  /// @param path where the group stands, with a slash at its end.
  void searchGroup(int id, hid_t group, const std::string& path) {
    const Shown shown(id);
    H5G_info_t info{};
    // never false: libnetcdf has listed the group's links before
    if (H5Gget_info(group, &info) >= 0 && info.nlinks != shown.links()) {
      searchLinks(group, path, shown.names());
    }
    if (!m_areAttributesShown) {
      searchAttributes(id, NC_GLOBAL, group, path);
      searchVariables(id, group, path, shown.variables());
    }
    for (const int child : shown.groups()) {
      Name name{};
      nc_inq_grpname(child, name.data());
      const Hdf5Object next(H5Gopen2(group, name.data(), H5P_DEFAULT), H5Gclose);
      // never false: libnetcdf has opened the same group
      if (next.exists()) {
        searchGroup(child, next.id(), std::string(path).append(name.data()).append("/"));
      }
    }
  }

 private:
  void searchLinks(hid_t group, const std::string& path, const std::set<std::string>& shown) {
    std::vector<Hdf5Link> links;
    listLinks(group, links);
    for (const Hdf5Link& link : links) {
      if (shown.count(shownName(link.name)) == 0) {
        const Hdf5Object object(H5Oopen(group, link.name.c_str(), H5P_DEFAULT), H5Oclose);
        if (H5Iget_type(object.id()) == H5I_DATASET) {
          const Hdf5Object type(H5Dget_type(object.id()), H5Tclose);
          m_datasets.push_back({path + link.name, describeType(type.id())});
        }
      }
    }
  }

  void searchVariables(int id, hid_t group, const std::string& path, const std::vector<int>& ids) {
    for (const int variable : ids) {
      Name name{};
      nc_inq_varname(id, variable, name.data());
      const Hdf5Object dataset = openDataset(group, name.data());
      // never false: libnetcdf has opened the same data set
      if (dataset.exists()) {
        searchAttributes(id, variable, dataset.id(), path + name.data());
      }
    }
  }

  void searchAttributes(int id, int variable, hid_t object, const std::string& path) {
    H5O_info_t info{};
    int shown = 0;
    // never true: libnetcdf has read the same header before
    if (H5Oget_info2(object, &info, H5O_INFO_NUM_ATTRS) < 0 ||
        // never true: libnetcdf has told of its attributes before
        nc_inq_varnatts(id, variable, &shown) != NC_NOERR ||
        info.num_attrs == static_cast<hsize_t>(shown)) {
      return;
    }
    for (const std::string& name : attributeNames(object)) {
      if (!isInternal(name) && !hasAttribute(id, variable, name.c_str())) {
        const Hdf5Object attribute(H5Aopen(object, name.c_str(), H5P_DEFAULT), H5Aclose);
        const Hdf5Object type(H5Aget_type(attribute.id()), H5Tclose);
        m_attributes.push_back(
            {std::string(path).append("@").append(name), describeType(type.id())});
      }
    }
  }

  std::vector<Skipped>& m_datasets;
  std::vector<Skipped>& m_attributes;
  bool m_areAttributesShown;  // libnetcdf shows all that it wrote itself
};

}  // namespace

void listHidden(const Source& source, std::vector<Skipped>& datasets,
                std::vector<Skipped>& attributes) {
  const hid_t file = source.hdf5();
  if (file >= 0) {
    const QuietHdf5 quiet;
    Search(source, datasets, attributes).searchGroup(source.id(), file, "/");
  }
}

}  // namespace quillon::netcdf
