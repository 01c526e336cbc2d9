#pragma once

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

namespace test {

/// A device whose file nobody can replace, not even root: what takes it for a regular file by
/// mistake does no harm, other than with /dev/null.
class PseudoTerminal {
 public:
  PseudoTerminal() : m_terminal(::posix_openpt(O_RDWR | O_NOCTTY)) {
    ::unlockpt(m_terminal);
    ::ptsname_r(m_terminal, m_path.data(), m_path.size());
  }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() { ::close(m_terminal); }

  std::string path() const { return m_path.data(); }

  /// What was written to it, with "\r\n" for each end of a line; empty if nothing is there within
  /// seconds.
  std::string shown() const {
    constexpr int MOST_MILLISECONDS = 5000;
    pollfd waiting{m_terminal, POLLIN, 0};
    if (::poll(&waiting, 1, MOST_MILLISECONDS) <= 0) {
      return {};
    }
    std::array<char, 256> buffer{};
    const ssize_t count = ::read(m_terminal, buffer.data(), buffer.size());
    return {buffer.data(), count < 0 ? 0 : static_cast<std::size_t>(count)};
  }

 private:
  int m_terminal;
  std::array<char, 64> m_path{};
};

}  // namespace test
