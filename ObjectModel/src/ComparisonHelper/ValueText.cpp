#include "ComparisonHelper/ValueText.h"

#include <object_model/Tuple.h>

#include <string_view>

namespace object_model::helper {

std::string tupleToString(const Tuple& tuple) {
  constexpr std::string_view VALUES_SEPARATOR = ";";
  constexpr std::string_view STRING_EMPTY = "empty";

  std::string text;
  text.reserve(16);
  text += '(';
  const unsigned long size = tuple.size();
  if (size == 0) {
    text += STRING_EMPTY;
  } else {
    text += std::to_string(tuple[0]);
  }
  for (unsigned long i = 1; i < size; ++i) {
    text += VALUES_SEPARATOR;
    text += std::to_string(tuple[i]);
  }
  text += ')';
  return text;
}

std::string complexToString(const std::complex<double>& value) {
  return "(" + std::to_string(value.real()) + ";" + std::to_string(value.imag()) + ")";
}

}  // namespace object_model::helper
