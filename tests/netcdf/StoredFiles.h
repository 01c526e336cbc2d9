#pragma once

#include <quillon/netcdf/LibraryLock.h>

#include <mutex>
#include <numeric>
#include <string>
#include <vector>

#include "Source.h"
#include "TestFiles.h"
#include "Variable.h"

namespace quillon::netcdf {

/// How a variable is to be stored.
struct Storage {
  nc_type type = NC_FLOAT;
  int endian = NC_ENDIAN_NATIVE;
  std::vector<std::size_t> chunks = {};  ///< slowest dimension first; none for contiguous values
  int level = 0;                         ///< of deflate; 0 for none
  bool isShuffled = false;
  bool hasChecksum = false;
};

/// Defines a variable that is stored so.
inline int define(const Writer& writer, const std::string& name, const std::vector<int>& dimensions,
                  const Storage& storage) {
  const int id = writer.variable(name, storage.type, dimensions);
  must(nc_def_var_endian(writer.root(), id, storage.endian));
  must(nc_def_var_chunking(writer.root(), id, storage.chunks.empty() ? NC_CONTIGUOUS : NC_CHUNKED,
                           storage.chunks.empty() ? nullptr : storage.chunks.data()));
  if (storage.level > 0 || storage.isShuffled) {
    must(nc_def_var_deflate(writer.root(), id, storage.isShuffled ? 1 : 0,
                            storage.level > 0 ? 1 : 0, storage.level));
  }
  if (storage.hasChecksum) {
    must(nc_def_var_fletcher32(writer.root(), id, NC_FLETCHER32));
  }
  return id;
}

/// The first variable of that name in the root group of an open file.
inline Variable variableOf(const std::shared_ptr<const Source>& source, const std::string& name) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  Variable variable{source, source->id(), -1, "/" + name, 0, {}, {}};
  must(nc_inq_varid(variable.group, name.c_str(), &variable.id));
  nc_type type = NC_NAT;
  int rank = 0;
  std::vector<int> dimensions(NC_MAX_VAR_DIMS);
  must(nc_inq_var(variable.group, variable.id, nullptr, &type, &rank, dimensions.data(), nullptr));
  must(nc_inq_type(variable.group, type, nullptr, &variable.valueBytes));
  for (int k = rank; k > 0; --k) {
    std::size_t extent = 0;
    must(nc_inq_dimlen(variable.group, dimensions[static_cast<std::size_t>(k - 1)], &extent));
    variable.shape.push_back(extent);
  }
  return variable;
}

/// A variable of a file that is opened for it.
inline Variable variableOf(const std::string& path, const std::string& name) {
  return variableOf(std::make_shared<const Source>(path, OpenOptions()), name);
}

inline std::shared_ptr<const StoredValues> storedValuesOf(const Variable& variable) {
  return variable.stored.of(variable);
}

inline std::vector<unsigned long> origin(const Variable& variable) {
  return std::vector<unsigned long>(variable.shape.size(), 0);
}

inline unsigned long bytesOf(const Variable& variable, const std::vector<unsigned long>& extent) {
  return std::accumulate(extent.begin(), extent.end(), variable.valueBytes, std::multiplies<>());
}

/// The bytes of a block as libnetcdf gives them.
inline std::string byLibnetcdf(const Variable& variable, const std::vector<unsigned long>& start,
                               const std::vector<unsigned long>& extent) {
  const std::vector<std::size_t> first(start.rbegin(), start.rend());
  const std::vector<std::size_t> counts(extent.rbegin(), extent.rend());
  std::string values(bytesOf(variable, extent), '\0');
  const std::lock_guard<std::mutex> guard(libraryLock());
  must(nc_get_vara(variable.group, variable.id, first.data(), counts.data(), values.data()));
  return values;
}

inline std::string byLibnetcdf(const Variable& variable) {
  return byLibnetcdf(variable, origin(variable), variable.shape);
}

/// The bytes of all values as they are read from what is stored; "not known" where they are not.
inline std::string fromStored(const Variable& variable) {
  const std::string behind = "what stands behind the values";
  const unsigned long bytes = bytesOf(variable, variable.shape);
  std::string values = std::string(bytes, '\0') + behind;
  const auto stored = storedValuesOf(variable);
  const bool isRead = stored != nullptr &&
                      stored->read(origin(variable).data(), variable.shape.data(), values.data());
  EXPECT_EQ(values.substr(bytes), behind);
  return isRead ? values.substr(0, bytes) : "not known";
}

/// Whether all values of two variables are known to be the same.
inline bool holdSame(const Variable& first, const Variable& second) {
  const auto a = storedValuesOf(first);
  const auto b = storedValuesOf(second);
  return a != nullptr && b != nullptr && a->holdsSame(*b, origin(first).data(), first.shape.data());
}

}  // namespace quillon::netcdf
