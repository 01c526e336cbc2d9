#include "Hdf5.h"

#include <netcdf.h>
#include <quillon/memory/Paths.h>

#include <exception>
#include <string_view>

namespace quillon::netcdf {
namespace {

constexpr std::string_view PREFIX = "_nc4_non_coord_";

template <class Entry>
struct Listing {
  std::vector<Entry>& entries;
  std::exception_ptr error = nullptr;  // none may pass through libhdf5

  template <class... Parts>
  herr_t add(const Parts&... parts) {
    try {
      entries.push_back(Entry{parts...});
      return 0;
    } catch (...) {
      error = std::current_exception();
      return -1;
    }
  }
};

herr_t addLink(hid_t /*group*/, const char* name, const H5L_info_t* info, void* to) {
  return static_cast<Listing<Hdf5Link>*>(to)->add(name, info->type);
}

herr_t addName(hid_t /*object*/, const char* name, const H5A_info_t* /*info*/, void* to) {
  return static_cast<Listing<std::string>*>(to)->add(name);
}

void rethrow(const std::exception_ptr& error) {
  if (error) {
    std::rethrow_exception(error);
  }
}

std::string kindOf(hid_t type) {
  switch (H5Tget_class(type)) {
    case H5T_INTEGER:
      return "integer type of " + std::to_string(H5Tget_size(type)) + " bytes";
    case H5T_FLOAT:
      return "floating-point type of " + std::to_string(H5Tget_size(type)) + " bytes";
    case H5T_TIME:
      return "time type";
    case H5T_STRING:  // never true, never run: all texts are read
      return "string type";
    case H5T_BITFIELD:
      return "bit field type";
    case H5T_OPAQUE:
      return "opaque type";
    case H5T_COMPOUND:
      return "compound type";
    case H5T_REFERENCE:
      return "reference type";
    case H5T_ENUM:
      return "enumeration type";
    case H5T_VLEN:
      return "variable-length type";
    case H5T_ARRAY:
      return "array type";
    default:  // never true, never run: libhdf5 opens nothing of another class
      return "unknown type";
  }
}

/// The last part of the name under which the type was committed; empty when it was not.
std::string nameOfType(hid_t type) {
  const ssize_t length = H5Iget_name(type, nullptr, 0);
  if (length <= 0) {
    return {};
  }
  std::string name(static_cast<std::size_t>(length), '\0');
  H5Iget_name(type, name.data(), name.size() + 1);
  return std::string(memory::lastNameOf(name));
}

}  // namespace

bool listLinks(hid_t group, std::vector<Hdf5Link>& links) {
  Listing<Hdf5Link> listing{links};
  const herr_t status = H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, addLink, &listing);
  rethrow(listing.error);
  return status >= 0;
}

std::vector<std::string> attributeNames(hid_t object) {
  std::vector<std::string> names;
  Listing<std::string> listing{names};
  H5Aiterate2(object, H5_INDEX_NAME, H5_ITER_INC, nullptr, addName, &listing);
  rethrow(listing.error);
  return names;
}

std::string datasetPath(hid_t group, const std::string& name) {
  const std::size_t begin = name.size() - memory::lastNameOf(name).size();
  const std::string prefixed = name.substr(0, begin).append(PREFIX).append(name, begin);
  return H5Lexists(group, prefixed.c_str(), H5P_DEFAULT) > 0 ? prefixed : name;
}

Hdf5Object openDataset(hid_t group, const std::string& name) {
  return {H5Dopen2(group, datasetPath(group, name).c_str(), H5P_DEFAULT), H5Dclose};
}

std::string shownName(const std::string& link) {
  const bool isPrefixed = link.compare(0, PREFIX.size(), PREFIX) == 0;
  return link.substr(isPrefixed ? PREFIX.size() : 0, NC_MAX_NAME);
}

std::string describeType(hid_t type) {
  const std::string name = nameOfType(type);
  return kindOf(type) + (name.empty() ? "" : " '" + name + "'");
}

}  // namespace quillon::netcdf
