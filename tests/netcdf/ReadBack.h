#pragma once

#include <quillon/compare/Compare.h>
#include <quillon/compare/Text.h>
#include <quillon/memory/Axis.h>
#include <quillon/netcdf/File.h>

#include <string>
#include <vector>

namespace quillon::netcdf {

/// How many values an array along the axes has.
inline unsigned long countOf(const std::vector<memory::Axis>& axes) {
  unsigned long count = 1;
  for (const memory::Axis& axis : axes) {
    count *= axis.size();
  }
  return count;
}

/// What of a dictionary is not the same in the file that was made of it; "" where all is.
inline std::string differencesReadBack(const object_model::Dictionary& dictionary,
                                       const std::string& path) {
  compare::Options options;
  options.attributes = true;
  const File file(path);
  const compare::Report report = compare::compare(dictionary, file.root(), options);
  return report.same ? "" : compare::text(report);
}

}  // namespace quillon::netcdf
