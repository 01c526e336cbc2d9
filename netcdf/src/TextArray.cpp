#include "TextArray.h"

#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <mutex>
#include <utility>

#include "Bounded.h"
#include "Padding.h"

namespace quillon::netcdf {
namespace {

constexpr std::size_t STRING_BYTES = 128;  // a string's length is not known before it is read

// A text is read in one piece: one that is as long as this for each byte of its file is damaged.
constexpr unsigned long MOST_TEXT_BYTES_PER_FILE_BYTE = 1UL << 10U;

/// The strings that the library made, freed with it.
class LibraryStrings {
 public:
  LibraryStrings() = default;
  LibraryStrings(const LibraryStrings&) = delete;
  LibraryStrings& operator=(const LibraryStrings&) = delete;
  ~LibraryStrings() {
    const std::lock_guard<std::mutex> guard(libraryLock());
    nc_free_string(m_texts.size(), m_texts.data());
  }

  std::vector<char*>& texts() { return m_texts; }
  std::string at(std::size_t k) const { return m_texts[k] == nullptr ? "" : m_texts[k]; }

 private:
  std::vector<char*> m_texts;
};

std::size_t textLength(TextArray::Storage storage, const Variable& variable) {
  const bool isText = storage == TextArray::Storage::Characters;
  return !isText || variable.shape.empty() ? 1 : variable.shape.front();
}

// A text of characters is held twice while it is read.
std::size_t textBytes(TextArray::Storage storage, std::size_t length) {
  return storage == TextArray::Storage::Strings
             ? STRING_BYTES
             : boundedSum(sizeof(std::string), boundedProduct(2, length));
}

}  // namespace

TextArray::TextArray(Storage storage, Variable variable, const std::string& name,
                     std::vector<memory::Axis> axes, const std::string& description)
    : FileArray(object_model::ElementType::String, std::move(variable), name, std::move(axes),
                description),
      m_storage(storage),
      m_length(textLength(storage, m_variable)),
      m_window(m_variable.windows(m_variable.shape.size() - size().size(),
                                  textBytes(storage, m_length))) {}

std::string TextArray::getValueAsString(const object_model::Tuple& index) const {
  return m_window.at(
      offsetOf(index),
      [this](const memory::Block& block, std::vector<std::string>& texts) {
        m_variable.makeRoom(texts, block.count);
        return m_storage == Storage::Strings ? readStrings(block, texts.data())
                                             : readCharacters(block, texts.data());
      },
      [this](unsigned long bytes) { m_variable.reportRead(bytes); });
}

unsigned long TextArray::readStrings(const memory::Block& block, std::string* texts) const {
  LibraryStrings strings;
  m_variable.makeRoom(strings.texts(), block.count);
  m_variable.read(block.start.data(), block.extent.data(), strings.texts().data());
  unsigned long bytes = 0;
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k] = strings.at(k);
    bytes += texts[k].size();
  }
  return bytes;
}

unsigned long TextArray::readCharacters(const memory::Block& block, std::string* texts) const {
  requirePlausibleLength();
  std::vector<char> characters;
  m_variable.makeRoom(characters, boundedProduct(block.count, m_length));
  if (!characters.empty()) {
    memory::Block stored = block;
    if (!m_variable.shape.empty()) {
      stored.start.insert(stored.start.begin(), 0);
      stored.extent.insert(stored.extent.begin(), m_length);
    }
    m_variable.read(stored.start.data(), stored.extent.data(), characters.data());
  }
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k].assign(characters.data() + k * m_length, m_length);
    cutPadding(texts[k]);
  }
  return characters.size();
}

void TextArray::requirePlausibleLength() const {
  const unsigned long fileBytes = m_variable.source->file().bytes();
  if (m_length > boundedProduct(fileBytes, MOST_TEXT_BYTES_PER_FILE_BYTE)) {
    m_variable.source->fail(m_variable.subject() + " claims texts of " + std::to_string(m_length) +
                            " characters, which a file of " + std::to_string(fileBytes) +
                            " bytes cannot hold");
  }
}

}  // namespace quillon::netcdf
