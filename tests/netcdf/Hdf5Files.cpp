#include "Hdf5Files.h"

#include <stdexcept>

namespace quillon::netcdf {
namespace {

Hdf5Object spaceOf(const Hdf5Writer::Extents& extents) {
  return {mustHdf5(extents.empty() ? H5Screate(H5S_SCALAR)
                                   : H5Screate_simple(static_cast<int>(extents.size()),
                                                      extents.data(), nullptr)),
          H5Sclose};
}

}  // namespace

hid_t mustHdf5(hid_t result) {
  if (result < 0) {
    throw std::runtime_error("libhdf5 failed");
  }
  return result;
}

Hdf5Writer::Hdf5Writer(const std::string& path)
    : m_file(mustHdf5(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)), H5Fclose) {
}

void Hdf5Writer::group(const std::string& path) const {
  const Hdf5Object group(
      mustHdf5(H5Gcreate2(file(), path.c_str(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)), H5Gclose);
}

Hdf5Object Hdf5Writer::dataset(const std::string& path, hid_t type, const Extents& extents,
                               const std::function<void(hid_t creation)>& create) const {
  const Hdf5Object creation(mustHdf5(H5Pcreate(H5P_DATASET_CREATE)), H5Pclose);
  if (create) {
    create(creation.id());
  }
  return {mustHdf5(H5Dcreate2(file(), path.c_str(), type, spaceOf(extents).id(), H5P_DEFAULT,
                              creation.id(), H5P_DEFAULT)),
          H5Dclose};
}

void Hdf5Writer::attribute(const std::string& path, const std::string& name, hid_t type,
                           const void* values, const Extents& extents) const {
  const Hdf5Object attribute(
      mustHdf5(H5Acreate_by_name(file(), path.c_str(), name.c_str(), type, spaceOf(extents).id(),
                                 H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)),
      H5Aclose);
  if (values != nullptr) {
    mustHdf5(H5Awrite(attribute.id(), type, values));
  }
}

void Hdf5Writer::commit(const std::string& path, hid_t type) const {
  mustHdf5(H5Tcommit2(file(), path.c_str(), type, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
}

void linkHard(const Hdf5Writer& writer, const std::string& from, const std::string& to) {
  mustHdf5(H5Lcreate_hard(writer.file(), from.c_str(), writer.file(), to.c_str(), H5P_DEFAULT,
                          H5P_DEFAULT));
}

void writeAll(const Hdf5Object& dataset, hid_t type, const void* values) {
  mustHdf5(H5Dwrite(dataset.id(), type, H5S_ALL, H5S_ALL, H5P_DEFAULT, values));
}

Hdf5Object textType(std::size_t bytes, H5T_str_t padding, H5T_cset_t characters) {
  Hdf5Object type(mustHdf5(H5Tcopy(H5T_C_S1)), H5Tclose);
  mustHdf5(H5Tset_size(type.id(), bytes));
  mustHdf5(H5Tset_strpad(type.id(), padding));
  mustHdf5(H5Tset_cset(type.id(), characters));
  return type;
}

Hdf5Object compoundType() {
  Hdf5Object type(mustHdf5(H5Tcreate(H5T_COMPOUND, sizeof(int))), H5Tclose);
  mustHdf5(H5Tinsert(type.id(), "x", 0, H5T_NATIVE_INT));
  return type;
}

Hdf5Object booleanType() {
  Hdf5Object type(mustHdf5(H5Tenum_create(H5T_NATIVE_SCHAR)), H5Tclose);
  for (signed char value = 0; value < 2; ++value) {
    mustHdf5(H5Tenum_insert(type.id(), value == 0 ? "FALSE" : "TRUE", &value));
  }
  return type;
}

}  // namespace quillon::netcdf
