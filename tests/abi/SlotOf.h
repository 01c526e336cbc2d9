#pragma once

#include <cstddef>
#include <cstring>
#include <ostream>

namespace binary {

/// The slot of a virtual operation in its class's virtual table. On x86-64 with the Itanium C++
/// ABI, the pointer to a virtual member holds 1 plus the slot's byte offset.
template <class Member>
std::ptrdiff_t slotOf(Member member) {
  std::ptrdiff_t words[2];
  static_assert(sizeof(member) == sizeof(words));
  std::memcpy(words, &member, sizeof(words));
  return (words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // an exception's class has none on purpose

/// The first slot behind all of a class's own, where a derived class's first new operation goes.
template <class Class>
std::ptrdiff_t slotAfter() {
  class Next : public Class {
   public:
    virtual void next() {}
  };
  return slotOf(&Next::next);
}

#pragma GCC diagnostic pop

/// A row of a frozen table. A red row means: put the header back. Rows are only ever appended.
struct Slot {
  const char* operation;
  std::ptrdiff_t actual;
  std::ptrdiff_t released;
};
inline void PrintTo(const Slot& slot, std::ostream* out) { *out << slot.operation; }

}  // namespace binary
