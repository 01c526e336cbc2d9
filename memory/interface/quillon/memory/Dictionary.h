/// @file
/// A dictionary in memory.
#pragma once

#include <quillon/memory/DictionaryBase.h>
#include <quillon/memory/Entries.h>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
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
class Dictionary final : public DictionaryBase {
 public:
  /// A dictionary without entries.
  explicit Dictionary(std::string name, std::string description = {});

  /// Takes over name, attributes and entries, and becomes the parent of these; `other` is left
  /// without any of them.
  Dictionary(Dictionary&& other) noexcept;
  /// Replaces name, description, attributes and entries; the dictionary stays in the container that
  /// it is in. `other` is left without them; it may be one of the entries that are replaced.
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
  [[nodiscard]] bool contains(const std::string& name) const;

  /// The entry that is found along `path`, such as "area" or "cells/area": each part but the last
  /// names a dictionary. An entry whose own name holds a slash goes before; a slash in front is
  /// passed over.
  /// @tparam Entry what is asked for: an array class such as `DoubleArray`, or an interface.
  /// @throws std::out_of_range when nothing is there; the sentence says how far the path leads.
  /// @throws InvalidCall when something else is there; the sentence says what.
  template <class Entry = object_model::Data>
  Entry& at(const std::string& path) {
    object_model::Data& found = entryAt(path);
    auto* const entry = dynamic_cast<Entry*>(&found);
    if (entry == nullptr) {
      rejectType(path, found, typeid(Entry));
    }
    return *entry;
  }

  /// @copydoc at
  template <class Entry = object_model::Data>
  const Entry& at(const std::string& path) const {
    const object_model::Data& found = entryAt(path);
    const auto* const entry = dynamic_cast<const Entry*>(&found);
    if (entry == nullptr) {
      rejectType(path, found, typeid(Entry));
    }
    return *entry;
  }

  /// The first of the entries, for loops: `for (const auto& [name, data] : dictionary)`.
  EntryIterator<Dictionary> begin() { return {*this, 0}; }
  /// Behind the last of the entries.
  EntryIterator<Dictionary> end() { return EntryRange<Dictionary>(*this).end(); }
  /// @copydoc begin
  EntryIterator<const Dictionary> begin() const { return {*this, 0}; }
  /// @copydoc end
  EntryIterator<const Dictionary> end() const { return EntryRange<const Dictionary>(*this).end(); }

  /// Destroys the entry called `name`. The others keep their order. It takes time in the number of
  /// entries.
  void remove(const std::string& name);

  /// Takes the entry called `name` out; it then stands in no container. The others keep their
  /// order. It takes time in the number of entries.
  std::unique_ptr<object_model::Data> extract(const std::string& name);

  /// Gives the entry `name` another name, in its place. Out of memory, nothing is changed.
  /// @throws std::invalid_argument when another entry is called `newName`.
  /// @throws InvalidCall when the entry derives neither from `ArrayBase` nor from `DictionaryBase`
  ///   and so cannot be told its name.
  void rename(const std::string& name, std::string newName);

  unsigned long getNumOfData() const override;
  std::string getDataName(int index) const override;
  using object_model::Dictionary::data;
  object_model::Data* data(const std::string& name) override;
  const object_model::Data* data(const std::string& name) const override;

 private:
  void requireAddable(const object_model::Data& entry) const;
  void requireFreeName(const std::string& name) const;
  void requireOutside(const object_model::Data& container) const;
  std::size_t positionOf(const std::string& name) const;
  object_model::Data& entryAt(const std::string& path);
  const object_model::Data& entryAt(const std::string& path) const;
  [[noreturn]] void rejectType(const std::string& path, const object_model::Data& found,
                               const std::type_info& asked) const;

  std::vector<std::unique_ptr<object_model::Data>> m_entries;
  std::unordered_map<std::string, std::size_t> m_positions;
};

}  // namespace quillon::memory
