#pragma once

#include <quillon/netcdf/File.h>
#include <quillon/tables/Request.h>

#include <string>
#include <vector>

#include "Arguments.h"

namespace quillon::tools {

/// Opens a file for a verb. It is noted as the one that is being read, and each read as progress.
/// @throws netcdf::Error as the constructor of the file does.
netcdf::File openFile(const std::string& path, netcdf::OpenOptions options = {});

/// How verbs read: decoded, or with `raw` values as they are stored.
netcdf::OpenOptions readingOptions(bool raw);

/// The same for what is held in memory as a whole, or read in an order that is not the file's:
/// hopping between windows would read the file once for each value.
netcdf::OpenOptions readingWhole(bool raw);

/// The group in the open file. @throws Failure that offers the nearest of the file's groups when
/// there is none.
memory::Dictionary& groupOf(netcdf::File& file, const FileGroup& input);

/// A variable that is left out of what is shown.
using PassedOver = tables::Unreadable;

/// The variables of `group` itself that the reader could not make arrays of.
std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped);

}  // namespace quillon::tools
