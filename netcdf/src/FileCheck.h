#pragma once

#include <string>

namespace quillon::netcdf {

/// What is known of a file before the library opens it.
struct FileFacts {
  unsigned long bytes = 0;
  bool isClassic = false;  ///< and therefore checked as a whole
};

/// Refuses a file that is missing, no regular file, empty or visibly damaged. @throws Error
FileFacts checkFile(const std::string& path);

/// @throws Error naming the file; `what` says what is wrong.
[[noreturn]] void failReading(const std::string& path, const std::string& what);

}  // namespace quillon::netcdf
