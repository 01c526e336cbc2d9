#include "Hdf5Structure.h"

#include <quillon/memory/Bounded.h>

#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "Hdf5.h"
#include "LongNames.h"

namespace quillon::netcdf {
namespace {

// Groups that are linked to each other several times multiply: so many are taken for endless.
constexpr unsigned long MOST_GROUPS = 1'000'000;

using ObjectAddress = std::pair<unsigned long, haddr_t>;  // in which file, for links lead to others

Hdf5Object openFile(const std::string& path) {
  return {H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose};
}

std::string below(const std::string& path, const std::string& name) {
  return (path == "/" ? path : path + "/") + name;
}

ObjectAddress addressOf(const H5O_info_t& info) { return {info.fileno, info.addr}; }

/// Whether what names the dimensions of a data set is a list of references for each of them, where
/// there is any. libhdf5's functions for dimensions read it as that, whatever it is and however
/// long.
bool hasSoundDimensionList(hid_t group, const std::string& name) {
  constexpr const char* LIST = "DIMENSION_LIST";
  if (H5Aexists_by_name(group, name.c_str(), LIST, H5P_DEFAULT) <= 0) {
    return true;
  }
  const Hdf5Object dataset(H5Dopen2(group, name.c_str(), H5P_DEFAULT), H5Dclose);
  const Hdf5Object space(H5Dget_space(dataset.id()), H5Sclose);
  const Hdf5Object list(H5Aopen(dataset.id(), LIST, H5P_DEFAULT), H5Aclose);
  const Hdf5Object type(H5Aget_type(list.id()), H5Tclose);
  if (H5Tget_class(type.id()) != H5T_VLEN) {
    return false;
  }
  const Hdf5Object element(H5Tget_super(type.id()), H5Tclose);
  const Hdf5Object places(H5Aget_space(list.id()), H5Sclose);
  return H5Tequal(element.id(), H5T_STD_REF_OBJ) > 0 &&
         H5Sget_simple_extent_npoints(places.id()) == H5Sget_simple_extent_ndims(space.id());
}

/// Follows all links to groups, each group once.
class GroupWalk {
 public:
  /// What is wrong with the groups from the open one at `path` on; empty when nothing is.
  std::string findTrap(hid_t group, const std::string& path) {
    H5O_info_t info{};
    if (H5Oget_info2(group, &info, H5O_INFO_BASIC) < 0) {  // never true, never run: it is open
      return {};
    }
    visit(group, addressOf(info), path);
    return m_finding;
  }

 private:
  struct Visit {
    bool isOpen = true;        // its links are being followed
    unsigned long groups = 1;  // that libnetcdf would show for it, itself included
  };

  unsigned long visit(hid_t group, const ObjectAddress& place, const std::string& path) {
    const auto [visited, isNew] = m_visits.emplace(place, Visit{});
    if (!isNew) {
      if (visited->second.isOpen) {
        m_finding = "the group '" + path + "' is one of those that it stands in";
      }
      return visited->second.groups;
    }
    Visit& here = visited->second;
    std::vector<Hdf5Link> links;
    listLinks(group, links);  // what cannot be listed is libnetcdf's to report
    for (auto link = links.begin(); link != links.end() && m_finding.empty(); ++link) {
      here.groups = memory::boundedSum(here.groups, follow(group, *link, below(path, link->name)));
    }
    if (here.groups > MOST_GROUPS && m_finding.empty()) {
      m_finding = "links make more than " + std::to_string(MOST_GROUPS) + " groups of its " +
                  std::to_string(m_visits.size());
    }
    here.isOpen = false;
    return here.groups;
  }

  unsigned long follow(hid_t group, const Hdf5Link& link, const std::string& path) {
    if (link.name.size() > LONGEST_NAME) {
      m_finding =
          "the name of '" + path + "' is longer than " + std::to_string(LONGEST_NAME) + " bytes";
      return 0;
    }
    H5O_info_t info{};
    if (H5Oget_info_by_name2(group, link.name.c_str(), &info, H5O_INFO_BASIC, H5P_DEFAULT) < 0) {
      return 0;
    }
    if (info.type != H5O_TYPE_GROUP) {
      if (info.type == H5O_TYPE_DATASET && !hasSoundDimensionList(group, link.name)) {
        m_finding = "the attribute 'DIMENSION_LIST' of '" + path +
                    "' is no list of references for each of its dimensions";
      }
      return 0;
    }
    const Hdf5Object next(H5Gopen2(group, link.name.c_str(), H5P_DEFAULT), H5Gclose);
    // never false: libhdf5 opens what it takes for a group
    return next.exists() ? visit(next.id(), addressOf(info), path) : 0;
  }

  std::map<ObjectAddress, Visit> m_visits;
  std::string m_finding;
};

/// Opens all that there is, and notes the first thing that libnetcdf cannot do with.
class Inspection {
 public:
  explicit Inspection(Hdf5Verdict& verdict) : m_verdict(verdict) {}

  void inspectGroup(hid_t group, const std::string& path) {
    std::vector<Hdf5Link> links;
    requireSound(listLinks(group, links));
    inspectAttributes(group, path);
    for (const Hdf5Link& link : links) {
      inspectLink(group, link, below(path, link.name));
    }
  }

 private:
  void requireSound(bool isSound) { m_verdict.isSound = m_verdict.isSound && isSound; }

  void note(const std::string& obstacle) {
    if (m_verdict.obstacle.empty()) {
      m_verdict.obstacle = obstacle;
    }
  }

  void inspectLink(hid_t group, const Hdf5Link& link, const std::string& path) {
    const Hdf5Object object(H5Oopen(group, link.name.c_str(), H5P_DEFAULT), H5Oclose);
    if (!object.exists()) {
      if (link.type == H5L_TYPE_HARD) {
        requireSound(false);
      } else {
        note("the link '" + path + "' leads nowhere");
      }
      return;
    }
    H5O_info_t info{};
    requireSound(H5Oget_info2(object.id(), &info, H5O_INFO_BASIC) >= 0);
    if (m_places.insert(addressOf(info)).second) {
      inspectObject(object.id(), info.type, path);
    }
  }

  void inspectObject(hid_t object, H5O_type_t type, const std::string& path) {
    if (type == H5O_TYPE_GROUP) {
      inspectGroup(object, path);
    } else if (type == H5O_TYPE_DATASET) {
      inspectDataset(object, path);
    } else if (type == H5O_TYPE_NAMED_DATATYPE) {  // never false: libhdf5 opens no others
      inspectType(object, path);
    }
  }

  void inspectType(hid_t type, const std::string& path) {
    const H5T_class_t kind = H5Tget_class(type);
    const Hdf5Object nameless(H5Tcopy(type), H5Tclose);
    requireSound(nameless.exists());
    if (kind != H5T_COMPOUND && kind != H5T_ENUM && kind != H5T_VLEN && kind != H5T_OPAQUE &&
        kind != H5T_STRING) {
      note("libnetcdf does not know named types such as '" + path + "' (" +
           describeType(nameless.id()) + ")");
    }
  }

  void inspectDataset(hid_t dataset, const std::string& path) {
    const Hdf5Object type(H5Dget_type(dataset), H5Tclose);
    const Hdf5Object space(H5Dget_space(dataset), H5Sclose);
    const Hdf5Object creation(H5Dget_create_plist(dataset), H5Pclose);
    // never false: libhdf5 opens no data set without all of them
    requireSound(type.exists() && space.exists() && creation.exists());
    // never false: an open data set has a type
    if (type.exists() && H5Tget_class(type.id()) == H5T_TIME) {
      note("libnetcdf does not know the type of '" + path + "' (" + describeType(type.id()) + ")");
    }
    inspectAttributes(dataset, path);
  }

  void inspectAttributes(hid_t object, const std::string& path) {
    H5O_info_t info{};
    requireSound(H5Oget_info2(object, &info, H5O_INFO_NUM_ATTRS) >= 0);
    for (hsize_t k = 0; k < info.num_attrs && m_verdict.isSound; ++k) {
      const Hdf5Object attribute(
          H5Aopen_by_idx(object, ".", H5_INDEX_NAME, H5_ITER_INC, k, H5P_DEFAULT, H5P_DEFAULT),
          H5Aclose);
      const Hdf5Object type(attribute.exists() ? H5Aget_type(attribute.id()) : H5I_INVALID_HID,
                            H5Tclose);
      requireSound(type.exists());
      if (type.exists() && H5Tget_class(type.id()) == H5T_TIME) {
        note("libnetcdf does not know the type of an attribute of '" + path + "' (" +
             describeType(type.id()) + ")");
      }
    }
  }

  Hdf5Verdict& m_verdict;
  std::set<ObjectAddress> m_places;  // what was inspected
};

}  // namespace

std::string findTrap(const std::string& path) {
  const QuietHdf5 quiet;
  const Hdf5Object file = openFile(path);
  return file.exists() ? GroupWalk().findTrap(file.id(), "/") : std::string();
}

Hdf5Verdict judgeHdf5(const std::string& path) {
  const QuietHdf5 quiet;
  Hdf5Verdict verdict;
  const Hdf5Object file = openFile(path);
  if (file.exists()) {
    verdict.isSound = true;
    Inspection(verdict).inspectGroup(file.id(), "/");
  }
  return verdict;
}

}  // namespace quillon::netcdf
