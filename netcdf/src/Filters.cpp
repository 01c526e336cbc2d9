#include "Filters.h"

#include <netcdf.h>
#include <netcdf_filter.h>

#include <algorithm>
#include <array>
#include <vector>

#include "Hdf5.h"

namespace quillon::netcdf {
namespace {

std::vector<unsigned int> filtersOf(const Variable& variable) {
  std::size_t count = 0;
  // never true: libnetcdf has told of the variable before
  if (nc_inq_var_filter_ids(variable.group, variable.id, &count, nullptr) != NC_NOERR) {
    return {};  // never run: likewise
  }
  std::vector<unsigned int> filters(count);
  nc_inq_var_filter_ids(variable.group, variable.id, &count, filters.data());
  return filters;
}

/// What the file calls the filter; empty when it says nothing.
std::string nameOfFilter(const Hdf5Object& dataset, unsigned int filter) {
  const Hdf5Object creation(H5Dget_create_plist(dataset.id()), H5Pclose);
  unsigned int flags = 0;
  std::size_t parameters = 0;
  std::array<char, 256> name{};
  H5Pget_filter_by_id2(creation.id(), static_cast<H5Z_filter_t>(filter), &flags, &parameters,
                       nullptr, name.size() - 1, name.data(), nullptr);
  return name.data();
}

}  // namespace

std::string missingFilter(const Variable& variable) {
  const std::vector<unsigned int> filters = filtersOf(variable);
  const auto missing = std::find_if(filters.begin(), filters.end(), [](unsigned int filter) {
    return H5Zfilter_avail(static_cast<H5Z_filter_t>(filter)) == 0;
  });
  if (missing == filters.end()) {
    return {};
  }
  const QuietHdf5 quiet;
  const Hdf5Object dataset = openDataset(variable.source->hdf5(), variable.path);
  const std::string name = nameOfFilter(dataset, *missing);
  return "filter " + std::to_string(*missing) + (name.empty() ? "" : " '" + name + "'") +
         ", which is not there";
}

}  // namespace quillon::netcdf
