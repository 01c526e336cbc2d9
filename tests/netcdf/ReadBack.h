#pragma once

#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>
#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::netcdf {

/// Whether the reader gives attributes and descriptions and decodes times, missing values and truth
/// values. Where it does not, these are neither written by the tests of round trips nor compared.
inline constexpr bool READER_IS_WHOLE = false;

/// What of a dictionary is not the same in the file that was made of it; "" where all is.
inline std::string differencesReadBack(const object_model::Dictionary& dictionary,
                                       const std::string& path) {
  compare::Options options;
  options.attributes = READER_IS_WHOLE;
  const File file(path);
  const compare::Report report = compare::compare(dictionary, file.root(), options);
  return report.same ? "" : compare::text(report);
}

}  // namespace quillon::netcdf
