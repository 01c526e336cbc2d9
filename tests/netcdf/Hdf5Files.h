#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Hdf5.h"

namespace quillon::netcdf {

/// Writes an HDF5 file as other programs than libnetcdf do, and closes it when it goes. What fails
/// ends the test that runs with an exception.
class Hdf5Writer {
 public:
  using Extents = std::vector<hsize_t>;

  explicit Hdf5Writer(const std::string& path);

  hid_t file() const { return m_file.id(); }

  void group(const std::string& path) const;

  /// A data set of values that are not written; `creation` sets how it is stored.
  Hdf5Object dataset(const std::string& path, hid_t type, const Extents& extents = {},
                     const std::function<void(hid_t creation)>& create = {}) const;

  /// An attribute of the object at `path`; not written where there are no values.
  void attribute(const std::string& path, const std::string& name, hid_t type,
                 const void* values = nullptr, const Extents& extents = {}) const;

  /// Gives the type a name in the file.
  void commit(const std::string& path, hid_t type) const;

 private:
  Hdf5Object m_file;
};

/// Takes what a call of libhdf5 returned. @throws std::runtime_error where that is a failure.
hid_t mustHdf5(hid_t result);

/// Makes `to` another name of what stands at `from`.
void linkHard(const Hdf5Writer& writer, const std::string& from, const std::string& to);

/// All values of a data set.
void writeAll(const Hdf5Object& dataset, hid_t type, const void* values);

/// The type of texts of `bytes` bytes, or of strings for H5T_VARIABLE.
Hdf5Object textType(std::size_t bytes, H5T_str_t padding = H5T_STR_NULLPAD,
                    H5T_cset_t characters = H5T_CSET_ASCII);

/// A compound type with one member.
Hdf5Object compoundType();

/// An enumeration as other programs store truth values.
Hdf5Object booleanType();

}  // namespace quillon::netcdf
