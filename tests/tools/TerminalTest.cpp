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

/// Runs a shell command, in which $QUILLON is the tool, at a terminal of so many columns.
std::string atTerminal(const std::string& command, int columns) {
  const winsize size = {24, static_cast<unsigned short>(columns), 0, 0};
  int terminal = -1;
  const pid_t process = ::forkpty(&terminal, nullptr, nullptr, &size);
  if (process == 0) {
    ::setenv("QUILLON", QUILLON_TOOL, 1);
    ::setenv("TERM", "xterm", 1);
    ::unsetenv("NO_COLOR");
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
  }
  std::string shown;
  char buffer[256];
  for (ssize_t count = 0; (count = ::read(terminal, buffer, sizeof buffer)) > 0;) {
    shown.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(terminal);
  ::waitpid(process, nullptr, 0);
  for (std::size_t end = shown.find('\r'); end != std::string::npos; end = shown.find('\r', end)) {
    shown.erase(end, 1);
  }
  return shown;
}

const std::string NUCLEI_ARGUMENT = QUILLON_SOURCE_DIR "/data/nuclei_measurements.nc ";

TEST(TerminalWidthTest, ColumnsThatDoNotFitAreDots) {
  const std::string command =
      "$QUILLON table " + NUCLEI_ARGUMENT + "--variables area,perimeter,centroid,euler_number -n 1";
  EXPECT_EQ(atTerminal(command, 40),
            "label  area  ...  centroid[point=1]\n"
            "        px2  ...                 px\n"
            "    0   111  ...            128.847\n"
            "[85 rows x 6 columns]\n");
  EXPECT_EQ(atTerminal(command, 80),
            "label  area  perimeter  euler_number  centroid[point=0]  centroid[point=1]\n"
            "        px2         px             1                 px                 px\n"
            "    0   111    41.1127             1            15.3964            128.847\n"
            "[85 rows x 6 columns]\n");
  EXPECT_EQ(atTerminal(command, 200), atTerminal(command, 80));
  EXPECT_EQ(atTerminal("stty cols 0; COLUMNS=40 " + command, 80), atTerminal(command, 40));
}

TEST(TerminalWidthTest, APipeHasNoWidth) {
  const std::string command = "$QUILLON table " + NUCLEI_ARGUMENT + "-n 1";
  EXPECT_EQ(atTerminal(command + " | cat", 40), runShell(command).out);
  EXPECT_EQ(atTerminal(command + " --output /dev/stdout", 40), atTerminal(command, 40));
}

TEST(TerminalWidthTest, WideAndCombiningNamesStayAligned) {
  const Scratch scratch;
  const std::string path = scratch.file(
      "names.nc",
      "dimensions: x = 2 ; variables: int 面積(x) ; int q\xCC\x81t(x) ; string 名前(x) ; "
      "data: 面積 = 1, 2 ; q\xCC\x81t = 3, 4 ; 名前 = \"東京\", \"a\" ;");
  for (const int columns : {40, 80, 200}) {
    EXPECT_EQ(atTerminal("$QUILLON table " + path, columns),
              "x  面積  q\xCC\x81t  名前\n"
              "0     1   3  東京\n"
              "1     2   4  a\n"
              "[2 rows x 4 columns]\n");
  }
}

TEST(TerminalColorTest, DifferencesHaveColorsAtATerminalAlone) {
  const Scratch scratch;
  scratch.file("a.nc", "variables: int v ; data: v = 1 ;");
  scratch.file("b.nc", "variables: int v ; data: v = 2 ;");
  const std::string start = "cd " + scratch.path() + "; ";
  const std::string plain = "/v: 1 of 1 values differ; the largest delta is 1: 1 and 2\n";
  const std::string colored =
      "\x1b[1m/v\x1b[0m: 1 of 1 values differ; the largest delta is 1: \x1b[31m1\x1b[0m and "
      "\x1b[32m2\x1b[0m\n";
  EXPECT_EQ(atTerminal(start + "$QUILLON diff a.nc b.nc", 80), colored);
  EXPECT_EQ(atTerminal(start + "NO_COLOR= $QUILLON diff a.nc b.nc", 80), colored);
  EXPECT_EQ(atTerminal(start + "NO_COLOR=1 $QUILLON diff a.nc b.nc", 80), plain);
  EXPECT_EQ(atTerminal(start + "TERM=dumb $QUILLON diff a.nc b.nc", 80), plain);
  EXPECT_EQ(atTerminal(start + "$QUILLON diff a.nc b.nc | cat", 80), plain);
  EXPECT_EQ(atTerminal(start + "$QUILLON diff a.nc b.nc -o out; cat out", 80), plain);
}

TEST(TerminalEscapeTest, TheContractsTextIsEscapedAtATerminalAlone) {
  const Scratch scratch;
  const std::string path = scratch.file("a.nc",
                                        "dimensions: x = 1 ; variables: int a\xE2\x80\xAE"
                                        "b(x) ; data: a\xE2\x80\xAE"
                                        "b = 1 ;");
  const std::string command = "$QUILLON table " + path + " --format contract";
  EXPECT_THAT(atTerminal(command, 80), HasSubstr("a\\u202eb"));
  EXPECT_THAT(runShell(command).out, HasSubstr("a\xE2\x80\xAE"
                                               "b"));
  const std::string other = scratch.file("b.nc",
                                         "dimensions: x = 1 ; variables: int a\xE2\x80\xAE"
                                         "b(x) ; data: a\xE2\x80\xAE"
                                         "b = 2 ;");
  const std::string diff = "$QUILLON diff " + path + " " + other + " --contract";
  EXPECT_THAT(atTerminal(diff, 80), HasSubstr("Array 'a\\u202eb'"));
  EXPECT_THAT(runShell(diff).out, HasSubstr("Array 'a\xE2\x80\xAE"
                                            "b'"));
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
