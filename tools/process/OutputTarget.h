#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace quillon::tools {

/// What a path for output leads to, behind all links.
struct OutputTarget {
  int descriptor = -1;         ///< of this process, as in /dev/stdout and /dev/fd/3; -1 for others
  std::filesystem::path file;  ///< where else: a file, there or not, in a directory that is there
  std::error_code error;       ///< why it leads nowhere
};

OutputTarget outputTargetOf(const std::string& path);

}  // namespace quillon::tools
