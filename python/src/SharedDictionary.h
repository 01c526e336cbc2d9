#pragma once

#include <quillon/memory/DictionaryBase.h>

#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "Sibling.h"

namespace quillon::python {

class SharedDictionary;

/// An entry: an array, with the numpy array that it was made of, or a dictionary.
struct Entry {
  ArrayPointer array;
  PyRef source;  ///< of an array; null where it is read
  std::shared_ptr<SharedDictionary> dictionary;

  object_model::Data& data() const;
};

/// A dictionary in memory that shares its entries with those who have asked for them, so that these
/// outlive it. Each entry stands in one dictionary at most.
///
/// Errors: NoEntry for a name that has no entry. Threads: const operations may run concurrently.
class SharedDictionary final : public memory::DictionaryBase {
 public:
  explicit SharedDictionary(const std::string& name, const std::string& description = {});
  SharedDictionary(const SharedDictionary&) = delete;
  SharedDictionary& operator=(const SharedDictionary&) = delete;
  ~SharedDictionary() override;

  unsigned long getNumOfData() const override { return m_names.size(); }
  std::string getDataName(int index) const override;
  using object_model::Dictionary::data;
  object_model::Data* data(const std::string& name) override;
  const object_model::Data* data(const std::string& name) const override;

  /// Makes `entry`, which bears this name and stands in no dictionary, the one of its name; one
  /// that is there gives way to it and leaves it its place.
  void set(const Entry& entry);
  void remove(const std::string& name);
  const Entry& at(const std::string& name) const;
  bool contains(const std::string& name) const { return m_entries.count(name) != 0; }
  const std::vector<std::string>& names() const { return m_names; }

  /// The names of entries that are coordinates besides those that are called as their dimension.
  std::set<std::string> coordinates;
  /// Whether nobody may change it.
  bool isReadOnly = false;

 private:
  std::vector<std::string> m_names;
  std::unordered_map<std::string, Entry> m_entries;
};

/// A copy of the dictionary, and of those in it, that shares the values of its arrays.
/// @throws std::length_error where dictionaries nest deeper than copies of them could.
std::shared_ptr<SharedDictionary> copyOf(const SharedDictionary& dictionary,
                                         const std::string& name);

/// How many dictionaries `dictionary` stands in, and how deep those in it nest, itself included.
unsigned long depthOf(const SharedDictionary& dictionary);
unsigned long heightOf(const SharedDictionary& dictionary);

/// Dictionaries may nest this deep.
inline constexpr unsigned long DEEPEST = 500;

}  // namespace quillon::python
