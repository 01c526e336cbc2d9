/// @file
/// What is in a netCDF file, for people and for other programs.
///
/// Dimensions stand in the file's order, the slowest first. Whatever comes from the file is escaped
/// for where it is shown. Threads: any function may run concurrently.
#pragma once

#include <quillon/netcdf/VariableFacts.h>

#include <string>
#include <vector>

namespace quillon::netcdf {

class File;

/// The facts of the group at `path` and of all groups below it, each before those in it.
/// @throws Error as `File::facts` does.
[[nodiscard]] std::vector<GroupFacts> factsBelow(const File& file, const std::string& path);

/// An outline in lines: for each group its path and title, for each variable its name, type,
/// dimensions, unit and description, aligned; below it, where there are any, packing, fill value,
/// chunks and compression, and why it cannot be read.
/// @param groups what is shown.
/// @param withAttributes whether all attributes are listed, too.
[[nodiscard]] std::string outlineText(const std::vector<GroupFacts>& groups, bool withAttributes);

/// The same with all attributes as one JSON object in one line.
/// @param groups what is written.
/// @param file what the file is called.
[[nodiscard]] std::string outlineJson(const std::vector<GroupFacts>& groups,
                                      const std::string& file);

/// The same with all attributes as an HTML document, for bright and dark screens, without a script:
/// a row for each variable, which unfolds to everything else about it.
/// @param groups what is shown.
/// @param file what the file is called.
[[nodiscard]] std::string outlineHtml(const std::vector<GroupFacts>& groups,
                                      const std::string& file);

}  // namespace quillon::netcdf
