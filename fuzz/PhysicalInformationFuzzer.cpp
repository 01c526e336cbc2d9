// The law: a text is one of the fifteen names, and gives the kind at its place among them, or it is
// refused with a message that repeats it.

#include <object_model/InvalidCall.h>
#include <object_model/PhysicalInformation.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "Law.h"

namespace {

const std::vector<std::string> NAMES = {
    "UNKNOWN",   "LENGTH",           "AREA",    "VOLUME",     "ANGLE",
    "INTENSITY", "SQUARE_INTENSITY", "BOOLEAN", "COORDINATE", "COEFFICIENT",
    "COUNT",     "FRACTION",         "INDEX",   "PERCENTAGE", "RATIO"};

std::string expectedFor(const std::string& text) {
  const auto found = std::find(NAMES.begin(), NAMES.end(), text);
  return found == NAMES.end() ? "Invalid PhysicalInformation (" + text + ")"
                              : std::to_string(found - NAMES.begin());
}

std::string actualFor(const std::string& text) {
  try {
    const auto information = object_model::helper::determinePhysicalInformation(text.c_str());
    object_model::helper::determinePhysicalDimension(information);
    return std::to_string(static_cast<int>(information));
  } catch (const object_model::InvalidCall& error) {
    return error.what();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::vector<char> characters(bytes, bytes + size);
  // Up to the first NUL, as the library sees it.
  const std::string text = std::string(characters.data(), size).c_str();
  quillon::fuzz::requireEqual(actualFor(text), expectedFor(text));
  return 0;
}
