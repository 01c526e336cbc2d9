#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::tools {

/// A text in memory that two processes share. It is there as a whole or empty, even where the one
/// that sets it ends in the middle.
class NotedText {
 public:
  static constexpr std::size_t CAPACITY = 2 * 4096 + 16;  // two paths with what joins them

  /// What does not fit is cut off.
  void set(std::string_view text);
  std::string get() const;

 private:
  std::atomic<std::size_t> m_length{0};
  std::array<char, CAPACITY> m_characters{};
};

/// What the process that does the work lets the one that waits for it know, so that this one can
/// say what came to nothing, and tidy up, when the worker is gone. All zero at the start.
struct WorkNotes {
  std::atomic<unsigned long> progress{0};  ///< how often something was read, computed or written
  std::atomic<unsigned> filesRead{0};      ///< how many files are being read: 0, 1 or 2
  std::atomic<unsigned long> bytes{0};     ///< their length
  NotedText files;                         ///< their names, in quotes
  NotedText temporaryFile;                 ///< to be removed if nobody else does
  std::atomic<bool> isStuck{false};        ///< the worker has found that it gets nowhere
  std::atomic<bool> isDone{false};         ///< the work has come to its end
};

/// The notes that are kept now: the process's own, unless it shares others.
WorkNotes& workNotes();

/// Keeps notes in memory that children will share. Threads: to be called before there are any.
/// @throws Failure when there is no memory.
WorkNotes& shareWorkNotes();

/// From now on these files are being read, and nothing else is; at most two. Counts as progress.
void noteReading(const std::vector<std::string>& paths);

/// Something was read, computed or written.
void noteProgress();

/// The file at `path` is to be removed if the process ends; empty when none is any more.
void noteTemporaryFile(const std::string& path);

}  // namespace quillon::tools
