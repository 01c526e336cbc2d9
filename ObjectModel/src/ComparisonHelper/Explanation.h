#pragma once

#include <string>
#include <utility>
#include <vector>

namespace object_model::helper {

/// The sentence for a difference deep inside, put together from the innermost part outwards.
///
/// The parts are joined once, at the end: joining at every level would take time and memory with
/// the square of the depth.
class Explanation {
 public:
  Explanation() = default;
  explicit Explanation(std::string innermost) { precede(std::move(innermost)); }

  /// Puts `part` before all that is there.
  void precede(std::string part) { m_parts.push_back(std::move(part)); }

  std::string text() const {
    std::string::size_type length = 0;
    for (const std::string& part : m_parts) {
      length += part.size();
    }
    std::string text;
    text.reserve(length);
    for (auto part = m_parts.rbegin(); part != m_parts.rend(); ++part) {
      text += *part;
    }
    return text;
  }

 private:
  std::vector<std::string> m_parts;  // innermost first
};

}  // namespace object_model::helper
