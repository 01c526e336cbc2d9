#include <object_model/Tuple.h>

#include <stdexcept>

namespace object_model {

Tuple::Tuple() = default;

Tuple::Tuple(const Tuple& other) = default;

Tuple::~Tuple() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): every assignment is refused alike
Tuple& Tuple::operator=(const Tuple& /*other*/) { throw std::runtime_error("invalid call"); }

unsigned long Tuple::size() const { return m_size; }

const unsigned long& Tuple::operator[](unsigned long index) const { return m_data[index]; }

unsigned long& Tuple::operator[](unsigned long index) { return m_data[index]; }

}  // namespace object_model
