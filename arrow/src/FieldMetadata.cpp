#include "FieldMetadata.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quillon::arrow {
namespace {

void appendCount(std::size_t count, std::string& bytes) {
  const auto number = static_cast<int32_t>(count);
  bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
}

void appendText(std::string_view text, std::string& bytes) {
  appendCount(text.size(), bytes);
  bytes.append(text);
}

/// Goes through metadata from the front on.
class Reader {
 public:
  explicit Reader(const char* bytes) : m_next(bytes) {}

  int32_t count() {
    int32_t number = 0;
    std::memcpy(&number, m_next, sizeof(number));
    m_next += sizeof(number);
    return std::max(number, 0);
  }

  std::string_view text() {
    const auto length = static_cast<std::size_t>(count());
    const std::string_view text(m_next, length);
    m_next += length;
    return text;
  }

 private:
  const char* m_next;
};

}  // namespace

std::string encodedMetadata(std::string_view key, std::string_view value) {
  std::string bytes;
  appendCount(1, bytes);
  appendText(key, bytes);
  appendText(value, bytes);
  return bytes;
}

std::string metadataAt(const char* metadata, std::string_view key) {
  if (metadata == nullptr) {
    return {};
  }
  Reader reader(metadata);
  for (int32_t left = reader.count(); left > 0; --left) {
    const bool isMeant = reader.text() == key;
    const std::string_view value = reader.text();
    if (isMeant) {
      return std::string(value);
    }
  }
  return {};
}

}  // namespace quillon::arrow
