/// @file
/// Texts and numbers as JSON.
#pragma once

#include <quillon/memory/NumberText.h>

#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>

namespace quillon::memory {

/// `text` as a JSON string, quotes included. Control and invisible characters (see
/// isInvisible()) are escaped; each byte that is no
/// UTF-8 becomes U+FFFD, so that any parser takes it.
[[nodiscard]] std::string jsonText(std::string_view text);

/// `value` as JSON: the shortest number that reads back; NaN and infinities, which JSON has no
/// numbers for, as the strings "NaN", "Infinity" and "-Infinity"; a complex number as the string
/// "(RE;IM)".
template <class T>
[[nodiscard]] std::string jsonNumber(T value) {
  if constexpr (std::is_arithmetic_v<T>) {
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(value)) {
        return "\"NaN\"";
      }
      if (std::isinf(value)) {
        return value > 0 ? "\"Infinity\"" : "\"-Infinity\"";
      }
    }
    return shortestText(value);
  } else {
    return jsonText(shortestText(value));
  }
}

/// A JSON object or list that grows by a member at a time, in one line.
class Json {
 public:
  /// Without members yet. @param opening `{` for an object, `[` for a list.
  explicit Json(char opening) : m_text(1, opening), m_closing(opening == '{' ? '}' : ']') {}

  /// Adds a member of an object; `json` is its value.
  Json& add(const std::string& name, const std::string& json) {
    return add(jsonText(name) + ": " + json);
  }

  /// Adds an element of a list.
  Json& add(const std::string& json) {
    m_text += (m_text.size() == 1 ? "" : ", ") + json;
    return *this;
  }

  /// The object or list as it is now.
  std::string text() const { return m_text + m_closing; }

 private:
  std::string m_text;
  char m_closing;
};

}  // namespace quillon::memory
