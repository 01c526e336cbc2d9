#include "Attributes.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "Padding.h"

namespace quillon::netcdf {
namespace {

using memory::Attribute;
using memory::AttributeValue;

/// An attribute as the library knows it.
struct Place {
  const Source& source;
  int group;
  int variable;
  const char* name;
  nc_type type = NC_NAT;
  std::size_t length = 0;

  void require(int status) const {
    source.require(status, std::string("attribute '") + name + "'");
  }
};

Place placeOf(const Source& source, int group, int variable, const char* name) {
  Place place{source, group, variable, name};
  const int status = nc_inq_att(group, variable, name, &place.type, &place.length);
  if (status != NC_ENOTATT) {
    place.require(status);
  }
  return place;
}

std::vector<std::string> strings(const Place& place) {
  std::vector<char*> texts(place.length, nullptr);
  place.require(nc_get_att_string(place.group, place.variable, place.name, texts.data()));
  std::vector<std::string> copies;
  copies.reserve(place.length);
  for (const char* text : texts) {
    copies.emplace_back(text == nullptr ? "" : text);
  }
  nc_free_string(texts.size(), texts.data());
  return copies;
}

AttributeValue oneOrSeveral(std::vector<std::string> texts) {
  return texts.size() == 1 ? AttributeValue(texts.front()) : AttributeValue(std::move(texts));
}

std::string characters(const Place& place) {
  std::string text(place.length, '\0');
  place.require(nc_get_att_text(place.group, place.variable, place.name, text.data()));
  cutPadding(text);
  return text;
}

template <class Number>
AttributeValue numbers(const Place& place) {
  std::vector<Number> values(place.length);
  if (!values.empty()) {
    place.require(nc_get_att(place.group, place.variable, place.name, values.data()));
  }
  return values;
}

/// The type of an enumeration's integers, any other type as it is.
nc_type baseOf(const Place& place) {
  nc_type base = place.type;
  int kind = NC_ENUM;
  if (place.type > NC_MAX_ATOMIC_TYPE) {
    place.require(
        nc_inq_user_type(place.group, place.type, nullptr, nullptr, &base, nullptr, &kind));
  }
  return kind == NC_ENUM ? base : NC_NAT;
}

std::optional<AttributeValue> valueAt(const Place& place) {
  switch (baseOf(place)) {
    case NC_CHAR:
      return characters(place);
    case NC_STRING:
      return oneOrSeveral(strings(place));
    case NC_BYTE:
      return numbers<signed char>(place);
    case NC_SHORT:
      return numbers<short>(place);
    case NC_INT:
      return numbers<int>(place);
    case NC_INT64:
      return numbers<long>(place);
    case NC_UBYTE:
      return numbers<unsigned char>(place);
    case NC_USHORT:
      return numbers<unsigned short>(place);
    case NC_UINT:
      return numbers<unsigned int>(place);
    case NC_UINT64:
      return numbers<unsigned long>(place);
    case NC_FLOAT:
      return numbers<float>(place);
    case NC_DOUBLE:
      return numbers<double>(place);
    default:
      return std::nullopt;
  }
}

std::string firstText(const AttributeValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    return *text;
  }
  const auto* texts = std::get_if<std::vector<std::string>>(&value);
  return texts == nullptr || texts->empty() ? std::string() : texts->front();
}

}  // namespace

std::string textAttribute(const Source& source, int group, int variable, const char* name) {
  const Place place = placeOf(source, group, variable, name);
  const bool isText = place.type == NC_CHAR || place.type == NC_STRING;
  return isText ? firstText(*valueAt(place)) : std::string();
}

bool hasAttribute(int group, int variable, const char* name) {
  return nc_inq_attid(group, variable, name, nullptr) == NC_NOERR;
}

std::vector<Attribute> attributesOf(const Source& source, int group, int variable) {
  int count = 0;
  source.require(
      nc_inq_varnatts(group, variable, &count),
      "the attributes of a " + std::string(variable == NC_GLOBAL ? "group" : "variable"));
  std::vector<Attribute> attributes;
  for (int k = 0; k < count; ++k) {
    std::array<char, NC_MAX_NAME + 1> name{};
    source.require(nc_inq_attname(group, variable, k, name.data()), "an attribute");
    if (std::optional<AttributeValue> value =
            valueAt(placeOf(source, group, variable, name.data()))) {
      attributes.push_back({name.data(), std::move(*value)});
    }
  }
  return attributes;
}

const Attribute* findAttribute(const std::vector<Attribute>& attributes, const std::string& name) {
  const auto found =
      std::find_if(attributes.begin(), attributes.end(),
                   [&name](const Attribute& attribute) { return attribute.name == name; });
  return found == attributes.end() ? nullptr : &*found;
}

std::string textOf(const std::vector<Attribute>& attributes, const std::string& name) {
  const Attribute* attribute = findAttribute(attributes, name);
  return attribute == nullptr ? std::string() : firstText(attribute->value);
}

}  // namespace quillon::netcdf
