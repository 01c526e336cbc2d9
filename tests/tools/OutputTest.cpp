#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "Failure.h"
#include "Output.h"
#include "RunTool.h"
#include "support/PseudoTerminal.h"

namespace quillon::tools {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using ::test::PseudoTerminal;
using test::Scratch;
using test::writeContent;
using ::testing::ElementsAre;

std::string failureOf(const std::string& path) {
  try {
    writeOutput("text\n", path);
  } catch (const Failure& error) {
    return error.what();
  }
  return "no failure";
}

class OutputTest : public ::testing::Test {
 protected:
  Scratch m_scratch;
};

TEST_F(OutputTest, NewFileHoldsTheTextAlone) {
  writeOutput("text\n", m_scratch.path("new"));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text\n");
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
}

TEST_F(OutputTest, NewFileHasTheUsualPermissions) {
  const mode_t mask = ::umask(027);
  writeOutput("text\n", m_scratch.path("new"));
  ::umask(mask);
  EXPECT_EQ(fs::status(m_scratch.path("new")).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(OutputTest, OldContentIsReplacedAndPermissionsStay) {
  writeContent(m_scratch.path("old"), std::string(100, 'x'));
  fs::permissions(m_scratch.path("old"), static_cast<fs::perms>(0604));
  writeOutput("text\n", m_scratch.path("old"));
  EXPECT_EQ(contentOf(m_scratch.path("old")), "text\n");
  EXPECT_EQ(fs::status(m_scratch.path("old")).permissions(), static_cast<fs::perms>(0604));
}

TEST_F(OutputTest, RelativePathsWork) {
  const fs::path before = fs::current_path();
  fs::current_path(m_scratch.path());
  writeOutput("text\n", "new");
  fs::current_path(before);
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text\n");
}

TEST_F(OutputTest, FileBehindALinkIsReplacedAndTheLinkStays) {
  writeContent(m_scratch.path("old"), "old");
  fs::create_symlink("old", m_scratch.path("link"));
  writeOutput("text\n", m_scratch.path("link"));
  EXPECT_TRUE(fs::is_symlink(m_scratch.path("link")));
  EXPECT_EQ(contentOf(m_scratch.path("old")), "text\n");
}

TEST_F(OutputTest, MissingFileBehindALinkIsMadeAndTheLinkStays) {
  fs::create_symlink("new", m_scratch.path("link"));
  writeOutput("text\n", m_scratch.path("link"));
  EXPECT_TRUE(fs::is_symlink(m_scratch.path("link")));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text\n");
}

TEST_F(OutputTest, PiecesFollowEachOther) {
  Output output(m_scratch.path("new"));
  for (const char* piece : {"one, ", "", "two\n"}) {
    output.write(piece);
  }
  EXPECT_THAT(m_scratch.entries(), ElementsAre());  // not before it is whole
  output.commit();
  EXPECT_EQ(contentOf(m_scratch.path("new")), "one, two\n");
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
}

TEST_F(OutputTest, WhatIsNotCommittedLeavesTheOldContent) {
  writeContent(m_scratch.path("old"), "old");
  Output(m_scratch.path("old")).write("new");
  EXPECT_EQ(contentOf(m_scratch.path("old")), "old");
  EXPECT_THAT(m_scratch.entries(), ElementsAre("old"));
}

TEST_F(OutputTest, DescriptorIsContinued) {
  writeContent(m_scratch.path("log"), "before\n");
  const int log = ::open(m_scratch.path("log").c_str(), O_WRONLY | O_APPEND);
  writeOutput("text\n", "/dev/fd/" + std::to_string(log));
  EXPECT_EQ(::write(log, "after\n", 6), 6);
  ::close(log);
  EXPECT_EQ(contentOf(m_scratch.path("log")), "before\ntext\nafter\n");
}

TEST_F(OutputTest, DescriptorThatIsNotOpenIsAFailure) {
  EXPECT_EQ(failureOf("/dev/fd/999"), "Cannot write '/dev/fd/999': Bad file descriptor");
}

/// Reads a pipe to its end, a little at a time, in a thread.
std::future<std::string> slowReader(int descriptor) {
  return std::async(std::launch::async, [descriptor] {
    std::string text;
    std::vector<char> part(4096);
    for (ssize_t count = 0; (count = ::read(descriptor, part.data(), part.size())) > 0;) {
      text.append(part.data(), static_cast<std::size_t>(count));
      ::usleep(100);
    }
    ::close(descriptor);
    return text;
  });
}

TEST_F(OutputTest, PipeThatDoesNotWaitGetsAll) {
  int ends[2] = {};
  ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
  ASSERT_EQ(::fcntl(ends[0], F_SETFL, 0), 0);
  std::future<std::string> read = slowReader(ends[0]);
  const std::string text(1U << 20U, 'x');
  writeOutput(text, "/dev/fd/" + std::to_string(ends[1]));
  ::close(ends[1]);
  EXPECT_TRUE(read.get() == text);
}

TEST_F(OutputTest, NamedPipeIsWrittenTo) {
  const std::string path = m_scratch.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  std::future<std::string> read =
      std::async(std::launch::async, [&path] { return contentOf(path); });
  writeOutput("text\n", path);
  EXPECT_EQ(read.get(), "text\n");
  EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(OutputTest, PipeWithoutAReaderWantsNoMore) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  int ends[2] = {};
  ASSERT_EQ(::pipe(ends), 0);
  Output output("/dev/fd/" + std::to_string(ends[1]));
  output.write("text\n");
  EXPECT_TRUE(output.isWanted());
  ::close(ends[0]);
  output.write("text\n");
  EXPECT_FALSE(output.isWanted());
  output.write("text\n");
  output.commit();
  ::close(ends[1]);
  std::signal(SIGPIPE, before);
}

TEST_F(OutputTest, MissingDirectoryIsAFailure) {
  const std::string path = m_scratch.path("none/new");
  EXPECT_EQ(failureOf(path), "Cannot write '" + path + "': No such file or directory");
}

TEST_F(OutputTest, DirectoryIsAFailureAndStays) {
  EXPECT_EQ(failureOf(m_scratch.path()), "Cannot write '" + m_scratch.path() + "': Is a directory");
}

TEST_F(OutputTest, FileAsDirectoryIsAFailure) {
  writeContent(m_scratch.path("old"), "old");
  EXPECT_EQ(failureOf(m_scratch.path("old/new")),
            "Cannot write '" + m_scratch.path("old/new") + "': Not a directory");
}

TEST_F(OutputTest, DirectoryThatTakesNoFilesIsAFailure) {
  EXPECT_EQ(failureOf("/proc/table.txt"),
            "Cannot write '/proc/table.txt': No such file or directory");
}

TEST_F(OutputTest, FullDeviceIsAFailure) {
  const int full = ::open("/dev/full", O_WRONLY);
  const std::string path = "/dev/fd/" + std::to_string(full);
  EXPECT_EQ(failureOf(path), "Cannot write '" + path + "': No space left on device");
  ::close(full);
}

TEST_F(OutputTest, DeviceIsWrittenToAndStaysADevice) {
  const PseudoTerminal terminal;
  writeOutput("text\n", terminal.path());
  EXPECT_EQ(terminal.shown(), "text\r\n");
  EXPECT_TRUE(fs::is_character_file(terminal.path()));
}

TEST_F(OutputTest, FileThatIsReadCannotBeTheOutput) {
  writeContent(m_scratch.path("a"), "");
  writeContent(m_scratch.path("b"), "");
  fs::create_hard_link(m_scratch.path("a"), m_scratch.path("c"));
  EXPECT_THROW(requireOtherFile(m_scratch.path("a"), m_scratch.path("a")), Failure);
  EXPECT_THROW(requireOtherFile(m_scratch.path("c"), m_scratch.path("a")), Failure);
  EXPECT_NO_THROW(requireOtherFile(m_scratch.path("b"), m_scratch.path("a")));
  EXPECT_NO_THROW(requireOtherFile(m_scratch.path("none"), m_scratch.path("a")));
}

TEST(PrepareOutputTest, NothingOpenedLaterTakesTheDescriptorOfAClosedStream) {
  const pid_t process = ::fork();
  if (process == 0) {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      ::close(descriptor);
    }
    prepareOutput();
    const bool isWritable = ::write(STDOUT_FILENO, "x", 1) == 1;
    ::_exit(::open("/dev/null", O_RDONLY) > STDERR_FILENO && !isWritable ? 0 : 1);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace quillon::tools
