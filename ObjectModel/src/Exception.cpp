#include <object_model/Exception.h>

namespace object_model {

// The signature is part of the binary interface.
// NOLINTNEXTLINE(modernize-pass-by-value)
Exception::Exception(const std::string& message) : m_message(message) {}

std::string Exception::what() const { return m_message; }

}  // namespace object_model
