#include <quillon/memory/JsonText.h>
#include <quillon/netcdf/Outline.h>

#include <algorithm>
#include <optional>
#include <type_traits>
#include <variant>

#include "FactTexts.h"

namespace quillon::netcdf {
namespace {

using memory::Json;
using memory::jsonNumber;
using memory::jsonText;

template <class T>
std::string elementInJson(const T& element) {
  if constexpr (std::is_same_v<T, std::string>) {
    return jsonText(element);
  } else {
    return jsonNumber(element);
  }
}

template <class T>
std::string listInJson(const std::vector<T>& elements) {
  Json list('[');
  for (const T& element : elements) {
    list.add(elementInJson(element));
  }
  return list.text();
}

/// One value alone is no list.
std::string inJson(const memory::AttributeValue& value) {
  return std::visit(
      [](const auto& content) -> std::string {
        if constexpr (std::is_same_v<std::decay_t<decltype(content)>, std::string>) {
          return jsonText(content);
        } else {
          return content.size() == 1 ? elementInJson(content.front()) : listInJson(content);
        }
      },
      value);
}

std::string inJson(const std::vector<memory::Attribute>& attributes) {
  Json object('{');
  for (const memory::Attribute& attribute : attributes) {
    object.add(attribute.name, inJson(attribute.value));
  }
  return object.text();
}

std::string inJson(const std::optional<double>& number) {
  return number ? jsonNumber(*number) : "null";
}

std::string dimensionsInJson(const std::vector<DimensionFacts>& dimensions) {
  Json object('{');
  for (auto dimension = dimensions.begin(); dimension != dimensions.end(); ++dimension) {
    const bool isKnown =
        std::any_of(dimensions.begin(), dimension,
                    [&](const DimensionFacts& some) { return some.name == dimension->name; });
    if (!isKnown) {
      object.add(dimension->name, std::to_string(dimension->size));
    }
  }
  return object.text();
}

std::vector<unsigned long> shapeOf(const VariableFacts& variable) {
  std::vector<unsigned long> shape;
  for (const DimensionFacts& dimension : variable.dimensions) {
    shape.push_back(dimension.size);
  }
  return shape;
}

std::vector<std::string> unlimitedOf(const VariableFacts& variable) {
  std::vector<std::string> names;
  for (const DimensionFacts& dimension : variable.dimensions) {
    if (dimension.isUnlimited) {
      names.push_back(dimension.name);
    }
  }
  return names;
}

/// What only some variables have.
void addStorage(const VariableFacts& variable, Json& object) {
  if (const auto unlimited = unlimitedOf(variable); !unlimited.empty()) {
    object.add("unlimited", listInJson(unlimited));
  }
  if (variable.packing.scaleFactor || variable.packing.addOffset) {
    object.add("packing", Json('{')
                              .add("scale_factor", inJson(variable.packing.scaleFactor))
                              .add("add_offset", inJson(variable.packing.addOffset))
                              .text());
  }
  if (variable.fill) {
    object.add("fill", inJson(*variable.fill));
  }
  if (!variable.chunks.empty()) {
    object.add("chunks", listInJson(variable.chunks));
  }
  if (const std::string compression = inWords(variable.compression); !compression.empty()) {
    object.add("compression", jsonText(compression));
  }
}

std::string inJson(const VariableFacts& variable) {
  Json object('{');
  object.add("name", jsonText(nameOf(variable)))
      .add("type", jsonText(variable.type))
      .add("dimensions", dimensionsInJson(variable.dimensions))
      .add("shape", listInJson(shapeOf(variable)));
  addStorage(variable, object);
  return object.add("unit", jsonText(variable.unit))
      .add("description", jsonText(variable.description))
      .add("attributes", inJson(variable.attributes))
      .add("readable", variable.isReadable ? "true" : "false")
      .add("reason", variable.isReadable ? "null" : jsonText(variable.reason))
      .text();
}

std::string inJson(const GroupFacts& group) {
  Json variables('[');
  for (const VariableFacts& variable : group.variables) {
    variables.add(inJson(variable));
  }
  return Json('{')
      .add("path", jsonText(group.path))
      .add("title", jsonText(group.title))
      .add("attributes", inJson(group.attributes))
      .add("variables", variables.text())
      .text();
}

}  // namespace

std::string outlineJson(const std::vector<GroupFacts>& groups, const std::string& file) {
  Json list('[');
  for (const GroupFacts& group : groups) {
    list.add(inJson(group));
  }
  return Json('{').add("file", jsonText(file)).add("groups", list.text()).text();
}

}  // namespace quillon::netcdf
