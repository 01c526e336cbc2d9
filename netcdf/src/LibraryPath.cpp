#include "LibraryPath.h"

#include "FileCheck.h"

namespace quillon::netcdf {
namespace {

/// Repeated slashes mean one.
std::string withSingleSlashes(const std::string& path) {
  std::string single;
  for (const char c : path) {
    if (c != '/' || single.empty() || single.back() != '/') {
      single += c;
    }
  }
  return single;
}

}  // namespace

std::string faultOfPath(const std::string& path) {
  return path.find('\\') == std::string::npos
             ? std::string()
             : "its path has a backslash, which the netCDF library takes for a slash";
}

std::string libraryPath(const std::string& path) {
  const std::string fault = faultOfPath(path);
  if (!fault.empty()) {
    failReading(path, fault);
  }
  const std::string single = withSingleSlashes(path);
  return single.front() == '/' ? single : "./" + single;
}

}  // namespace quillon::netcdf
