#pragma once

namespace benchmarks {

/// `object`, of which the compiler no longer knows more than its interface: calls of its virtual
/// operations stay what they are in the library, where any class may come along.
template <class Interface>
Interface& opaque(Interface& object) {
  Interface* hidden = &object;
  asm volatile("" : "+r"(hidden));
  return *hidden;
}

}  // namespace benchmarks
