/// @file
/// Structures of the C data interface that are released by themselves.
#pragma once

#include <quillon/arrow/Interface.h>

#include <utility>

namespace quillon::arrow {

/// An `ArrowSchema`, an `ArrowArray` or an `ArrowArrayStream` of one's own, empty at first. What it
/// holds in the end is released with it.
///
/// Threads: as those of the structure. Errors: none.
template <class Structure>
class Owned {
 public:
  /// One that holds nothing.
  Owned() = default;
  /// Takes over what `structure` holds, which is marked as released. Null is taken for nothing.
  explicit Owned(Structure* structure) {
    if (structure != nullptr) {
      m_structure = *structure;
      structure->release = nullptr;
    }
  }
  /// Takes over what the other one holds.
  Owned(Owned&& other) noexcept : Owned(other.get()) {}
  /// Releases what it holds and takes over what the other one does.
  Owned& operator=(Owned&& other) noexcept {
    if (this != &other) {
      reset();
      m_structure = std::exchange(other.m_structure, Structure());
    }
    return *this;
  }
  ~Owned() { reset(); }

  /// Whether it holds anything.
  explicit operator bool() const { return m_structure.release != nullptr; }
  /// The structure, for functions that fill it in, take it or look at it. Never null.
  Structure* get() { return &m_structure; }
  /// @copydoc get
  const Structure* get() const { return &m_structure; }
  /// The structure's fields.
  Structure* operator->() { return &m_structure; }
  /// The structure's fields.
  const Structure* operator->() const { return &m_structure; }

  /// Releases what it holds.
  void reset() {
    if (m_structure.release != nullptr) {
      m_structure.release(&m_structure);
    }
    m_structure = Structure();
  }

 private:
  Structure m_structure = {};
};

}  // namespace quillon::arrow
