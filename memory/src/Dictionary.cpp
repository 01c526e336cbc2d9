#include <quillon/memory/Dictionary.h>

#include <stdexcept>
#include <utility>

namespace quillon::memory {

using object_model::Data;

Dictionary::Dictionary(std::string name, std::string description)
    : m_descriptor(std::move(name), std::move(description)) {}

Dictionary::Dictionary(Dictionary&& other) noexcept
    : object_model::Dictionary(),
      m_descriptor(std::move(other.m_descriptor)),
      m_entries(std::exchange(other.m_entries, {})),
      m_positions(std::exchange(other.m_positions, {})) {
  for (const auto& entry : m_entries) {
    entry->setParent(this);
  }
}

// It refuses what would make a dictionary that cannot be searched or destroyed.
// NOLINTNEXTLINE(bugprone-exception-escape,performance-noexcept-move-constructor)
Dictionary& Dictionary::operator=(Dictionary&& other) {
  if (&other == this) {
    return *this;
  }
  const bool isEntry = m_parent != nullptr && m_parent->isDictionary();
  if (isEntry && other.getName() != getName()) {
    throw std::invalid_argument("Dictionary '" + getName() +
                                "' is an entry and cannot take the name '" + other.getName() + "'");
  }
  requireOutside(other);
  // The entries from before go last: `other` may be one of them.
  Dictionary taken(std::move(other));
  std::swap(m_descriptor, taken.m_descriptor);
  std::swap(m_entries, taken.m_entries);
  std::swap(m_positions, taken.m_positions);
  for (const auto& entry : m_entries) {
    entry->setParent(this);
  }
  return *this;
}

Dictionary::~Dictionary() = default;

Data& Dictionary::add(std::unique_ptr<Data>&& entry) {
  if (entry == nullptr) {
    throw std::invalid_argument("Dictionary '" + getName() + "' was given no entry to add");
  }
  requireAddable(*entry);
  // Both places are made before the entry moves: either may run out of memory.
  m_entries.emplace_back();
  try {
    m_positions.emplace(entry->getName(), m_entries.size() - 1);
  } catch (...) {
    m_entries.pop_back();
    throw;
  }
  m_entries.back() = std::move(entry);
  m_entries.back()->setParent(this);
  return *m_entries.back();
}

bool Dictionary::contains(const std::string& name) const { return m_positions.count(name) > 0; }

const DictionaryDescriptor* Dictionary::getInformation() const { return &m_descriptor; }
const Data* Dictionary::parent() const { return m_parent; }
Data* Dictionary::parent() { return m_parent; }
void Dictionary::setParent(Data* parent) { m_parent = parent; }
bool Dictionary::isDynamicDictionary() const { return false; }
object_model::DynamicDictionary* Dictionary::asDynamicDictionary() { return nullptr; }
const object_model::DynamicDictionary* Dictionary::asDynamicDictionary() const { return nullptr; }
unsigned long Dictionary::getNumOfData() const { return m_entries.size(); }
void Dictionary::reservedDictionary0() const {}
void Dictionary::reservedDictionary1() const {}

std::string Dictionary::getDataName(int index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= m_entries.size()) {
    throw std::out_of_range("Dictionary '" + getName() + "' has " +
                            std::to_string(m_entries.size()) +
                            " entries; there is none at position " + std::to_string(index));
  }
  return m_entries[static_cast<std::size_t>(index)]->getName();
}

Data* Dictionary::data(const std::string& name) { return m_entries[positionOf(name)].get(); }

const Data* Dictionary::data(const std::string& name) const {
  return m_entries[positionOf(name)].get();
}

void Dictionary::requireAddable(const Data& entry) const {
  requireOutside(entry);
  const std::string name = entry.getName();
  if (contains(name)) {
    throw std::invalid_argument("Dictionary '" + getName() + "' already has an entry '" + name +
                                "'");
  }
}

// A dictionary that owned itself would never be destroyed.
void Dictionary::requireOutside(const Data& container) const {
  for (const Data* ancestor = this; ancestor != nullptr; ancestor = ancestor->parent()) {
    if (ancestor == &container) {
      throw std::invalid_argument("Dictionary '" + container.getName() +
                                  "' cannot be put inside itself");
    }
  }
}

std::size_t Dictionary::positionOf(const std::string& name) const {
  const auto found = m_positions.find(name);
  if (found == m_positions.end()) {
    throw std::out_of_range("Dictionary '" + getName() + "' has no entry '" + name + "'");
  }
  return found->second;
}

}  // namespace quillon::memory
