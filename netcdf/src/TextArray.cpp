#include "TextArray.h"

#include <netcdf.h>

#include <utility>

#include "Padding.h"
#include "Trial.h"

namespace quillon::netcdf {
namespace {

constexpr std::size_t STRING_BYTES = 128;  // a string's length is not known before it is read

/// The strings that the library made, freed with it.
class LibraryStrings {
 public:
  explicit LibraryStrings(std::size_t count) : m_texts(count, nullptr) {}
  LibraryStrings(const LibraryStrings&) = delete;
  LibraryStrings& operator=(const LibraryStrings&) = delete;
  ~LibraryStrings() { nc_free_string(m_texts.size(), m_texts.data()); }

  char** data() { return m_texts.data(); }
  std::string at(std::size_t k) const { return m_texts[k] == nullptr ? "" : m_texts[k]; }

 private:
  std::vector<char*> m_texts;
};

std::size_t textLength(TextArray::Storage storage, const Variable& variable) {
  const bool isText = storage == TextArray::Storage::Characters;
  return !isText || variable.shape.empty() ? 1 : variable.shape.back();
}

// A text of characters is held twice while it is read.
std::size_t textBytes(TextArray::Storage storage, std::size_t length) {
  return storage == TextArray::Storage::Strings ? STRING_BYTES : sizeof(std::string) + 2 * length;
}

}  // namespace

TextArray::TextArray(Storage storage, Variable variable, const std::string& name,
                     std::vector<memory::Axis> axes, const std::string& description)
    : ArrayBase(name, object_model::ElementType::String, std::move(axes), description),
      m_storage(storage),
      m_variable(std::move(variable)),
      m_length(textLength(storage, m_variable)),
      m_window(m_variable.windows(size().size(), textBytes(storage, m_length))) {}

std::string TextArray::getValueAsString(const object_model::Tuple& index) const {
  return m_window.at(offsetOf(index), [this](const Block& block, std::string* texts) {
    m_storage == Storage::Strings ? readStrings(block, texts) : readCharacters(block, texts);
  });
}

void TextArray::readStrings(const Block& block, std::string* texts) const {
  LibraryStrings strings(block.count);
  const auto read = [&] { m_variable.read(block, strings.data()); };
  // The library follows the references to the strings without a check.
  if (!m_variable.source->options().trustFile && !survives(read, m_variable.source->fileBytes())) {
    m_variable.source->fail(m_variable.subject() + " cannot be read: its strings are damaged");
  }
  read();
  unsigned long bytes = 0;
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k] = strings.at(k);
    bytes += texts[k].size();
  }
  m_variable.reportRead(bytes);
}

void TextArray::readCharacters(const Block& block, std::string* texts) const {
  std::vector<char> characters(block.count * m_length);
  if (!characters.empty()) {
    Block stored = block;
    if (!m_variable.shape.empty()) {
      stored.start.push_back(0);
      stored.extent.push_back(m_length);
    }
    m_variable.read(stored, characters.data());
  }
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k].assign(characters.data() + k * m_length, m_length);
    cutPadding(texts[k]);
  }
  m_variable.reportRead(characters.size());
}

}  // namespace quillon::netcdf
