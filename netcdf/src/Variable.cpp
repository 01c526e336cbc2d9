#include "Variable.h"

#include <netcdf.h>

#include <algorithm>

#include "Bounded.h"

namespace quillon::netcdf {

namespace {

// Runs of this size stay in a processor's cache; longer ones are for chunks alone.
constexpr std::size_t RUN_BYTES = std::size_t{1} << 20U;
constexpr std::size_t LONGEST_RUN_BYTES = std::size_t{16} << 20U;

}  // namespace

std::string Variable::subject() const { return "variable '" + path + "'"; }

WindowLayout Variable::windows(std::size_t dimensions, std::size_t valueBytes) const {
  return layout(dimensions, source->options().windowBytes / valueBytes);
}

Block Variable::runAround(unsigned long offset, std::size_t valueBytes) const {
  // A chunk is unpacked as a whole, and so are those beside it along the other dimensions.
  std::size_t atOnce = chunks.empty() ? 0 : boundedProduct(valueBytes, chunks.front());
  for (std::size_t k = 1; k < chunks.size(); ++k) {
    atOnce = boundedProduct(atOnce, shape[k]);
  }
  if (offset == 0 && !chunks.empty() && atOnce <= LONGEST_RUN_BYTES) {
    // Each chunk is unpacked once, so that keeping it takes memory for nothing. Where the library
    // keeps it nevertheless, that is all the harm.
    nc_set_var_chunk_cache(group, id, 0, 0, 0);
  }
  const std::size_t bytes = std::clamp(atOnce, RUN_BYTES, LONGEST_RUN_BYTES);
  return layout(shape.size(), bytes / valueBytes).blockAround(offset);
}

WindowLayout Variable::layout(std::size_t dimensions, std::size_t maxValues) const {
  const auto leading = [&](const std::vector<std::size_t>& extents) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(dimensions, extents.size()));
    return std::vector<std::size_t>(extents.begin(), extents.begin() + count);
  };
  return {leading(shape), maxValues, leading(chunks)};
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
