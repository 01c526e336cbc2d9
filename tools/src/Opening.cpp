#include "Opening.h"

#include <utility>

#include "WorkNotes.h"

namespace quillon::tools {

netcdf::File openFile(const std::string& path, netcdf::OpenOptions options) {
  noteReading({path});
  options.onRead = [](unsigned long /*bytes*/) { noteProgress(); };
  return netcdf::File(path, options);
}

}  // namespace quillon::tools
