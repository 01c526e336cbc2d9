#pragma once

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace object_model {

/// Writes values as a `std::ostringstream` in its default state does while its locale is the
/// classic one, character by character the same, but into one string without the stream's
/// machinery.
class ClassicStream {
 public:
  /// Lets the next insertion be followed by blanks until it is `width` wide.
  void padNext(std::size_t width) { m_width = width; }

  /// Makes sure of the memory for `length` characters.
  void reserve(std::size_t length) { m_text.reserve(length); }

  ClassicStream& operator<<(std::string_view text) {
    char* const to = room(std::max(text.size(), m_width));
    if (!text.empty()) {
      std::memcpy(to, text.data(), text.size());
    }
    return advance(text.size());
  }
  ClassicStream& operator<<(unsigned long value) { return insert(value); }
  ClassicStream& operator<<(long value) { return insert(value); }

  /// Six significant digits in general notation, as "%g" has it.
  ClassicStream& operator<<(double value) { return insert(value, std::chars_format::general, 6); }

  /// All that was written. The stream is then empty.
  std::string takeText() {
    m_text.resize(std::exchange(m_size, 0));
    return std::move(m_text);
  }

 private:
  /// No number of a column takes more characters: -1.79769e+308 and the 64-bit integers fit.
  static constexpr std::size_t LONGEST_NUMBER = 32;

  template <class Value, class... Format>
  ClassicStream& insert(Value value, Format... format) {
    char* const to = room(std::max(LONGEST_NUMBER, m_width));
    const char* const end = std::to_chars(to, to + LONGEST_NUMBER, value, format...).ptr;
    return advance(static_cast<std::size_t>(end - to));
  }

  /// Where the next `length` characters go.
  char* room(std::size_t length) {
    if (m_text.size() - m_size < length) {
      m_text.resize(std::max(2 * m_text.size(), m_size + length));
    }
    return m_text.data() + m_size;
  }

  ClassicStream& advance(std::size_t written) {
    if (written < m_width) {
      std::memset(m_text.data() + m_size + written, ' ', m_width - written);
      written = m_width;
    }
    m_size += written;
    m_width = 0;
    return *this;
  }

  std::string m_text;      // its end is room for what comes
  std::size_t m_size = 0;  // the characters written
  std::size_t m_width = 0;
};

}  // namespace object_model
