#pragma once

#include <object_model/Dictionary.h>
#include <quillon/netcdf/File.h>

#include <string>
#include <vector>

#include "CountedPairs.h"

namespace quillon::tools {

/// One of the two groups that are compared.
struct DiffSide {
  const object_model::Dictionary& group;
  std::string file;                      ///< as the command line names it
  std::vector<netcdf::Skipped> skipped;  ///< the variables of the file that have no array
};

/// What there is to say about two groups.
struct DiffReport {
  std::vector<std::string> differences;  ///< a line for each entry that differs
  std::vector<std::string> passed;       ///< a line for each array with values that passed oddly
  std::vector<std::string> leftOut;      ///< what could not be compared in either file
};

/// Which arrays are counted through. Outlines are always compared.
enum class DiffScope {
  All,
  PartlyCompared  ///< those alone that the library's comparison visits only a part of
};

/// Compares the groups and all groups below.
/// @throws what reading the arrays throws.
DiffReport reportOn(const DiffSide& first, const DiffSide& second, DiffScope scope,
                    CountedPairs& counted);

/// The lines for a reader, a long list ending with how many more there are.
std::string textOf(const std::vector<std::string>& lines);

}  // namespace quillon::tools
