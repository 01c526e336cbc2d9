#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/Selection.h>
#include <quillon/memory/Wording.h>

#include <map>
#include <stdexcept>

namespace quillon::memory {

Selection::Selection(object_model::Dictionary& group, const std::vector<std::string>& names)
    : m_group(group) {
  std::map<std::string, std::vector<std::string>> parts;
  for (const std::string& name : names) {
    const std::size_t slash = name.find('/');
    if (slash == std::string::npos) {
      m_entries.emplace(name, group.data(name));
    } else if (slash + 1 < name.size()) {
      parts[name.substr(0, slash)].push_back(name.substr(slash + 1));
    } else {
      parts[name.substr(0, slash)];
    }
  }
  for (const auto& [name, inner] : parts) {
    addPart(name, inner);
  }
  for (int i = 0; static_cast<unsigned long>(i) < group.getNumOfData(); ++i) {
    std::string name = group.getDataName(i);
    if (m_entries.count(name) != 0) {
      m_names.push_back(std::move(name));
    }
  }
}

/// A dictionary that is chosen whole stays whole.
void Selection::addPart(const std::string& name, const std::vector<std::string>& names) {
  if (m_entries.count(name) != 0) {
    return;
  }
  object_model::Dictionary* const whole = m_group.data(name)->asDictionary();
  if (whole == nullptr) {
    throw std::out_of_range("The entry " + inQuotes(name) + " is no dictionary to choose from");
  }
  m_parts.push_back(std::make_unique<Selection>(*whole, names));
  m_entries.emplace(name, m_parts.back().get());
}

const object_model::DataInfo* Selection::getInformation() const { return m_group.getInformation(); }

const object_model::Data* Selection::parent() const {
  return static_cast<const object_model::Dictionary&>(m_group).parent();
}

object_model::Data* Selection::parent() { return m_group.parent(); }

void Selection::setParent(object_model::Data* /*parent*/) {
  throw InvalidCall("A selection stands in no container");
}

bool Selection::isDynamicDictionary() const { return false; }

object_model::DynamicDictionary* Selection::asDynamicDictionary() { return nullptr; }

const object_model::DynamicDictionary* Selection::asDynamicDictionary() const { return nullptr; }

unsigned long Selection::getNumOfData() const { return m_names.size(); }

void Selection::reservedDictionary0() const {}  // never run: holds a place, never called

void Selection::reservedDictionary1() const {}  // never run: holds a place, never called

std::string Selection::getDataName(int index) const {
  return m_names.at(static_cast<std::size_t>(index));
}

object_model::Data* Selection::data(const std::string& name) { return entry(name); }

const object_model::Data* Selection::data(const std::string& name) const { return entry(name); }

object_model::Data* Selection::entry(const std::string& name) const {
  const auto found = m_entries.find(name);
  if (found == m_entries.end()) {
    throw std::out_of_range("The selection has no entry " + inQuotes(name));
  }
  return found->second;
}

std::vector<Attribute> Selection::attributes() const {
  const auto* group = dynamic_cast<const HasAttributes*>(&m_group);
  return group == nullptr ? std::vector<Attribute>() : group->attributes();
}

}  // namespace quillon::memory
