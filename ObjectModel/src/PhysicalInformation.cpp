#include <object_model/InvalidCall.h>
#include <object_model/PhysicalInformation.h>

#include <array>
#include <string>
#include <string_view>

namespace object_model::helper {
namespace {

struct Kind {
  std::string_view text;
  PhysicalDimension dimension;
};

// One row for each enumerator, at the place of its value.
constexpr std::array<Kind, 15> KINDS = {{
    {"UNKNOWN", PhysicalDimension::UNDEFINED},
    {"LENGTH", PhysicalDimension::LENGTH_POWER_1},
    {"AREA", PhysicalDimension::LENGTH_POWER_2},
    {"VOLUME", PhysicalDimension::LENGTH_POWER_3},
    {"ANGLE", PhysicalDimension::DIMENSIONLESS},
    {"INTENSITY", PhysicalDimension::UNDEFINED},
    {"SQUARE_INTENSITY", PhysicalDimension::UNDEFINED},
    {"BOOLEAN", PhysicalDimension::UNDEFINED},
    {"COORDINATE", PhysicalDimension::UNDEFINED},
    {"COEFFICIENT", PhysicalDimension::DIMENSIONLESS},
    {"COUNT", PhysicalDimension::DIMENSIONLESS},
    {"FRACTION", PhysicalDimension::DIMENSIONLESS},
    {"INDEX", PhysicalDimension::DIMENSIONLESS},
    {"PERCENTAGE", PhysicalDimension::DIMENSIONLESS},
    {"RATIO", PhysicalDimension::DIMENSIONLESS},
}};

static_assert(static_cast<std::size_t>(PhysicalInformation::RATIO) == KINDS.size() - 1);

[[noreturn]] void reject(const std::string& what) {
  throw InvalidCall("Invalid PhysicalInformation (" + what + ")");
}

}  // namespace

PhysicalInformation determinePhysicalInformation(const char* text) {
  for (std::size_t value = 0; value < KINDS.size(); ++value) {
    if (KINDS[value].text == text) {
      return static_cast<PhysicalInformation>(value);
    }
  }
  reject(text);
}

PhysicalDimension determinePhysicalDimension(PhysicalInformation information) {
  const auto value = static_cast<unsigned int>(information);
  if (value >= KINDS.size()) {
    reject(std::to_string(static_cast<int>(information)));
  }
  return KINDS[value].dimension;
}

}  // namespace object_model::helper
