#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace quillon::fuzz {

/// The choices that make up a test case, read from a fuzzer's bytes: one byte for each choice, so
/// that a changed byte changes one choice and leaves the others where they are. Behind the last
/// byte all are 0, which stands for the simplest choice everywhere.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : m_bytes(bytes, bytes + size) {}
  explicit Input(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {}

  std::uint8_t byte() { return m_next < m_bytes.size() ? m_bytes[m_next++] : std::uint8_t{0}; }

  /// A number from 0 to count - 1, for a count of at most 256.
  unsigned long below(unsigned long count) { return byte() % count; }

  /// True for one byte in so many, never for 0.
  bool oneIn(unsigned long many) { return below(many) == many - 1; }

  /// Any value of a type that is as good as its bytes.
  template <class T>
  T bits() {
    T value;
    std::uint8_t bytes[sizeof(T)];
    for (std::uint8_t& each : bytes) {
      each = byte();
    }
    std::memcpy(&value, bytes, sizeof(T));
    return value;
  }

  /// Mostly one of the values, which are those that matter, sometimes any.
  template <class T>
  T oneOf(const std::vector<T>& values) {
    const std::size_t choice = byte();
    return choice < 192 ? values[choice % values.size()] : bits<T>();
  }

  /// A text of fewer than `end` bytes.
  std::string text(unsigned long end) {
    std::string text(below(end), '\0');
    for (char& each : text) {
      each = static_cast<char>(byte());
    }
    return text;
  }

  /// All that has not been read yet.
  std::vector<std::uint8_t> rest() {
    std::vector<std::uint8_t> rest(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_next),
                                   m_bytes.end());
    m_next = m_bytes.size();
    return rest;
  }

 private:
  std::vector<std::uint8_t> m_bytes;
  std::size_t m_next = 0;
};

}  // namespace quillon::fuzz
