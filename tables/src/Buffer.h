#pragma once

#include <quillon/tables/Writers.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace quillon::tables {

/// Text that grows, without the bookkeeping of a string at each number.
class Buffer {
 public:
  std::string_view view() const { return {m_text.get(), m_size}; }
  std::size_t size() const { return m_size; }
  void clear() { m_size = 0; }

  /// Room for `count` characters behind the text, which end() makes part of it.
  char* room(std::size_t count) {
    if (m_capacity - m_size < count) {
      grow(count);
    }
    return m_text.get() + m_size;
  }

  /// @param behind the end of what was written to the room.
  void end(const char* behind) { m_size = static_cast<std::size_t>(behind - m_text.get()); }

  void append(std::string_view text) {
    if (!text.empty()) {
      std::memcpy(room(text.size()), text.data(), text.size());
      m_size += text.size();
    }
  }

  void append(char character) {
    *room(1) = character;
    ++m_size;
  }

  void append(std::size_t count, char character) {
    if (count > 0) {
      std::memset(room(count), character, count);
      m_size += count;
    }
  }

  /// Hands the text over where it is long enough for a piece.
  void passOn(const Output& output) {
    if (m_size >= PIECE) {
      finish(output);
    }
  }

  /// Hands over what is left.
  void finish(const Output& output) {
    if (m_size > 0) {
      output(view());
      clear();
    }
  }

 private:
  static constexpr std::size_t PIECE = 64U << 10U;

  void grow(std::size_t count) {
    const std::size_t capacity = std::max({2 * m_capacity, m_size + count, PIECE});
    std::unique_ptr<char[]> text(new char[capacity]);  // not set to 0
    if (m_size > 0) {
      std::memcpy(text.get(), m_text.get(), m_size);
    }
    m_text = std::move(text);
    m_capacity = capacity;
  }

  std::unique_ptr<char[]> m_text;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace quillon::tables
