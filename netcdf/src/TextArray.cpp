#include "TextArray.h"

#include <quillon/memory/Bounded.h>

#include <algorithm>
#include <utility>

#include "Attributes.h"
#include "Hdf5Texts.h"

namespace quillon::netcdf {
namespace {

constexpr std::size_t STRING_BYTES = 128;  // a string's length is not known before it is read

// A text is read in one piece: one that is as long as this for each byte of its file is damaged.
constexpr unsigned long MOST_TEXT_BYTES_PER_FILE_BYTE = 1UL << 10U;

std::size_t textLength(TextArray::Storage storage, const Variable& variable) {
  switch (storage) {
    case TextArray::Storage::Strings:
      return 1;
    case TextArray::Storage::FixedTexts:
      return variable.valueBytes;
    default:
      return variable.shape.empty() ? 1 : variable.shape.front();
  }
}

// A text whose length is known is held twice while it is read.
std::size_t textBytes(TextArray::Storage storage, std::size_t length) {
  return storage == TextArray::Storage::Strings
             ? STRING_BYTES
             : memory::boundedSum(sizeof(std::string), memory::boundedProduct(2, length));
}

/// How many dimensions of the variable are none of the array's.
std::size_t innerDimensions(TextArray::Storage storage, const Variable& variable) {
  return storage == TextArray::Storage::Characters && !variable.shape.empty() ? 1 : 0;
}

std::string fillOf(const Variable& variable) {
  return variable.source->options().decode
             ? textAttribute(*variable.source, variable.group, variable.id, "_FillValue")
             : std::string();
}

void cutFilling(std::string& text, char fill) {
  const auto fillsUp = [fill](char character) { return character == '\0' || character == fill; };
  text.erase(std::find_if_not(text.rbegin(), text.rend(), fillsUp).base(), text.end());
}

}  // namespace

TextArray::TextArray(Storage storage, Variable variable, const std::string& name,
                     std::vector<memory::Axis> axes, const std::string& description)
    : FileArray(object_model::ElementType::String, std::move(variable), name, std::move(axes),
                description),
      m_storage(storage),
      m_fill(fillOf(m_variable)),
      m_length(textLength(storage, m_variable)),
      m_window(
          m_variable.windows(innerDimensions(storage, m_variable), textBytes(storage, m_length))) {}

std::string TextArray::getValueAsString(const object_model::Tuple& index) const {
  return m_window.at(
      offsetOf(index),
      [this](const memory::Block& block, std::vector<std::string>& texts) {
        m_variable.makeRoom(texts, block.count);
        return m_storage == Storage::Characters ? readCharacters(block, texts.data())
                                                : readTexts(block, texts.data());
      },
      [this](unsigned long bytes) { m_variable.reportRead(bytes); });
}

unsigned long TextArray::readTexts(const memory::Block& block, std::string* texts) const {
  requirePlausibleLength();
  const unsigned long bytes = readHdf5Texts(m_variable, block, texts);
  if (!m_fill.empty()) {
    std::replace(texts, texts + block.count, m_fill, std::string());
  }
  return bytes;
}

unsigned long TextArray::readCharacters(const memory::Block& block, std::string* texts) const {
  requirePlausibleLength();
  std::vector<char> characters;
  m_variable.makeRoom(characters, memory::boundedProduct(block.count, m_length));
  if (!characters.empty()) {
    memory::Block stored = block;
    if (!m_variable.shape.empty()) {
      stored.start.insert(stored.start.begin(), 0);
      stored.extent.insert(stored.extent.begin(), m_length);
    }
    m_variable.read(stored.start.data(), stored.extent.data(), characters.data());
  }
  const char fill = m_fill.empty() ? '\0' : m_fill.front();
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k].assign(characters.data() + k * m_length, m_length);
    cutFilling(texts[k], fill);
  }
  return characters.size();
}

void TextArray::requirePlausibleLength() const {
  const unsigned long fileBytes = m_variable.source->file().bytes();
  if (m_length > memory::boundedProduct(fileBytes, MOST_TEXT_BYTES_PER_FILE_BYTE)) {
    m_variable.source->fail(m_variable.subject() + " claims texts of " + std::to_string(m_length) +
                            " characters, which a file of " + std::to_string(fileBytes) +
                            " bytes cannot hold");
  }
}

}  // namespace quillon::netcdf
