#include "Progress.h"

#include <algorithm>
#include <string>
#include <utility>

#include "WorkNotes.h"

namespace quillon::tools {

namespace {

constexpr std::chrono::milliseconds QUIET_START(500);
constexpr std::chrono::milliseconds BETWEEN_UPDATES(100);
constexpr const char* BLANK = "\r                    \r";  // as wide as the longest text

}  // namespace

Progress::Progress(std::ostream& stream, bool isTerminal, unsigned long total, Clock clock)
    : m_stream(stream),
      m_isTerminal(isTerminal),
      m_total(total),
      m_clock(std::move(clock)),
      m_nextUpdate(m_clock() + QUIET_START) {}

Progress::~Progress() {
  if (m_isShown) {
    m_stream << BLANK << std::flush;
  }
}

void Progress::advance(unsigned long amount) {
  noteProgress();
  m_done += amount;
  if (!m_isTerminal) {
    return;
  }
  const auto now = m_clock();
  if (now >= m_nextUpdate) {
    m_nextUpdate = now + BETWEEN_UPDATES;
    show();
  }
}

void Progress::show() {
  const double share =
      m_total == 0 ? 1.0 : static_cast<double>(m_done) / static_cast<double>(m_total);
  const int percent = static_cast<int>(100.0 * std::min(share, 1.0));
  m_stream << "\rquillon: " + std::to_string(percent) + "% read" << std::flush;
  m_isShown = true;
}

}  // namespace quillon::tools
