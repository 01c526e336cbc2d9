#pragma once

#include "FileArray.h"
#include "Window.h"

namespace quillon::netcdf {

/// An array over a variable of texts: strings, texts of a fixed length, or characters whose last
/// dimension is the texts' length. NULs are cut off the end of a text of characters. Where values
/// are decoded, so are characters that are `_FillValue`, and any text that is `_FillValue` as a
/// whole is empty, for it is missing.
class TextArray final : public FileArray {
 public:
  enum class Storage { Strings, FixedTexts, Characters };

  /// `variable.valueBytes` is the length of texts of a fixed length. To be made under
  /// libraryLock().

  TextArray(Storage storage, Variable variable, const std::string& name,
            std::vector<memory::Axis> axes, const std::string& description);

  std::string getValueAsString(const object_model::Tuple& index) const override;

 private:
  /// Both return how many bytes the texts take in the file.
  unsigned long readTexts(const memory::Block& block, std::string* texts) const;
  unsigned long readCharacters(const memory::Block& block, std::string* texts) const;
  void requirePlausibleLength() const;

  Storage m_storage;
  std::string m_fill;    // `_FillValue`; empty where it stands for nothing
  std::size_t m_length;  // of a text of characters or of a fixed length
  mutable Window<std::string> m_window;
};

}  // namespace quillon::netcdf
