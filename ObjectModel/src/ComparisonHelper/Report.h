#pragma once

#include <object_model/ElementType.h>

#include <complex>
#include <string>

#include "ComparisonHelper/ValueText.h"

namespace object_model::helper {

inline void appendText(std::string& text, const char* part) { text += part; }
inline void appendText(std::string& text, const std::string& part) { text += part; }
inline void appendText(std::string& text, unsigned long part) { text += std::to_string(part); }
inline void appendText(std::string& text, long part) { text += std::to_string(part); }
inline void appendText(std::string& text, double part) { text += std::to_string(part); }
inline void appendText(std::string& text, bool part) { text += part ? '1' : '0'; }
inline void appendText(std::string& text, const Tuple& part) { text += tupleToString(part); }
inline void appendText(std::string& text, const std::complex<double>& part) {
  text += complexToString(part);
}
inline void appendText(std::string& text, ElementType part) {
  text += std::to_string(static_cast<int>(part));
}

/// The parts, written as reports write them, one after the other.
template <class... Parts>
std::string sentenceOf(const Parts&... parts) {
  std::string text;
  (appendText(text, parts), ...);
  return text;
}

/// Replaces `*message` with the sentence made of `parts`, unless `message` is null, which costs
/// nothing. Returns false, the result of a comparison that found a difference.
template <class... Parts>
bool reportDifference(std::string* message, const Parts&... parts) {
  if (message != nullptr) {
    *message = sentenceOf(parts...);
  }
  return false;
}

/// Runs `walk`, then `report`, which leaves the sentence of the last difference that `walk` met.
///
/// Only the last difference counts, so its sentence is built once, afterwards. When `walk` throws,
/// `report` runs all the same, and what `walk` threw goes on to the caller even if memory is then
/// too short for a sentence.
template <class Walk, class Report>
void runThenReport(const Walk& walk, const Report& report) {
  try {
    walk();
  } catch (...) {
    try {
      report();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the first exception is the one to pass on
    }
    throw;
  }
  report();
}

}  // namespace object_model::helper
