#include "FactTexts.h"

#include <quillon/memory/NumberText.h>
#include <quillon/memory/Paths.h>

#include <array>
#include <type_traits>
#include <variant>

namespace quillon::netcdf {
namespace {

/// netCDF's names of the stored types; none for those that nobody wonders about, int and double.
constexpr std::array<const char*, 10> TYPE_NAMES = {"byte",   "short", nullptr,  "int64", "ubyte",
                                                    "ushort", "uint",  "uint64", "float", nullptr};

template <class T>
const char* typeName() {
  if constexpr (memory::IS_STORED_TYPE<T>) {
    return TYPE_NAMES.at(static_cast<std::size_t>(memory::StoredTraits<T>::TYPE));
  }
  // That of texts; never run: it is, but the count shown is that of what is made for numbers
  return nullptr;
}

template <class T>
std::string elementInWords(const T& element) {
  if constexpr (std::is_same_v<T, std::string>) {
    return "\"" + element + "\"";
  } else {
    return memory::shortestText(element);
  }
}

template <class T>
std::string listInWords(const std::vector<T>& elements) {
  std::string text;
  for (const T& element : elements) {
    text += (text.empty() ? "" : ", ") + elementInWords(element);
  }
  const char* const type = typeName<T>();
  return type == nullptr ? text : text + " (" + type + ")";
}

std::string listInWords(const std::string& text) { return elementInWords(text); }

std::string packingInWords(const Packing& packing) {
  std::string text = "stored";
  if (packing.scaleFactor) {
    text += " * " + memory::shortestText(*packing.scaleFactor);
  }
  if (packing.addOffset) {
    text += " + " + memory::shortestText(*packing.addOffset);
  }
  return text;
}

std::string chunksInWords(const std::vector<unsigned long>& extents) {
  std::string text;
  for (const unsigned long extent : extents) {
    text += (text.empty() ? "" : " x ") + std::to_string(extent);
  }
  return text;
}

}  // namespace

std::string nameOf(const VariableFacts& variable) {
  return std::string(memory::lastNameOf(variable.path));
}

std::string dimensionsInWords(const VariableFacts& variable) {
  std::string text;
  for (const DimensionFacts& dimension : variable.dimensions) {
    text += (text.empty() ? "" : " ") + dimension.name + "=" + std::to_string(dimension.size) +
            (dimension.isUnlimited ? " (unlimited)" : "");
  }
  return text.empty() && !variable.type.empty() ? "single value" : text;
}

std::string inWords(const Compression& compression) {
  std::string text = compression.isShuffled ? "shuffle" : "";
  if (compression.deflateLevel > 0) {
    text += (text.empty() ? "deflate " : ", deflate ") + std::to_string(compression.deflateLevel);
  }
  for (const FilterFacts& filter : compression.filters) {
    text += (text.empty() ? "" : ", ") + filter.name;
    for (const unsigned int parameter : filter.parameters) {
      text += " " + std::to_string(parameter);
    }
  }
  return text;
}

std::string inWords(const memory::AttributeValue& value) {
  return std::visit([](const auto& content) { return listInWords(content); }, value);
}

std::vector<std::pair<std::string, std::string>> detailsOf(const VariableFacts& variable) {
  std::vector<std::pair<std::string, std::string>> details;
  if (variable.packing.scaleFactor || variable.packing.addOffset) {
    details.emplace_back("packing", packingInWords(variable.packing));
  }
  if (variable.fill) {
    details.emplace_back("fill", inWords(*variable.fill));
  }
  if (!variable.chunks.empty()) {
    details.emplace_back("chunks", chunksInWords(variable.chunks));
  }
  if (const std::string compression = inWords(variable.compression); !compression.empty()) {
    details.emplace_back("compression", compression);
  }
  if (!variable.isReadable) {
    details.emplace_back("cannot be read", variable.reason);
  }
  return details;
}

}  // namespace quillon::netcdf
