#include "WriteAttributes.h"

#include <netcdf.h>
#include <quillon/memory/AsciiText.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/TimeUnits.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include "WriteNames.h"
#include "WriteRefusal.h"
#include "WriteTimes.h"
#include "WriteTypes.h"

namespace quillon::netcdf {
namespace {

using memory::Attribute;
using memory::AttributeValue;
using memory::inQuotes;
using object_model::Array;
using object_model::StoredType;

constexpr const char* FILL = "_FillValue";
constexpr const char* CALENDAR = "calendar";
constexpr const char* COORDINATES = "coordinates";

using Attributes = std::vector<Attribute>;

std::string subjectOf(const std::string& name, const std::string& path) {
  return "attribute " + inQuotes(name) + " of " + inQuotes(path);
}

Attributes::iterator find(Attributes& attributes, const std::string& name) {
  return std::find_if(attributes.begin(), attributes.end(),
                      [&](const Attribute& each) { return each.name == name; });
}

bool isSame(const AttributeValue& a, const AttributeValue& b) {
  const auto* const texts = std::get_if<std::vector<std::string>>(&a);
  return a == b || (texts != nullptr && texts->size() == 1 && AttributeValue(texts->front()) == b);
}

/// Takes over the attributes that an object has. They may say the same as those that follow from
/// what the object is, and may choose another missing value or another name of the calendar.
void addOwn(const object_model::Data& data, const std::string& path, Attributes& attributes) {
  const auto* const owner = dynamic_cast<const memory::HasAttributes*>(&data);
  for (Attribute& own : owner == nullptr ? Attributes() : owner->attributes()) {
    requireName(own.name, subjectOf(own.name, path));
    const auto implied = find(attributes, own.name);
    if (implied == attributes.end()) {
      attributes.push_back(std::move(own));
    } else if (own.name == FILL || own.name == CALENDAR) {
      *implied = std::move(own);
    } else if (!isSame(own.value, implied->value)) {
      throw Refusal(subjectOf(own.name, path) + " is not what the file has there for its " +
                    (own.name == "units"   ? "unit"
                     : own.name == "dtype" ? "element type"
                                           : "description"));
    }
  }
}

void addText(const char* name, const std::string& text, Attributes& attributes) {
  if (!text.empty()) {
    attributes.push_back({name, text});
  }
}

std::string unitOf(const Array& array) {
  const std::string unit = array.getUnit();
  return unit.empty() ? array.getPhysicalUnit() : unit;
}

/// Whether the unit has the word, spelled and parted from others as in units that are read as
/// times.
bool saysSinceWhen(const std::string& unit) {
  std::string words = memory::lowerCase(unit);
  std::replace(words.begin(), words.end(), '\t', ' ');
  return words.find(" since ") != std::string::npos;
}

void addTimes(const Array& array, const memory::HasTimes& times, StoredType type,
              const std::string& path, Attributes& attributes) {
  if (!saysSinceWhen(unitOf(array))) {
    throw Refusal(inQuotes(path) + " has times, but its unit " + inQuotes(unitOf(array)) +
                  " does not say since when they count");
  }
  attributes.push_back({CALENDAR, memory::nameOf(times.calendar())});
  if (std::optional<AttributeValue> fill = fillOfTimes(array, times, type, path)) {
    attributes.insert(attributes.begin(), {FILL, std::move(*fill)});
  }
}

void addMissing(StoredType type, Attributes& attributes) {
  if (type == StoredType::Float32) {
    attributes.push_back({FILL, std::vector<float>{std::numeric_limits<float>::quiet_NaN()}});
  } else if (type == StoredType::Float64) {
    attributes.push_back({FILL, std::vector<double>{std::numeric_limits<double>::quiet_NaN()}});
  }
}

/// A missing value is a single value of the variable's type, or the file is none.
void requireFittingFill(Attribute& fill, std::optional<StoredType> type, const std::string& path) {
  if (const auto* const text = std::get_if<std::string>(&fill.value); text != nullptr && !type) {
    fill.value = std::vector<std::string>{*text};
  }
  const bool fits = std::visit(
      [&](const auto& values) {
        using Element = typename std::decay_t<decltype(values)>::value_type;
        // never true, never false: decided when compiled
        const bool isOfType = std::is_same_v<Element, std::string>
                                  ? !type
                                  : NETCDF_TYPE<Element> == netcdfTypeOf(type);
        return isOfType && values.size() == 1;
      },
      fill.value);
  if (!fits) {
    throw Refusal(subjectOf(FILL, path) + " is not a single value of the array's type");
  }
}

void requireNoNull(const std::string& text, const std::string& subject) {
  if (text.find('\0') != std::string::npos) {
    throw Refusal(subject + " has a null character, which ends a text in netCDF files");
  }
}

int putTexts(int group, int variable, const std::string& name,
             const std::vector<std::string>& texts, const std::string& subject) {
  std::vector<const char*> pointers;
  for (const std::string& text : texts) {
    requireNoNull(text, subject);
    pointers.push_back(text.c_str());
  }
  return nc_put_att_string(group, variable, name.c_str(), pointers.size(), pointers.data());
}

int putValue(int group, int variable, const Attribute& attribute, const std::string& subject) {
  const std::string& name = attribute.name;
  return std::visit(
      [&](const auto& values) {
        using Values = std::decay_t<decltype(values)>;
        errno = 0;
        if constexpr (std::is_same_v<Values, std::string>) {
          requireNoNull(values, subject);
          return nc_put_att_text(group, variable, name.c_str(), values.size(), values.data());
        } else if constexpr (std::is_same_v<Values, std::vector<std::string>>) {
          return putTexts(group, variable, name, values, subject);
        } else {
          constexpr nc_type TYPE = NETCDF_TYPE<typename Values::value_type>;
          return nc_put_att(group, variable, name.c_str(), TYPE, values.size(), values.data());
        }
      },
      attribute.value);
}

}  // namespace

Attributes writtenAttributesOf(const Array& array, std::optional<StoredType> type,
                               const std::string& path) {
  Attributes attributes;
  if (type) {
    addMissing(*type, attributes);
  }
  addText("long_name", array.getDescription(), attributes);
  addText("units", unitOf(array), attributes);
  if (const memory::HasTimes* const times = timesOf(array)) {
    addTimes(array, *times, *type, path, attributes);
  }
  if (type == StoredType::Boolean) {
    addText("dtype", "bool", attributes);
  }
  addOwn(array, path, attributes);
  const auto fill = find(attributes, FILL);
  if (fill != attributes.end()) {
    requireFittingFill(*fill, type, path);
  }
  return attributes;
}

Attributes writtenAttributesOf(const object_model::Dictionary& dictionary,
                               const std::string& path) {
  Attributes attributes;
  addText("title", dictionary.getDescription(), attributes);
  addOwn(dictionary, path, attributes);
  return attributes;
}

void listCoordinates(const std::string& name, Attributes& attributes) {
  const auto listed = find(attributes, COORDINATES);
  if (listed == attributes.end()) {
    attributes.push_back({COORDINATES, name});
    return;
  }
  auto* const names = std::get_if<std::string>(&listed->value);
  if (names != nullptr && (" " + *names + " ").find(" " + name + " ") == std::string::npos) {
    *names += " " + name;
  }
}

void putAttribute(int group, int variable, const Attribute& attribute, const std::string& path) {
  const std::string subject = subjectOf(attribute.name, path);
  requireWritten(putValue(group, variable, attribute, subject), subject + " cannot be written");
  std::array<char, NC_MAX_NAME + 1> kept{};
  int number = -1;
  if (nc_inq_attid(group, variable, attribute.name.c_str(), &number) == NC_NOERR &&
      // never false: the attribute has just been found
      nc_inq_attname(group, variable, number, kept.data()) == NC_NOERR) {
    requireKeptName(attribute.name, kept.data(), subject);
  }
}

}  // namespace quillon::netcdf
