/// @file
/// A dictionary in memory.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Descriptors.h>

#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::memory {

/// A dictionary that keeps its entries in the order in which they were added and finds them by name
/// in constant time.
///
/// Ownership: owns its entries and is their parent; references to an entry stay valid as long as
/// the dictionary that holds it, even when the dictionary itself moves.
///
/// Errors: `std::out_of_range` for a name or position that has no entry, `std::invalid_argument`
/// for a name that is taken and for a dictionary that would end up inside itself; each with a
/// sentence that names the dictionary and the entry.
///
/// Threads: const operations may run concurrently.
class Dictionary final : public object_model::Dictionary {
 public:
  /// A dictionary without entries.
  explicit Dictionary(std::string name, std::string description = {});

  /// Takes over name and entries, and becomes the parent of these; `other` is left without either.
  Dictionary(Dictionary&& other) noexcept;
  /// Replaces name, description and entries; the dictionary stays in the container that it is in.
  /// `other` is left without name and entries; it may be one of the entries that are replaced.
  /// @throws std::invalid_argument when this is an entry of a dictionary, which finds it under its
  ///   name, and `other` has another name, or when `other` contains this; nothing is changed.
  // NOLINTNEXTLINE(bugprone-exception-escape,performance-noexcept-move-constructor): see above
  Dictionary& operator=(Dictionary&& other);
  ~Dictionary() override;

  /// Appends an entry under its own name and becomes its parent. Returns the entry in its place.
  /// When it throws, `entry` is left as it was.
  object_model::Data& add(std::unique_ptr<object_model::Data>&& entry);

  /// The same for an entry of a class of its own, which is returned as such.
  template <class Entry, class = std::enable_if_t<std::is_base_of_v<object_model::Data, Entry> &&
                                                  !std::is_same_v<object_model::Data, Entry>>>
  Entry& add(std::unique_ptr<Entry>&& entry) {
    Entry* const added = entry.get();
    // Lent rather than converted, so that the caller keeps the entry when adding it fails.
    std::unique_ptr<object_model::Data> lent(std::move(entry));
    try {
      add(std::move(lent));
    } catch (...) {
      entry.reset(static_cast<Entry*>(lent.release()));
      throw;
    }
    return *added;
  }

  /// Moves an array or a dictionary in: `dictionary.add(DoubleArray(...))`.
  template <class Entry, class = std::enable_if_t<std::is_base_of_v<object_model::Data, Entry>>>
  Entry& add(Entry&& entry) {
    requireAddable(entry);
    return static_cast<Entry&>(add(
        std::unique_ptr<object_model::Data>(std::make_unique<Entry>(std::forward<Entry>(entry)))));
  }

  /// Whether there is an entry called `name`.
  bool contains(const std::string& name) const;

  const DictionaryDescriptor* getInformation() const override;
  const object_model::Data* parent() const override;
  object_model::Data* parent() override;
  void setParent(object_model::Data* parent) override;

  /// Returns false.
  bool isDynamicDictionary() const override;
  /// Returns null.
  object_model::DynamicDictionary* asDynamicDictionary() override;
  /// Returns null.
  const object_model::DynamicDictionary* asDynamicDictionary() const override;

  unsigned long getNumOfData() const override;
  void reservedDictionary0() const override;
  void reservedDictionary1() const override;
  std::string getDataName(int index) const override;
  using object_model::Dictionary::data;
  object_model::Data* data(const std::string& name) override;
  const object_model::Data* data(const std::string& name) const override;

 private:
  void requireAddable(const object_model::Data& entry) const;
  void requireOutside(const object_model::Data& container) const;
  std::size_t positionOf(const std::string& name) const;

  DictionaryDescriptor m_descriptor;
  std::vector<std::unique_ptr<object_model::Data>> m_entries;
  std::unordered_map<std::string, std::size_t> m_positions;
  object_model::Data* m_parent = nullptr;
};

}  // namespace quillon::memory
