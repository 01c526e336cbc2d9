#include <cxxabi.h>
#include <object_model/Array.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/InvalidCall.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "EntryName.h"

namespace quillon::memory {

using object_model::Data;

namespace {

/// The entry called `name`, or null. `D` is `object_model::Dictionary`, const or not.
template <class D>
auto entryOf(D& group, const std::string& name) -> decltype(group.data(name)) {
  if (const auto* known = dynamic_cast<const Dictionary*>(&group)) {
    return known->contains(name) ? group.data(name) : nullptr;
  }
  for (const auto& entry : entriesOf(group)) {
    if (entry.name == name) {
      return entry.data;
    }
  }
  return nullptr;
}

/// Walks down from a dictionary along a path of names; see `Dictionary::at`.
template <class D>
class Walk {
 public:
  Walk(D& start, const std::string& path) : m_start(start), m_path(path), m_group(&start) {}

  auto& end() {
    for (;;) {
      const std::string rest = m_path.substr(m_done);
      if (auto* const entry = entryOf(*m_group, rest)) {
        return *entry;
      }
      const std::size_t slash = rest.find('/');
      if (slash == std::string::npos) {
        reject(rest);
      }
      if (slash > 0 || m_group != &m_start) {
        enter(rest.substr(0, slash));
      }
      m_done += slash + 1;
    }
  }

 private:
  void enter(const std::string& name) {
    auto* const entry = entryOf(*m_group, name);
    if (entry == nullptr) {
      reject(name);
    }
    m_group = entry->asDictionary();
    if (m_group == nullptr) {
      throw std::out_of_range(failure() + ": '" + m_path.substr(0, m_done + name.size()) +
                              "' is no dictionary");
    }
  }

  [[noreturn]] void reject(const std::string& name) const {
    if (name == m_path) {
      throw std::out_of_range(failure());
    }
    const std::string place = m_group == &m_start ? "it" : "'" + m_path.substr(0, m_done - 1) + "'";
    throw std::out_of_range(failure() + ": " + place + " has no '" + name + "'");
  }

  std::string failure() const {
    return "Dictionary '" + m_start.getName() + "' has no entry '" + m_path + "'";
  }

  D& m_start;
  const std::string& m_path;
  D* m_group;
  std::size_t m_done = 0;  // the length of the path up to the rest that is looked for in m_group
};

/// What an object is, for people: "an array of Double" or "a dictionary".
std::string kindOf(const Data& object) {
  const object_model::Array* array = object.asArray();
  return array == nullptr ? "a dictionary" : "an array of " + nameOf(array->getElementType());
}

/// The class's name as the sources spell it.
std::string className(const std::type_info& type) {
  const std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr), &std::free);
  return name == nullptr ? type.name() : name.get();  // never true: the name is the compiler's
}

/// Tells an object that stands in no container its name.
void setNameOf(Data& object, std::string name) {
  if (auto* const array = dynamic_cast<ArrayBase*>(&object)) {
    array->setName(std::move(name));
  } else {
    dynamic_cast<DictionaryBase&>(object).setName(std::move(name));
  }
}

}  // namespace

Dictionary::Dictionary(std::string name, std::string description)
    : DictionaryBase(std::move(name), std::move(description)) {}

Dictionary::Dictionary(Dictionary&& other) noexcept
    : DictionaryBase(std::move(other)),
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
  requireFreeToRename(*this, "Dictionary", other.getName());
  requireOutside(other);
  // The entries from before go last: `other` may be one of them.
  Dictionary taken(std::move(other));
  DictionaryBase::operator=(static_cast<DictionaryBase&&>(taken));  // not the entries
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
  // All that can fail comes before the entry moves: memory may run out, and an entry of another
  // maker may refuse a parent.
  m_entries.emplace_back();
  auto place = m_positions.end();
  try {
    place = m_positions.emplace(entry->getName(), m_entries.size() - 1).first;
    entry->setParent(this);
  } catch (...) {
    if (place != m_positions.end()) {
      m_positions.erase(place);
    }
    m_entries.pop_back();
    throw;
  }
  m_entries.back() = std::move(entry);
  return *m_entries.back();
}

bool Dictionary::contains(const std::string& name) const { return m_positions.count(name) > 0; }

void Dictionary::remove(const std::string& name) { extract(name); }

std::unique_ptr<Data> Dictionary::extract(const std::string& name) {
  const std::size_t position = positionOf(name);
  m_positions.erase(name);
  for (auto& [other, place] : m_positions) {
    place -= place > position ? 1 : 0;
  }
  std::unique_ptr<Data> entry = std::move(m_entries[position]);
  m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(position));
  entry->setParent(nullptr);
  return entry;
}

void Dictionary::rename(const std::string& name, std::string newName) {
  Data& entry = *m_entries[positionOf(name)];
  if (newName == name) {
    return;
  }
  requireFreeName(newName);
  if (dynamic_cast<ArrayBase*>(&entry) == nullptr &&
      dynamic_cast<DictionaryBase*>(&entry) == nullptr) {
    throw InvalidCall("Dictionary '" + getName() + "' cannot rename its entry '" + name +
                      "', which is of a class with names of its own (" + className(typeid(entry)) +
                      ")");
  }
  std::string key = newName;
  entry.setParent(nullptr);
  setNameOf(entry, std::move(newName));
  entry.setParent(this);
  auto place = m_positions.extract(name);
  place.key() = std::move(key);
  m_positions.insert(std::move(place));  // where one was taken out, so that nothing is allocated
}

unsigned long Dictionary::getNumOfData() const { return m_entries.size(); }

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
  requireFreeName(entry.getName());
}

void Dictionary::requireFreeName(const std::string& name) const {
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

Data& Dictionary::entryAt(const std::string& path) {
  return Walk<object_model::Dictionary>(*this, path).end();
}

const Data& Dictionary::entryAt(const std::string& path) const {
  return Walk<const object_model::Dictionary>(*this, path).end();
}

void Dictionary::rejectType(const std::string& path, const Data& found,
                            const std::type_info& asked) const {
  throw InvalidCall("Entry '" + path + "' of dictionary '" + getName() + "' is " + kindOf(found) +
                    " (" + className(typeid(found)) + "), not a " + className(asked));
}

std::size_t Dictionary::positionOf(const std::string& name) const {
  const auto found = m_positions.find(name);
  if (found == m_positions.end()) {
    throw std::out_of_range("Dictionary '" + getName() + "' has no entry '" + name + "'");
  }
  return found->second;
}

}  // namespace quillon::memory
