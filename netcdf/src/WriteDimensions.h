#pragma once

#include <object_model/Array.h>
#include <quillon/memory/Axes.h>

#include <functional>
#include <string>
#include <vector>

#include "WriteCoordinates.h"
#include "WritePlan.h"

namespace quillon::netcdf {

/// An array of a group, with a name for each of its axes.
struct Member {
  std::string name;
  std::string path;
  const object_model::Array* array = nullptr;
  std::vector<memory::AxisFacts> axes;  ///< dimension 0 first
};

/// Whether a group has an entry of that name.
using IsTaken = std::function<bool(const std::string& name)>;

/// Names the axes without a name `dim_0`, `dim_1`, …, slowest first, so that axes of one name have
/// one size and those of one array have different names, none
/// that is taken.
void nameAxes(std::vector<Member>& members, const IsTaken& isTaken);

/// Refuses names of axes that no file takes, and two sizes for one name. @throws Refusal
void requireAgreeingAxes(const std::vector<Member>& members);

/// The dimension of `group` for an axis of which it has none yet: one of a group around it, or a
/// new one. `isOwn` says that the group has a variable of the dimension's coordinates itself;
/// `coordinates`, which may be null, are those that its arrays have.
DimensionPlace dimensionFor(const memory::AxisFacts& axis, bool isOwn,
                            const object_model::Array* coordinates, std::size_t group, Plan& plan);

}  // namespace quillon::netcdf
