#include "ComparisonHelper/ValueText.h"

#include <object_model/Tuple.h>

namespace object_model::helper {

std::string tupleToString(const Tuple& tuple) {
  static const std::string VALUES_SEPARATOR = ";";
  static const std::string STRING_EMPTY = "empty";

  std::string text;
  text.reserve(16);
  text += '(';
  const unsigned long size = tuple.size();
  text += size == 0 ? STRING_EMPTY : std::to_string(tuple[0]);
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
