#pragma once

#include <quillon/netcdf/File.h>

#include <string>

namespace quillon::tools {

/// Opens a file for a verb. It is noted as the one that is being read, and each read as progress.
/// @throws netcdf::Error as the constructor of the file does.
netcdf::File openFile(const std::string& path, netcdf::OpenOptions options = {});

}  // namespace quillon::tools
