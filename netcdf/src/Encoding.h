#pragma once

#include <quillon/memory/Facets.h>
#include <quillon/memory/TimeUnits.h>
#include <quillon/netcdf/VariableFacts.h>

#include <optional>
#include <string>
#include <vector>

#include "StoredForm.h"

namespace quillon::netcdf {

/// How the values of a variable become what they stand for.
struct Encoding {
  int stored = 0;  ///< the type in which the stored values are taken: `_Unsigned` changes it
  int result = 0;  ///< the type of what they become
  bool isPacked = false;
  double scale = 1;
  double offset = 0;
  std::vector<memory::AttributeValue> missing;       ///< what reads as missing
  std::optional<memory::TimeUnits> times;            ///< for a variable of times
  std::vector<memory::AttributeValue> missingTimes;  ///< numbers of it that stay and are no times
  bool isBoolean = false;
  bool hasNames = false;              ///< whether an enumeration's values are read as their names
  std::vector<std::string> consumed;  ///< the attributes that are told by the rest

  /// Whether numbers are more than the stored ones.
  bool changesNumbers() const { return isPacked || !missing.empty(); }
};

/// Whether the same stored bytes become the same numbers, where both become numbers of one type.
bool decodeAlike(const Encoding& first, const Encoding& second);

/// What the numbers of a variable with these attributes mean as times; none where they are no
/// times.
std::optional<memory::TimeUnits> timeUnitsOf(const std::vector<memory::Attribute>& attributes);

/// What the attributes `scale_factor` and `add_offset` say, where each is one number.
Packing packingOf(const std::vector<memory::Attribute>& attributes);

/// How a variable of the type `form` with these attributes is to be read. Without
/// OpenOptions::decode its values stay as they are stored.
Encoding encodingOf(const StoredForm& form, const std::vector<memory::Attribute>& attributes,
                    const OpenOptions& options);

}  // namespace quillon::netcdf
