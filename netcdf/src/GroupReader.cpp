#include "GroupReader.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "Attributes.h"
#include "AxisKind.h"
#include "Bounded.h"
#include "Filters.h"
#include "Hdf5Texts.h"
#include "NumericArray.h"
#include "TextArray.h"

namespace quillon::netcdf {
namespace {

using memory::ArrayBase;
using memory::Axis;
using memory::Dictionary;

using Name = std::array<char, NC_MAX_NAME + 1>;

struct Type {
  nc_type base = NC_NAT;  // of its values; NC_NAT for one that has no place in the model
  std::string name;       // of such a type
  std::size_t bytes = 0;  // of one value
  bool isFixedText = false;
};

Type userType(const Source& source, int group, nc_type id, const std::string& subject) {
  Name name{};
  Type type;
  int kind = 0;
  source.require(nc_inq_user_type(group, id, name.data(), &type.bytes, &type.base, nullptr, &kind),
                 subject);
  if (kind == NC_ENUM) {
    return type;
  }
  const std::string what = kind == NC_COMPOUND ? "compound"
                           : kind == NC_VLEN   ? "variable-length"
                           : kind == NC_OPAQUE ? "opaque"
                                               : "unknown";
  type.base = NC_NAT;
  type.name = what + " type '" + name.data() + "'";
  return type;
}

Type typeOf(const Source& source, int group, nc_type id, const std::string& subject) {
  if (id > NC_MAX_ATOMIC_TYPE) {
    return userType(source, group, id, subject);
  }
  Type type{id, {}, 0};
  source.require(nc_inq_type(group, id, nullptr, &type.bytes), subject);
  return type;
}

/// Corrects what libnetcdf says of a type by what libhdf5 knows: see TextType.
void correctText(const Variable& variable, Type& type) {
  const TextType text = textTypeOf(variable);
  if (text.kind != TextType::Kind::None) {
    type = {NC_STRING, {}, text.bytes, text.kind == TextType::Kind::Fixed};
  } else if (type.base == NC_STRING && !text.description.empty()) {
    type = {NC_NAT, text.description, 0};
  }
}

void correctType(const Variable& variable, Type& type) {
  if (type.base == NC_STRING || type.base == NC_NAT) {
    correctText(variable, type);
  }
  const std::string filter = missingFilter(variable);
  if (!filter.empty()) {
    type = {NC_NAT, filter, 0};
  }
}

void requireCountable(const Variable& variable) {
  unsigned long bytes = variable.valueBytes;
  for (const unsigned long extent : variable.shape) {
    if (extent == 0) {
      return;
    }
    bytes = boundedProduct(bytes, extent);
  }
  if (bytes == std::numeric_limits<unsigned long>::max()) {
    variable.source->fail(variable.subject() + " claims more values than can be counted");
  }
}

std::vector<unsigned long> chunksOf(const Variable& variable) {
  int storage = NC_CONTIGUOUS;
  std::vector<std::size_t> chunks(variable.shape.size());
  const int status = nc_inq_var_chunking(variable.group, variable.id, &storage, chunks.data());
  if (status != NC_NOERR || storage != NC_CHUNKED ||
      std::find(chunks.begin(), chunks.end(), 0) != chunks.end()) {
    return {};
  }
  return {chunks.rbegin(), chunks.rend()};
}

std::unique_ptr<ArrayBase> arrayOf(const Type& type, Variable variable, const std::string& name,
                                   std::vector<Axis> axes) {
  const std::string description =
      textAttribute(*variable.source, variable.group, variable.id, "long_name");
  if (type.base == NC_STRING) {
    return std::make_unique<TextArray>(
        type.isFixedText ? TextArray::Storage::FixedTexts : TextArray::Storage::Strings,
        std::move(variable), name, std::move(axes), description);
  }
  if (type.base == NC_CHAR) {
    if (!axes.empty()) {
      axes.erase(axes.begin());
    }
    return std::make_unique<TextArray>(TextArray::Storage::Characters, std::move(variable), name,
                                       std::move(axes), description);
  }
  return makeNumericArray(type.base, std::move(variable), name, std::move(axes), description);
}

}  // namespace

GroupReader::GroupReader(std::shared_ptr<const Source> source, std::vector<Skipped>& skipped,
                         Extents extents)
    : m_source(std::move(source)), m_skipped(skipped), m_extents(std::move(extents)) {}

Dictionary GroupReader::read(int group, const std::string& name, const std::string& path) {
  Dictionary dictionary(name, textAttribute(*m_source, group, NC_GLOBAL, "title"));
  addVariables(group, path, dictionary);
  addGroups(group, path, dictionary);
  return dictionary;
}

void GroupReader::addVariables(int group, const std::string& path, Dictionary& to) {
  int count = 0;
  m_source->require(nc_inq_varids(group, &count, nullptr), "group '" + path + "'");
  std::vector<int> ids(static_cast<std::size_t>(count));
  m_source->require(nc_inq_varids(group, &count, ids.data()), "group '" + path + "'");
  for (const int id : ids) {
    if (auto array = makeArray(group, id, path)) {
      requireFree(to, path, array->getName());
      to.add(std::move(array));
    }
  }
}

void GroupReader::addGroups(int group, const std::string& path, Dictionary& to) {
  int count = 0;
  m_source->require(nc_inq_grps(group, &count, nullptr), "group '" + path + "'");
  std::vector<int> ids(static_cast<std::size_t>(count));
  m_source->require(nc_inq_grps(group, &count, ids.data()), "group '" + path + "'");
  for (const int id : ids) {
    Name name{};
    m_source->require(nc_inq_grpname(id, name.data()), "a group in '" + path + "'");
    requireFree(to, path, name.data());
    to.add(read(id, name.data(), path + name.data() + "/"));
  }
}

std::unique_ptr<object_model::Data> GroupReader::makeArray(int group, int id,
                                                           const std::string& path) {
  Name name{};
  nc_type typeId = NC_NAT;
  int rank = 0;
  m_source->require(nc_inq_var(group, id, name.data(), &typeId, &rank, nullptr, nullptr),
                    "a variable in '" + path + "'");
  Variable variable{m_source, group, id, path + name.data(), 0, {}, {}};
  Type type = typeOf(*m_source, group, typeId, variable.subject());
  correctType(variable, type);
  std::vector<Axis> axes = readAxes(variable, rank);
  if (type.base == NC_NAT) {
    m_skipped.push_back({variable.path, type.name});
    return nullptr;
  }
  variable.valueBytes = type.bytes;
  requireCountable(variable);
  cut(variable, axes, type.base == NC_CHAR ? 1 : 0);
  variable.chunks = chunksOf(variable);
  auto array = arrayOf(type, std::move(variable), name.data(), std::move(axes));
  array->setUnit(textAttribute(*m_source, group, id, "units"));
  return array;
}

const Axis& GroupReader::axisOf(const Variable& variable, int dimension) {
  const auto known = m_axes.find({variable.group, dimension});
  if (known != m_axes.end()) {
    return known->second;
  }
  Name name{};
  std::size_t extent = 0;
  m_source->require(nc_inq_dim(variable.group, dimension, name.data(), &extent),
                    variable.subject());
  const Axis axis(name.data(), extent,
                  axisKindOf(*m_source, variable.group, dimension, name.data()));
  return m_axes.emplace(std::pair(variable.group, dimension), axis).first->second;
}

std::vector<Axis> GroupReader::readAxes(Variable& variable, int rank) {
  std::vector<int> dimensions(static_cast<std::size_t>(rank));
  m_source->require(nc_inq_vardimid(variable.group, variable.id, dimensions.data()),
                    variable.subject());
  std::vector<Axis> axes;
  for (auto dimension = dimensions.rbegin(); dimension != dimensions.rend(); ++dimension) {
    axes.push_back(axisOf(variable, *dimension));
    variable.shape.push_back(axes.back().size());
  }
  return axes;
}

void GroupReader::cut(Variable& variable, std::vector<Axis>& axes, std::size_t firstAxis) const {
  for (std::size_t k = firstAxis; k < axes.size(); ++k) {
    const auto extent = m_extents.find(axes[k].getAxisName());
    if (extent != m_extents.end() && extent->second < axes[k].size()) {
      axes[k] = Axis(axes[k].getAxisName(), extent->second, axes[k].getAxisType());
      variable.shape[k] = extent->second;
    }
  }
}

void GroupReader::requireFree(const Dictionary& dictionary, const std::string& path,
                              const std::string& name) const {
  if (dictionary.contains(name)) {
    m_source->fail("group '" + path + "' has two entries called '" + name + "'");
  }
}

}  // namespace quillon::netcdf
