#include <quillon/memory/AttributeList.h>

#include <algorithm>
#include <utility>

namespace quillon::memory {
namespace {

auto find(std::vector<Attribute>& attributes, const std::string& name) {
  return std::find_if(attributes.begin(), attributes.end(),
                      [&name](const Attribute& attribute) { return attribute.name == name; });
}

}  // namespace

AttributeList::AttributeList() = default;

AttributeList::AttributeList(const AttributeList& other)
    : HasAttributes(other),
      m_attributes(other.m_attributes == nullptr
                       ? nullptr
                       : std::make_unique<std::vector<Attribute>>(*other.m_attributes)) {}

AttributeList::AttributeList(AttributeList&& other) noexcept = default;

AttributeList& AttributeList::operator=(const AttributeList& other) {
  return *this = AttributeList(other);
}

AttributeList& AttributeList::operator=(AttributeList&& other) noexcept = default;

AttributeList::~AttributeList() = default;

std::vector<Attribute> AttributeList::attributes() const {
  return m_attributes == nullptr ? std::vector<Attribute>() : *m_attributes;
}

void AttributeList::setAttribute(std::string name, AttributeValue value) {
  if (m_attributes == nullptr) {
    m_attributes = std::make_unique<std::vector<Attribute>>();
  }
  const auto found = find(*m_attributes, name);
  if (found != m_attributes->end()) {
    found->value = std::move(value);
  } else {
    m_attributes->push_back({std::move(name), std::move(value)});
  }
}

void AttributeList::setAttributes(std::vector<Attribute> attributes) {
  m_attributes = attributes.empty()
                     ? nullptr
                     : std::make_unique<std::vector<Attribute>>(std::move(attributes));
}

bool AttributeList::removeAttribute(const std::string& name) {
  if (m_attributes == nullptr) {
    return false;
  }
  const auto found = find(*m_attributes, name);
  const bool isThere = found != m_attributes->end();
  if (isThere) {
    m_attributes->erase(found);
  }
  return isThere;
}

}  // namespace quillon::memory
