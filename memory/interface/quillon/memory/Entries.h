/// @file
/// Loops over the entries of any dictionary.
#pragma once

#include <object_model/Dictionary.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

namespace quillon::memory {

/// An entry as loops give it. `D` is `object_model::Data`, const or not.
template <class D>
struct NamedEntry {
  std::string name;  ///< the name under which the dictionary finds the entry
  D* data;           ///< the entry, borrowed from the dictionary
};

/// Steps through the entries of a dictionary by position. `D` is the dictionary's class, const for
/// reading. It is invalid as soon as entries are added, removed or renamed.
template <class D>
class EntryIterator {
 public:
  /// What `*` gives: name and entry.
  using value_type = NamedEntry<
      std::conditional_t<std::is_const_v<D>, const object_model::Data, object_model::Data>>;
  using reference = value_type;                       ///< entries are given by value
  using pointer = void;                               ///< there is no `->`
  using difference_type = std::ptrdiff_t;             ///< for algorithms
  using iterator_category = std::input_iterator_tag;  ///< for single passes

  /// Stands at `position`, from 0 to the number of entries, and borrows the dictionary.
  EntryIterator(D& dictionary, int position) : m_dictionary(&dictionary), m_position(position) {}

  /// The name and the entry at the position. What the dictionary throws passes through.
  value_type operator*() const {
    std::string name = m_dictionary->getDataName(m_position);
    auto* const data = m_dictionary->data(name);
    return {std::move(name), data};
  }

  /// Steps to the next entry.
  EntryIterator& operator++() {
    ++m_position;
    return *this;
  }

  /// Steps to the next entry; gives the iterator as it was.
  EntryIterator operator++(int) {
    EntryIterator before = *this;
    ++m_position;
    return before;
  }

  /// Whether both stand at the same position; they must be of one dictionary.
  friend bool operator==(const EntryIterator& a, const EntryIterator& b) {
    return a.m_position == b.m_position;
  }

  /// Whether they stand at different positions of one dictionary.
  friend bool operator!=(const EntryIterator& a, const EntryIterator& b) { return !(a == b); }

 private:
  D* m_dictionary;
  int m_position;
};

/// The entries of a dictionary, which it borrows, as a range.
template <class D>
class EntryRange {
 public:
  /// The entries of `dictionary`, which must outlive the range.
  explicit EntryRange(D& dictionary) : m_dictionary(dictionary) {}

  /// At the first entry.
  EntryIterator<D> begin() const { return {m_dictionary, 0}; }

  /// Behind the last entry that is there now.
  EntryIterator<D> end() const {
    return {m_dictionary, static_cast<int>(m_dictionary.getNumOfData())};
  }

 private:
  D& m_dictionary;
};

/// The entries of any dictionary in its order: `for (const auto& [name, data] : entriesOf(d))`.
/// What the dictionary's own operations throw passes through.
[[nodiscard]] inline EntryRange<const object_model::Dictionary> entriesOf(
    const object_model::Dictionary& dictionary) {
  return EntryRange<const object_model::Dictionary>(dictionary);
}

/// The same, for writing.
[[nodiscard]] inline EntryRange<object_model::Dictionary> entriesOf(
    object_model::Dictionary& dictionary) {
  return EntryRange<object_model::Dictionary>(dictionary);
}

}  // namespace quillon::memory
