#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

/// Runs the tool with a terminal as standard error and gives what appears there.
std::string onTerminal(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), QUILLON_TOOL);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  pointers.push_back(nullptr);
  int terminal = -1;
  const pid_t process = ::forkpty(&terminal, nullptr, nullptr, nullptr);
  if (process == 0) {
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, STDOUT_FILENO);
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
  }
  std::string shown;
  char buffer[256];
  for (ssize_t count = 0; (count = ::read(terminal, buffer, sizeof buffer)) > 0;) {
    shown.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(terminal);
  int status = 0;
  ::waitpid(process, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  return shown;
}

class TerminalTest : public ::testing::Test {
 protected:
  /// Compares very many texts, which the file has no room for, as none was ever written.
  std::vector<std::string> longWork() const {
    const std::string path =
        m_scratch.file("long.nc", "dimensions: x = 40000000 ; n = 2 ; variables: char t(x, n) ;");
    return {"diff", path, path};
  }

  Scratch m_scratch;
};

TEST_F(TerminalTest, ShortWorkShowsNothing) {
  EXPECT_EQ(onTerminal({"table", QUILLON_SOURCE_DIR "/data/nuclei_measurements.nc", "--variables",
                        "area"}),
            "");
}

TEST_F(TerminalTest, LongWorkShowsItsProgressAndErasesIt) {
  const auto start = std::chrono::steady_clock::now();
  const std::string shown = onTerminal(longWork());
  if (std::chrono::steady_clock::now() - start < std::chrono::seconds(1)) {
    GTEST_SKIP() << "this machine is too fast for the comparison to take long";
  }
  EXPECT_THAT(shown, HasSubstr("% read"));
  EXPECT_THAT(shown, EndsWith("\r" + std::string(20, ' ') + "\r"));
}

TEST_F(TerminalTest, LongWorkShowsNothingInAPipe) {
  EXPECT_EQ(runTool(longWork(), "/dev/null").err, "");
}

}  // namespace
}  // namespace quillon::tools::test
