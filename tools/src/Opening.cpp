#include "Opening.h"

#include <quillon/memory/Nearest.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/Wording.h>

#include <utility>

#include "Failure.h"
#include "Memory.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::inQuotes;

netcdf::File openFile(const std::string& path, netcdf::OpenOptions options) {
  noteReading({path});
  options.onRead = [](unsigned long /*bytes*/) { noteProgress(); };
  return netcdf::File(path, options);
}

netcdf::OpenOptions readingOptions(bool raw) {
  netcdf::OpenOptions options;
  options.decode = !raw;
  return options;
}

netcdf::OpenOptions readingWhole(bool raw) {
  netcdf::OpenOptions options = readingOptions(raw);
  options.windowBytes = physicalMemory();
  return options;
}

memory::Dictionary& groupOf(netcdf::File& file, const FileGroup& input) {
  try {
    return file.group(input.group);
  } catch (const netcdf::Error&) {
    const std::vector<std::string> paths = memory::groupsBelow(file.root());
    const std::string start = inQuotes(input.file) + " has no group " + inQuotes(input.group);
    throw Failure(paths.empty() ? start + ", only the root group"
                                : start + memory::offerOf(input.group, paths));
  }
}

std::vector<PassedOver> skippedIn(const object_model::Data& group,
                                  const std::vector<netcdf::Skipped>& skipped) {
  const std::string start = memory::pathOf(group, {});
  std::vector<PassedOver> result;
  for (const netcdf::Skipped& variable : skipped) {
    if (variable.path.rfind(start, 0) == 0 &&
        variable.path.find('/', start.size()) == std::string::npos) {
      result.push_back({variable.path.substr(start.size()), variable.reason});
    }
  }
  return result;
}

}  // namespace quillon::tools
