#include "Facts.h"

#include <netcdf.h>
#include <netcdf_filter.h>
#include <quillon/memory/Paths.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Attributes.h"
#include "Encoding.h"

namespace quillon::netcdf {
namespace {

using Name = std::array<char, NC_MAX_NAME + 1>;

constexpr unsigned int DEFLATE = 1;
constexpr unsigned int SHUFFLE = 2;

std::string filterName(unsigned int id) {
  static constexpr std::array<std::pair<unsigned int, const char*>, 11> NAMES = {{
      {3, "fletcher32"},
      {4, "szip"},
      {5, "nbit"},
      {6, "scaleoffset"},
      {307, "bzip2"},
      {32000, "lzf"},
      {32001, "blosc"},
      {32004, "lz4"},
      {32008, "bitshuffle"},
      {32013, "zfp"},
      {32015, "zstd"},
  }};
  const auto* const found = std::find_if(NAMES.begin(), NAMES.end(),
                                         [id](const auto& known) { return known.first == id; });
  return found == NAMES.end() ? "filter " + std::to_string(id) : found->second;
}

/// A variable while it is looked at.
struct Subject {
  const Source& source;
  int group;
  int variable;
  std::vector<int> dimensions;
};

FilterFacts filterOf(const Subject& subject, unsigned int id) {
  FilterFacts filter{id, filterName(id), {}};
  std::size_t count = 0;
  // never false: the library has listed the filter
  if (nc_inq_var_filter_info(subject.group, subject.variable, id, &count, nullptr) == NC_NOERR) {
    filter.parameters.resize(count);
    nc_inq_var_filter_info(subject.group, subject.variable, id, &count, filter.parameters.data());
  }
  return filter;
}

/// Classic files have no filters, and the library says so with an error.
Compression compressionOf(const Subject& subject) {
  Compression compression;
  std::size_t count = 0;
  // never true: libnetcdf 4.9 says so with an empty list
  if (nc_inq_var_filter_ids(subject.group, subject.variable, &count, nullptr) != NC_NOERR) {
    return compression;  // never run: libnetcdf 4.9 says so with an empty list
  }
  std::vector<unsigned int> ids(count);
  subject.source.require(nc_inq_var_filter_ids(subject.group, subject.variable, &count, ids.data()),
                         "a filter");
  int isShuffled = 0;
  int isDeflated = 0;
  int isSummed = 0;
  nc_inq_var_deflate(subject.group, subject.variable, &isShuffled, &isDeflated,
                     &compression.deflateLevel);
  nc_inq_var_fletcher32(subject.group, subject.variable, &isSummed);
  compression.isShuffled = isShuffled != 0;
  compression.deflateLevel = isDeflated != 0 ? compression.deflateLevel : 0;
  for (const unsigned int id : ids) {
    if (id != DEFLATE && id != SHUFFLE) {
      compression.filters.push_back(filterOf(subject, id));
    }
  }
  // never true: libnetcdf 4.9 lists the checksum among the filters
  if (isSummed != 0 && std::find(ids.begin(), ids.end(), 3U) == ids.end()) {
    compression.filters.push_back({3, filterName(3), {}});  // never run: it is listed
  }
  return compression;
}

std::vector<unsigned long> chunksOf(const Subject& subject) {
  int storage = NC_CONTIGUOUS;
  std::vector<std::size_t> chunks(subject.dimensions.size());
  const int status = nc_inq_var_chunking(subject.group, subject.variable, &storage, chunks.data());
  // never false: libnetcdf tells it of classic files, too
  const bool areChunks = status == NC_NOERR && storage == NC_CHUNKED;
  return areChunks ? std::vector<unsigned long>(chunks.begin(), chunks.end())
                   : std::vector<unsigned long>();
}

/// The unlimited dimensions that are seen from a group: its own and those of the groups around it.
std::vector<int> unlimitedDimensions(const Source& source, int group) {
  std::vector<int> all;
  do {
    int count = 0;
    source.require(nc_inq_unlimdims(group, &count, nullptr), "a group");
    std::vector<int> own(static_cast<std::size_t>(count));
    source.require(nc_inq_unlimdims(group, &count, own.data()), "a group");
    all.insert(all.end(), own.begin(), own.end());
  } while (nc_inq_grp_parent(group, &group) == NC_NOERR);
  return all;
}

DimensionFacts dimensionOf(const Subject& subject, int id, const std::vector<int>& unlimited) {
  Name name{};
  DimensionFacts dimension;
  subject.source.require(nc_inq_dim(subject.group, id, name.data(), &dimension.size),
                         "a dimension");
  dimension.name = name.data();
  dimension.isUnlimited = std::find(unlimited.begin(), unlimited.end(), id) != unlimited.end();
  return dimension;
}

VariableFacts variableFacts(const Source& source, const std::string& path, int group, int id,
                            const std::vector<int>& unlimited) {
  Name name{};
  nc_type type = NC_NAT;
  int rank = 0;
  source.require(nc_inq_var(group, id, name.data(), &type, &rank, nullptr, nullptr),
                 "a variable in '" + path + "'");
  VariableFacts facts;
  facts.path = path + name.data();
  facts.type = formOf(source, group, type, "variable '" + facts.path + "'").name;
  Subject subject{source, group, id, std::vector<int>(static_cast<std::size_t>(rank))};
  source.require(nc_inq_vardimid(group, id, subject.dimensions.data()),
                 "variable '" + facts.path + "'");
  for (const int dimension : subject.dimensions) {
    facts.dimensions.push_back(dimensionOf(subject, dimension, unlimited));
  }
  facts.attributes = attributesOf(source, group, id);
  facts.packing = packingOf(facts.attributes);
  if (const memory::Attribute* fill = findAttribute(facts.attributes, "_FillValue")) {
    facts.fill = fill->value;
  }
  facts.chunks = chunksOf(subject);
  facts.compression = compressionOf(subject);
  facts.unit = textOf(facts.attributes, "units");
  facts.description = textOf(facts.attributes, "long_name");
  return facts;
}

/// Notes which variables cannot be read, and adds those that the library does not list.
void markSkipped(const std::string& path, const std::vector<Skipped>& skipped,
                 std::vector<VariableFacts>& variables) {
  for (const Skipped& some : skipped) {
    if (some.path != path + std::string(memory::lastNameOf(some.path))) {
      continue;
    }
    auto found =
        std::find_if(variables.begin(), variables.end(),
                     [&some](const VariableFacts& facts) { return facts.path == some.path; });
    if (found == variables.end()) {
      variables.emplace_back();
      found = std::prev(variables.end());
      found->path = some.path;
    }
    found->isReadable = false;
    found->reason = some.reason;
  }
}

}  // namespace

GroupFacts factsOf(const Source& source, int group, const std::string& path,
                   const std::vector<Skipped>& skipped) {
  GroupFacts facts;
  facts.path = path == "/" ? path : path.substr(0, path.size() - 1);
  facts.attributes = attributesOf(source, group, NC_GLOBAL);
  facts.title = textOf(facts.attributes, "title");
  const std::vector<int> unlimited = unlimitedDimensions(source, group);
  int count = 0;
  source.require(nc_inq_varids(group, &count, nullptr), "group '" + path + "'");
  std::vector<int> ids(static_cast<std::size_t>(count));
  source.require(nc_inq_varids(group, &count, ids.data()), "group '" + path + "'");
  for (const int id : ids) {
    facts.variables.push_back(variableFacts(source, path, group, id, unlimited));
  }
  markSkipped(path, skipped, facts.variables);
  return facts;
}

}  // namespace quillon::netcdf
