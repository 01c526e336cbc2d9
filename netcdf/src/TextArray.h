#pragma once

#include "FileArray.h"
#include "Window.h"

namespace quillon::netcdf {

/// An array over a variable of texts: strings, or characters whose last dimension is the texts'
/// length.
class TextArray final : public FileArray {
 public:
  enum class Storage { Strings, Characters };

  TextArray(Storage storage, Variable variable, const std::string& name,
            std::vector<memory::Axis> axes, const std::string& description);

  std::string getValueAsString(const object_model::Tuple& index) const override;

 private:
  /// Both return how many bytes the texts take in the file.
  unsigned long readStrings(const memory::Block& block, std::string* texts) const;
  unsigned long readCharacters(const memory::Block& block, std::string* texts) const;
  void requirePlausibleLength() const;

  Storage m_storage;
  std::size_t m_length;  // of a text of characters
  mutable Window<std::string> m_window;
};

}  // namespace quillon::netcdf
