#include <object_model/Tuple.h>

#include <stdexcept>

namespace object_model {

Tuple::Tuple() = default;

Tuple::Tuple(const Tuple& other) = default;

Tuple::~Tuple() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): every assignment is refused alike
Tuple& Tuple::operator=(const Tuple& /*other*/) { throw std::runtime_error("invalid call"); }

namespace {

// Callers that do not inline these operations find them in the library: their addresses are taken
// here so that they are compiled into it.
[[gnu::used]] unsigned long (Tuple::*const SIZE)() const = &Tuple::size;
[[gnu::used]] const unsigned long& (Tuple::*const READ)(unsigned long) const = &Tuple::operator[];
[[gnu::used]] unsigned long& (Tuple::*const WRITE)(unsigned long) = &Tuple::operator[];

}  // namespace

}  // namespace object_model
