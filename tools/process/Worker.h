#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>

namespace quillon::tools {

/// What the process that does the work may take.
struct WorkLimits {
  /// How much more memory than it has at the start.
  std::size_t memory;
  /// How much processor time it may use between two steps of progress while files are being read,
  /// beside a quarter of a second for each mebibyte of these: one read may be of a whole file.
  std::chrono::milliseconds timeWithoutProgress{30000};
};

/// Makes this process the one that does the work of `parent`: it ends with it, dies of a crash
/// without a report or a core file, fails to get more memory than `limits` allow, and ends itself,
/// with a note, when it uses processor time and gets nowhere.
void becomeWorker(pid_t parent, const WorkLimits& limits);

}  // namespace quillon::tools
