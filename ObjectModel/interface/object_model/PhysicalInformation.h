/// @file
/// What a value means physically, and its dimension.
#pragma once

#include <object_model/Export.h>

namespace object_model {

/// What a value means physically. The values are part of the binary interface.
enum class PhysicalInformation : int {
  UNKNOWN = 0,           ///< not known
  LENGTH = 1,            ///< a length
  AREA = 2,              ///< an area
  VOLUME = 3,            ///< a volume
  ANGLE = 4,             ///< an angle; dimensionless
  INTENSITY = 5,         ///< an intensity
  SQUARE_INTENSITY = 6,  ///< a squared intensity
  BOOLEAN = 7,           ///< a truth value
  COORDINATE = 8,        ///< a coordinate; not treated as a length
  COEFFICIENT = 9,       ///< a coefficient; dimensionless
  COUNT = 10,            ///< a number of things; dimensionless
  FRACTION = 11,         ///< a fraction; dimensionless
  INDEX = 12,            ///< an index; dimensionless
  PERCENTAGE = 13,       ///< a percentage; dimensionless
  RATIO = 14,            ///< a ratio; dimensionless
};

/// Which power of length a value carries. The values are part of the binary interface.
enum class PhysicalDimension : int {
  UNDEFINED = 0,       ///< no power of length is defined for it
  DIMENSIONLESS = 1,   ///< length to the power 0
  LENGTH_POWER_1 = 2,  ///< a length
  LENGTH_POWER_2 = 3,  ///< an area
  LENGTH_POWER_3 = 4,  ///< a volume
};

namespace helper {

/// The physical information whose enumerator is spelt `text`: the whole text, in its case.
/// @param text zero-terminated; must not be null.
/// @throws InvalidCall "Invalid PhysicalInformation (TEXT)" for any other text.
/// Threads: may be called from any thread at any time.
OBJECT_MODEL_EXPORT PhysicalInformation determinePhysicalInformation(const char* text);

/// The power of length that a value of `information` carries.
/// @throws InvalidCall "Invalid PhysicalInformation (NUMBER)" for a value outside the enumeration.
/// Threads: may be called from any thread at any time.
OBJECT_MODEL_EXPORT PhysicalDimension determinePhysicalDimension(PhysicalInformation information);

}  // namespace helper

}  // namespace object_model
