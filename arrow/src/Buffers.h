#pragma once

#include <quillon/memory/Utf8.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::arrow {

/// Memory for `count` values, aligned as Arrow's documentation recommends. Not set to 0.
template <class T>
std::shared_ptr<T> bufferOf(unsigned long count) {
  constexpr std::align_val_t ALIGNMENT{64};
  void* const memory = ::operator new(count * sizeof(T), ALIGNMENT);
  return {static_cast<T*>(memory), [](T* buffer) { ::operator delete(buffer, ALIGNMENT); }};
}

/// One bit for each of `count` rows, from the lowest of the first byte on.
template <class IsSet>
std::shared_ptr<unsigned char> bitsOf(unsigned long count, const IsSet& isSet) {
  std::shared_ptr<unsigned char> bits = bufferOf<unsigned char>((count + 7) / 8);
  for (unsigned long first = 0; first < count; first += 8) {
    unsigned int byte = 0;
    const unsigned long last = std::min(first + 8, count);
    for (unsigned long row = first; row < last; ++row) {
      byte |= (isSet(row) ? 1U : 0U) << (row - first);
    }
    bits.get()[first / 8] = static_cast<unsigned char>(byte);
  }
  return bits;
}

/// What offsets of 32 bits can count.
inline constexpr unsigned long MOST_CHARACTERS = 0x7FFFFFFF;

/// Texts as Arrow keeps them: all characters in a row, and where each text ends.
class TextBuffers {
 public:
  /// @param column named where there are too many characters.
  /// @param most how many bytes all texts may have together.
  TextBuffers(unsigned long count, std::string column, unsigned long most = MOST_CHARACTERS)
      : m_offsets(bufferOf<int32_t>(count + 1)),
        m_characters(std::make_shared<std::string>()),
        m_column(std::move(column)),
        m_most(most) {
    m_offsets.get()[0] = 0;
  }

  /// Appends a text, with U+FFFD for each byte that is no UTF-8.
  /// @throws tables::Error where the offsets of so many characters do not fit their type.
  void add(std::string_view text) {
    for (;;) {
      const std::size_t length = memory::utf8Length(text);
      m_characters->append(text.substr(0, length));
      if (length == text.size()) {
        break;
      }
      m_characters->append(memory::REPLACEMENT);
      text.remove_prefix(length + 1);
    }
    if (m_characters->size() > m_most) {
      throw tables::Error("The texts of the column " + memory::inQuotes(m_column) +
                          " have more than " + std::to_string(m_most) +
                          " bytes in one batch; ask for fewer rows a batch");
    }
    m_offsets.get()[++m_texts] = static_cast<int32_t>(m_characters->size());
  }

  std::shared_ptr<const int32_t> offsets() const { return m_offsets; }
  std::shared_ptr<const char> characters() const { return {m_characters, m_characters->data()}; }

 private:
  std::shared_ptr<int32_t> m_offsets;
  std::shared_ptr<std::string> m_characters;
  std::string m_column;
  unsigned long m_most;
  unsigned long m_texts = 0;
};

}  // namespace quillon::arrow
