#include "SharedDictionary.h"

#include <quillon/memory/Wording.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Errors.h"

namespace quillon::python {

using object_model::Data;

Data& Entry::data() const {
  if (array != nullptr) {
    return *array;
  }
  return *dictionary;
}

SharedDictionary::SharedDictionary(const std::string& name, const std::string& description)
    : DictionaryBase(name, description) {}

SharedDictionary::~SharedDictionary() {
  for (const auto& [name, entry] : m_entries) {
    entry.data().setParent(nullptr);
  }
}

std::string SharedDictionary::getDataName(int index) const {
  return m_names.at(static_cast<std::size_t>(index));
}

Data* SharedDictionary::data(const std::string& name) { return &at(name).data(); }
const Data* SharedDictionary::data(const std::string& name) const { return &at(name).data(); }

void SharedDictionary::set(const Entry& entry) {
  const std::string name = entry.data().getName();
  const auto known = m_entries.find(name);
  if (known == m_entries.end()) {
    m_names.reserve(m_names.size() + 1);
    m_entries.emplace(name, entry);
    m_names.push_back(name);
  } else {
    known->second.data().setParent(nullptr);
    known->second = entry;
  }
  entry.data().setParent(this);
}

void SharedDictionary::remove(const std::string& name) {
  at(name).data().setParent(nullptr);
  m_entries.erase(name);
  m_names.erase(std::find(m_names.begin(), m_names.end(), name));
  coordinates.erase(name);
}

const Entry& SharedDictionary::at(const std::string& name) const {
  const auto known = m_entries.find(name);
  if (known == m_entries.end()) {
    throw NoEntry("there is no entry " + memory::inQuotes(name));
  }
  return known->second;
}

std::shared_ptr<SharedDictionary> copyOf(const SharedDictionary& dictionary,
                                         const std::string& name) {
  auto copy = std::make_shared<SharedDictionary>(name, dictionary.getDescription());
  for (const memory::Attribute& attribute : dictionary.attributes()) {
    copy->setAttribute(attribute.name, attribute.value);
  }
  copy->coordinates = dictionary.coordinates;
  for (const std::string& entryName : dictionary.names()) {
    const Entry& entry = dictionary.at(entryName);
    if (entry.array != nullptr) {
      copy->set({siblingOf(entry.array, entryName), entry.source, nullptr});
    } else {
      copy->set({nullptr, nullptr, copyOf(*entry.dictionary, entryName)});
    }
  }
  return copy;
}

unsigned long depthOf(const SharedDictionary& dictionary) {
  unsigned long depth = 0;
  for (const Data* container = dictionary.parent(); container != nullptr;
       container = container->parent()) {
    ++depth;
  }
  return depth;
}

unsigned long heightOf(const SharedDictionary& dictionary) {
  unsigned long height = 0;
  for (const std::string& name : dictionary.names()) {
    const Entry& entry = dictionary.at(name);
    if (entry.dictionary != nullptr) {
      height = std::max(height, heightOf(*entry.dictionary));
    }
  }
  return height + 1;
}

}  // namespace quillon::python
