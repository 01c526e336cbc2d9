#pragma once

#include <chrono>
#include <functional>
#include <ostream>

namespace quillon::tools {

/// Shows on a terminal how far a long piece of work is. Short work shows nothing, and neither does
/// any work when the stream is no terminal.
class Progress {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// Starts the clock. @param total how much work there is, in any unit.
  Progress(std::ostream& stream, bool isTerminal, unsigned long total,
           Clock clock = std::chrono::steady_clock::now);
  /// Takes what is shown off the terminal.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// So much more of the work is done.
  void advance(unsigned long amount);

 private:
  void show();

  std::ostream& m_stream;
  bool m_isTerminal;
  unsigned long m_total;
  unsigned long m_done = 0;
  Clock m_clock;
  std::chrono::steady_clock::time_point m_nextUpdate;
  bool m_isShown = false;
};

}  // namespace quillon::tools
