#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "Failure.h"
#include "Output.h"
#include "RunTool.h"

namespace quillon::tools {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::Scratch;
using test::writeContent;
using ::testing::ElementsAre;

std::string failureOf(const std::string& path) {
  try {
    writeToFile("text\n", path);
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
  writeToFile("text\n", m_scratch.path("new"));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text\n");
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
}

TEST_F(OutputTest, NewFileHasTheUsualPermissions) {
  const mode_t mask = ::umask(027);
  writeToFile("text\n", m_scratch.path("new"));
  ::umask(mask);
  EXPECT_EQ(fs::status(m_scratch.path("new")).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(OutputTest, OldContentIsReplacedAndPermissionsStay) {
  writeContent(m_scratch.path("old"), std::string(100, 'x'));
  fs::permissions(m_scratch.path("old"), static_cast<fs::perms>(0604));
  writeToFile("text\n", m_scratch.path("old"));
  EXPECT_EQ(contentOf(m_scratch.path("old")), "text\n");
  EXPECT_EQ(fs::status(m_scratch.path("old")).permissions(), static_cast<fs::perms>(0604));
}

TEST_F(OutputTest, RelativePathsWork) {
  const fs::path before = fs::current_path();
  fs::current_path(m_scratch.path());
  writeToFile("text\n", "new");
  fs::current_path(before);
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text\n");
}

TEST_F(OutputTest, FileBehindALinkIsReplacedAndTheLinkStays) {
  writeContent(m_scratch.path("old"), "old");
  fs::create_symlink("old", m_scratch.path("link"));
  writeToFile("text\n", m_scratch.path("link"));
  EXPECT_TRUE(fs::is_symlink(m_scratch.path("link")));
  EXPECT_EQ(contentOf(m_scratch.path("old")), "text\n");
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
  EXPECT_EQ(failureOf("/dev/full"), "Cannot write '/dev/full': No space left on device");
}

TEST_F(OutputTest, DeviceIsWrittenToAndStaysADevice) {
  writeToFile("text\n", "/dev/null");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
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
