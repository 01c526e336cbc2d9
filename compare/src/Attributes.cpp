#include "Attributes.h"

#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/TimeUnits.h>

#include <algorithm>
#include <type_traits>

#include "Numbers.h"

namespace quillon::compare {
namespace {

using memory::Attribute;
using memory::AttributeValue;

std::vector<Attribute> attributesOf(const object_model::Data& data) {
  const auto* const owner = dynamic_cast<const memory::HasAttributes*>(&data);
  std::vector<Attribute> attributes =
      owner == nullptr ? std::vector<Attribute>() : owner->attributes();
  const std::string name = data.isDictionary() ? "title" : "long_name";
  const std::string description = data.getDescription();
  const auto has = [&](const std::string& wanted) {
    return std::any_of(attributes.begin(), attributes.end(),
                       [&](const Attribute& some) { return some.name == wanted; });
  };
  if (!description.empty() && !has(name)) {
    attributes.insert(attributes.begin(), Attribute{name, description});
  }
  // Times without a word on their calendar are those of the standard one.
  const auto* const times = dynamic_cast<const memory::HasTimes*>(&data);
  if (times != nullptr && times->calendar() != memory::Calendar::Standard && !has("calendar")) {
    attributes.push_back({"calendar", memory::nameOf(times->calendar())});
  }
  return attributes;
}

/// One text alone is as good as a list of it.
AttributeValue unwrapped(const AttributeValue& value) {
  const auto* const texts = std::get_if<std::vector<std::string>>(&value);
  return texts != nullptr && texts->size() == 1 ? AttributeValue(texts->front()) : value;
}

/// Whether two texts, or two lists, have the same elements.
template <class T>
bool areSameValues(const T& a, const T& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
    return x == y || (isMissing(x) && isMissing(y));
  });
}

bool areSame(const AttributeValue& a, const AttributeValue& b) {
  return a.index() == b.index() && std::visit(
                                       [&](const auto& content) {
                                         using Content = std::decay_t<decltype(content)>;
                                         return areSameValues(content, std::get<Content>(b));
                                       },
                                       a);
}

template <class T>
std::string elementText(const T& element) {
  if constexpr (std::is_same_v<T, std::string>) {
    return element;
  } else {
    return memory::shortestText(element);
  }
}

template <class T>
std::string listText(const std::vector<T>& elements) {
  std::string text;
  for (std::size_t k = 0; k < elements.size(); ++k) {
    text += (k == 0 ? "" : ", ") + elementText(elements[k]);
  }
  return text;
}
std::string listText(const std::string& text) { return text; }

/// The value as text, its type behind it where `isTyped`.
std::string attributeText(const AttributeValue& value, bool isTyped) {
  return std::visit(
      [&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        const std::string text = listText(content);
        if constexpr (std::is_same_v<Content, std::string>) {
          return isTyped ? text + " (text)" : text;
        } else if constexpr (std::is_same_v<Content, std::vector<std::string>>) {
          return isTyped ? text + " (texts)" : text;
        } else {
          using Number = typename Content::value_type;
          return isTyped ? text + " (" + memory::StoredTraits<Number>::NAME + ")" : text;
        }
      },
      value);
}

AttributeDifference differenceOf(const std::string& name, const AttributeValue& first,
                                 const AttributeValue& second) {
  const bool isTyped = attributeText(first, false) == attributeText(second, false);
  return {name, attributeText(first, isTyped), attributeText(second, isTyped)};
}

std::vector<Attribute>::const_iterator find(const std::vector<Attribute>& attributes,
                                            const std::string& name) {
  return std::find_if(attributes.begin(), attributes.end(),
                      [&](const Attribute& some) { return some.name == name; });
}

}  // namespace

std::vector<AttributeDifference> attributeDifferences(const object_model::Data& first,
                                                      const object_model::Data& second) {
  const std::vector<Attribute> left = attributesOf(first);
  const std::vector<Attribute> right = attributesOf(second);
  std::vector<AttributeDifference> differences;
  for (const Attribute& some : left) {
    const auto other = find(right, some.name);
    if (other == right.end()) {
      differences.push_back({some.name, attributeText(some.value, false), {}});
    } else if (!areSame(unwrapped(some.value), unwrapped(other->value))) {
      differences.push_back(differenceOf(some.name, some.value, other->value));
    }
  }
  for (const Attribute& some : right) {
    if (find(left, some.name) == left.end()) {
      differences.push_back({some.name, {}, attributeText(some.value, false)});
    }
  }
  return differences;
}

}  // namespace quillon::compare
