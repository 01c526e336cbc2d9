#include "ArrayMaker.h"

#include <netcdf.h>
#include <quillon/memory/Bounded.h>

#include <algorithm>
#include <array>

#include "Attributes.h"
#include "AxisKind.h"
#include "Filters.h"
#include "FlagArray.h"
#include "Hdf5Texts.h"
#include "NumericArray.h"
#include "TextArray.h"

namespace quillon::netcdf {
namespace {

using memory::ArrayBase;
using memory::Attribute;
using memory::Axis;

using Name = std::array<char, NC_MAX_NAME + 1>;

bool isCountable(const Variable& variable, const std::vector<unsigned long>& stored) {
  unsigned long bytes = std::max(variable.valueBytes, 1UL);  // a string's are not known
  for (const unsigned long extent : stored) {
    bytes = memory::boundedProduct(bytes, extent);
  }
  return bytes < memory::LARGEST_SIZE;
}

std::vector<unsigned long> chunksOf(const Variable& variable) {
  int storage = NC_CONTIGUOUS;
  std::vector<std::size_t> chunks(variable.shape.size());
  const int status = nc_inq_var_chunking(variable.group, variable.id, &storage, chunks.data());
  if (status != NC_NOERR || storage != NC_CHUNKED ||
      // never true: libhdf5 opens nothing with chunks of no length
      std::find(chunks.begin(), chunks.end(), 0) != chunks.end()) {
    return {};
  }
  return {chunks.rbegin(), chunks.rend()};
}

std::vector<int> dimensionsOf(const Variable& variable, int rank) {
  std::vector<int> dimensions(static_cast<std::size_t>(rank));
  variable.source->require(nc_inq_vardimid(variable.group, variable.id, dimensions.data()),
                           variable.subject());
  std::reverse(dimensions.begin(), dimensions.end());
  return dimensions;
}

StoredForm unreadable(const std::string& reason) {
  StoredForm form;  // of the type NC_NAT
  form.unreadable = reason;
  return form;
}

/// Corrects what libnetcdf says of values that it calls strings or does not know by what libhdf5
/// knows: see TextType.
void correctText(const Variable& variable, StoredForm& form) {
  const TextType text = textTypeOf(variable);
  if (text.kind != TextType::Kind::None) {
    form.base = NC_STRING;
    form.bytes = text.bytes;
    form.isFixedText = text.kind == TextType::Kind::Fixed;
    // never false: libhdf5 has the type of whatever libnetcdf calls a string
  } else if (form.base == NC_STRING && !text.description.empty()) {
    form = unreadable(text.description);
  }
}

void correctForm(const Variable& variable, StoredForm& form) {
  if (form.base == NC_STRING || form.base == NC_NAT) {
    correctText(variable, form);
  }
  const std::string filter = missingFilter(variable);
  if (!filter.empty()) {
    form = unreadable(filter);
  }
}

std::unique_ptr<ArrayBase> arrayOf(const StoredForm& form, const Encoding& encoding,
                                   Variable variable, const std::string& name,
                                   std::vector<Axis> axes, const std::string& description) {
  if (form.base == NC_STRING) {
    return std::make_unique<TextArray>(
        form.isFixedText ? TextArray::Storage::FixedTexts : TextArray::Storage::Strings,
        std::move(variable), name, std::move(axes), description);
  }
  if (form.base == NC_CHAR) {
    if (!axes.empty()) {
      axes.erase(axes.begin());
    }
    return std::make_unique<TextArray>(TextArray::Storage::Characters, std::move(variable), name,
                                       std::move(axes), description);
  }
  if (encoding.isBoolean) {
    return makeFlagArray(std::move(variable), name, std::move(axes), description);
  }
  if (encoding.hasNames) {
    return makeNameArray(form.members, encoding, std::move(variable), name, std::move(axes),
                         description);
  }
  return makeNumericArray(encoding, std::move(variable), name, std::move(axes), description);
}

std::vector<std::string> boundsOf(const Source& source, const VariableId& coordinate) {
  return {textAttribute(source, coordinate.group, coordinate.variable, "bounds"),
          textAttribute(source, coordinate.group, coordinate.variable, "climatology")};
}

bool isOneText(const Attribute& attribute) {
  return std::holds_alternative<std::string>(attribute.value);
}

/// Takes away what the array tells by itself.
void removeTold(const std::vector<std::string>& consumed, std::vector<Attribute>& attributes) {
  const auto isTold = [&consumed](const Attribute& attribute) {
    const bool isConsumed =
        std::find(consumed.begin(), consumed.end(), attribute.name) != consumed.end();
    return isConsumed ||
           (isOneText(attribute) && (attribute.name == "units" || attribute.name == "long_name"));
  };
  attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isTold), attributes.end());
}

}  // namespace

ArrayMaker::ArrayMaker(std::shared_ptr<const Source> source, RangeOf rangeOf)
    : m_source(std::move(source)), m_rangeOf(std::move(rangeOf)) {}

ArrayMaker::Made ArrayMaker::make(const VariableId& id, const std::string& path) const {
  return make(id, path, shared_from_this());
}

ArrayMaker::Made ArrayMaker::make(const VariableId& id, const std::string& path,
                                  std::shared_ptr<const ArrayMaker> maker) const {
  Name name{};
  nc_type type = NC_NAT;
  int rank = 0;
  m_source->require(nc_inq_var(id.group, id.variable, name.data(), &type, &rank, nullptr, nullptr),
                    "a variable in '" + path + "'");
  Variable variable;
  variable.source = m_source;
  variable.group = id.group;
  variable.id = id.variable;
  variable.path = path + name.data();
  variable.maker = std::move(maker);
  StoredForm form = formOf(*m_source, id.group, type, variable.subject());
  correctForm(variable, form);
  if (form.base == NC_NAT) {
    return {nullptr, variable.path, form.unreadable};
  }
  variable.valueBytes = form.bytes;
  variable.dimensions = dimensionsOf(variable, rank);
  std::vector<unsigned long> stored;
  for (const int dimension : variable.dimensions) {
    stored.push_back(axisOf(id.group, dimension).stored);
  }
  if (!isCountable(variable, stored)) {
    return {nullptr, variable.path, "more values than can be counted"};
  }
  std::vector<Axis> axes = outline(variable, form.base == NC_CHAR ? 1 : 0);
  variable.chunks = chunksOf(variable);
  std::vector<Attribute> attributes = attributesOf(*m_source, id.group, id.variable);
  addTimesOfBounds(variable, name.data(), attributes);
  const Encoding encoding = encodingOf(form, attributes, m_source->options());
  const std::string variablePath = variable.path;
  auto array = arrayOf(form, encoding, std::move(variable), name.data(), std::move(axes),
                       textOf(attributes, "long_name"));
  array->setUnit(textOf(attributes, "units"));
  removeTold(encoding.consumed, attributes);
  array->setAttributes(std::move(attributes));
  return {std::move(array), variablePath, {}};
}

const ArrayMaker::KnownAxis& ArrayMaker::axisOf(int group, int dimension) const {
  const auto known = m_axes.find({group, dimension});
  if (known != m_axes.end()) {
    return known->second;
  }
  Name name{};
  std::size_t size = 0;
  m_source->require(nc_inq_dim(group, dimension, name.data(), &size), "a dimension");
  const std::optional<VariableId> coordinate = findAlong(group, dimension, name.data());
  const Range all{0, static_cast<long>(size), 1};
  const Range range = m_rangeOf ? m_rangeOf(name.data(), size) : all;
  const Axis axis(name.data(), static_cast<unsigned long>(range.count),
                  axisKindOf(*m_source, coordinate, name.data()));
  KnownAxis made{axis, size, range, coordinate, {}};
  if (coordinate && m_source->options().decode) {
    made.bounds = boundsOf(*m_source, *coordinate);
  }
  return m_axes.emplace(std::pair(group, dimension), std::move(made)).first->second;
}

std::vector<Axis> ArrayMaker::outline(Variable& variable, std::size_t fixed) const {
  std::vector<Axis> axes;
  for (std::size_t k = 0; k < variable.dimensions.size(); ++k) {
    const KnownAxis& known = axisOf(variable.group, variable.dimensions[k]);
    const Range all{0, static_cast<long>(known.stored), 1};
    variable.ranges.push_back(k < fixed ? all : known.range);
    variable.shape.push_back(static_cast<unsigned long>(variable.ranges.back().count));
    axes.emplace_back(known.axis.getAxisName(), variable.shape.back(), known.axis.getAxisType());
  }
  if (!m_rangeOf) {
    variable.ranges.clear();
  }
  return axes;
}

// Bounds have the units and the calendar of what they bound where they say nothing else; of
// interest here are times.
void ArrayMaker::addTimesOfBounds(const Variable& variable, const std::string& name,
                                  std::vector<Attribute>& attributes) const {
  const auto has = [&attributes](const char* attribute) {
    return findAttribute(attributes, attribute) != nullptr;
  };
  if (variable.dimensions.size() < 2 || (has("units") && !timeUnitsOf(attributes))) {
    return;
  }
  for (const int dimension : variable.dimensions) {
    const KnownAxis& axis = axisOf(variable.group, dimension);
    if (std::find(axis.bounds.begin(), axis.bounds.end(), name) == axis.bounds.end()) {
      continue;
    }
    const std::vector<Attribute> its =
        attributesOf(*m_source, axis.coordinate->group, axis.coordinate->variable);
    if (timeUnitsOf(its)) {
      for (const char* attribute : {"units", "calendar"}) {
        if (!has(attribute)) {
          attributes.push_back({attribute, textOf(its, attribute)});
        }
      }
      return;
    }
  }
}

std::shared_ptr<const object_model::Array> ArrayMaker::coordinates(const Variable& variable,
                                                                   std::size_t k) const {
  const int dimension = variable.dimensions.at(k);
  std::optional<VariableId> found = axisOf(variable.group, dimension).coordinate;
  if (!found) {
    found = findListedAlong(variable.group, dimension,
                            textAttribute(*m_source, variable.group, variable.id, "coordinates"));
  }
  if (!found) {
    return nullptr;
  }
  const auto known = m_coordinates.find(*found);
  if (known != m_coordinates.end()) {
    return known->second;
  }
  std::size_t length = 0;
  m_source->require(nc_inq_grpname_full(found->group, &length, nullptr), variable.subject());
  std::string path(length, '\0');
  m_source->require(nc_inq_grpname_full(found->group, nullptr, path.data()), variable.subject());
  path += path == "/" ? "" : "/";
  return m_coordinates.emplace(*found, make(*found, path, nullptr).array).first->second;
}

}  // namespace quillon::netcdf
