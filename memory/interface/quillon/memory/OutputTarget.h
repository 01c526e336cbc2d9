/// @file
/// Where output to a path goes.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace quillon::memory {

/// What a path for output leads to, behind all links.
struct OutputTarget {
  int descriptor = -1;         ///< of this process, as in /dev/stdout and /dev/fd/3; -1 for others
  std::filesystem::path file;  ///< where else: a file, there or not, in a directory that is there
  std::error_code error;       ///< why it leads nowhere
};

/// Follows the links from `path` on, to what is not there as well.
/// Threads: may run concurrently.
[[nodiscard]] OutputTarget outputTargetOf(const std::string& path);

/// Why the file at `path`, which has this status, cannot be replaced by another: the error number,
/// 0 when it can.
[[nodiscard]] int errorOfReplacing(const std::string& path, const struct stat& status);

}  // namespace quillon::memory
