#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace binary {

using Destructor = void (*)(void*);

// Called through the table as compiled code does, which no sanitizer can match with a type.
__attribute__((no_sanitize("undefined"))) inline void callSlot(void* object, std::size_t slot) {
  const Destructor* table = nullptr;
  std::memcpy(&table, object, sizeof(table));
  table[slot](object);
}

template <class Base>
class Watched : public Base {
 public:
  explicit Watched(int& destroyed) : m_destroyed(&destroyed) {}
  ~Watched() override { ++*m_destroyed; }

 private:
  int* m_destroyed;
};

/// A destructor has no address that a test could take, so its place is shown by calling what stands
/// there. The first of its two slots ends the object's life, the second gives its memory back too
/// (what a leak or a double free shows under the address sanitizer).
template <class Base>
void expectDestructorAt(std::size_t slot) {
  int destroyed = 0;
  alignas(Watched<Base>) std::array<std::byte, sizeof(Watched<Base>)> place;
  callSlot(new (place.data()) Watched<Base>(destroyed), slot);
  EXPECT_EQ(destroyed, 1);
  callSlot(std::make_unique<Watched<Base>>(destroyed).release(), slot + 1);
  EXPECT_EQ(destroyed, 2);
}

}  // namespace binary
