#include "Variable.h"

#include <netcdf.h>

#include <algorithm>

namespace quillon::netcdf {

std::string Variable::subject() const { return "variable '" + path + "'"; }

WindowLayout Variable::windows(std::size_t dimensions, std::size_t valueBytes) const {
  const auto leading = [&](const std::vector<std::size_t>& extents) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(dimensions, extents.size()));
    return std::vector<std::size_t>(extents.begin(), extents.begin() + count);
  };
  return {leading(shape), source->options().windowBytes / valueBytes, leading(chunks)};
}

void Variable::read(const Block& block, void* values) const {
  source->require(nc_get_vara(group, id, block.start.data(), block.extent.data(), values),
                  subject() + " cannot be read");
}

void Variable::reportRead(unsigned long bytes) const {
  if (source->options().onRead) {
    source->options().onRead(bytes);
  }
}

}  // namespace quillon::netcdf
