#pragma once

#include <object_model/Array.h>
#include <object_model/BulkValues.h>
#include <object_model/Dictionary.h>
#include <quillon/memory/Facets.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon::netcdf {

/// A dimension to be made in a group.
struct PlannedDimension {
  std::string name;
  unsigned long size = 0;
};

/// Which dimension of which group.
struct DimensionPlace {
  std::size_t group = 0;
  std::size_t dimension = 0;

  bool operator==(const DimensionPlace& other) const {
    return group == other.group && dimension == other.dimension;
  }
};

/// A variable to be made.
struct PlannedVariable {
  std::string name;
  std::string path;                                        ///< such as "/cells/area"
  const object_model::Array* array = nullptr;              ///< where its values come from
  std::shared_ptr<const object_model::Array> coordinates;  ///< keeps `array`, of coordinates
  std::vector<unsigned long> shape;                        ///< dimension 0 first
  std::optional<object_model::StoredType> type;            ///< of its values; none for texts
  std::vector<memory::Attribute> attributes;
  std::vector<DimensionPlace> dimensions;  ///< in the file's order, the slowest first

  /// Whether it lies along that dimension alone.
  bool isAlong(DimensionPlace place) const {
    return dimensions == std::vector<DimensionPlace>{place};
  }
};

/// A group to be made.
struct PlannedGroup {
  std::string name;
  std::string path;        ///< such as "/cells"
  std::size_t parent = 0;  ///< the group around it; of the root the root
  std::vector<memory::Attribute> attributes;
  std::vector<PlannedDimension> dimensions;
  std::vector<PlannedVariable> variables;
};

/// All groups of a file, each behind the one around it.
using Plan = std::vector<PlannedGroup>;

/// What a file of the dictionary consists of. Everything but the values is asked for here.
/// @throws Refusal for what a netCDF file cannot hold.
Plan planOf(const object_model::Dictionary& dictionary);

}  // namespace quillon::netcdf
