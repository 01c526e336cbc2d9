#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/TemporaryFile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/ScratchDirectory.h"

namespace quillon::memory {
namespace {

using Scratch = test::ScratchDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

void write(const TemporaryFile& file, const std::string& text) {
  ASSERT_EQ(::write(file.descriptor(), text.data(), text.size()),
            static_cast<ssize_t>(text.size()));
}

std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class TemporaryFileTest : public ::testing::Test {
 protected:
  TemporaryFile::OnName remember() {
    return [this](const std::string& path) { m_paths.push_back(path); };
  }

  Scratch m_scratch;
  std::vector<std::string> m_paths;  // that it has told
};

TEST_F(TemporaryFileTest, LeavesNothingUnlessItIsMoved) {
  {
    const TemporaryFile file(m_scratch.path("new"), remember());
    write(file, "text");
  }
  EXPECT_THAT(m_scratch.entries(), IsEmpty());
  EXPECT_THAT(m_paths, IsEmpty());
}

TEST_F(TemporaryFileTest, IsClosedAtItsEnd) {
  for (const auto naming : {TemporaryFile::Naming::WhenMoved, TemporaryFile::Naming::AtOnce}) {
    int descriptor = -1;
    {
      const TemporaryFile file(m_scratch.path("new"), {}, naming);
      descriptor = file.descriptor();
      EXPECT_NE(::fcntl(descriptor, F_GETFD), -1);
    }
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
  }
}

TEST_F(TemporaryFileTest, MayTakeThePlaceOfAStandardInputThatIsClosed) {
  const int before = ::fcntl(0, F_DUPFD_CLOEXEC, 3);
  ::close(0);
  for (const auto naming : {TemporaryFile::Naming::WhenMoved, TemporaryFile::Naming::AtOnce}) {
    const TemporaryFile file(m_scratch.path("new"), {}, naming);
    EXPECT_EQ(file.descriptor(), 0);
    EXPECT_EQ(file.error(), 0);
    EXPECT_EQ(file.path().empty(), naming == TemporaryFile::Naming::WhenMoved);
  }
  EXPECT_EQ(::fcntl(0, F_GETFD), -1);
  if (before != -1) {
    ::dup2(before, 0);
    ::close(before);
  }
}

TEST_F(TemporaryFileTest, IsThereAloneWhenItIsMoved) {
  TemporaryFile file(m_scratch.path("new"), remember());
  write(file, "text");
  EXPECT_EQ(file.moveToTarget(), 0);
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text");
  EXPECT_EQ(file.path(), "");
  EXPECT_THAT(m_paths, ElementsAre(StartsWith(m_scratch.path(".quillon-")), ""));
}

TEST_F(TemporaryFileTest, HasNoNameBeforeItIsMoved) {
  const TemporaryFile file(m_scratch.path("new"), remember());
  write(file, "text");
  EXPECT_EQ(file.path(), "");
  EXPECT_THAT(m_scratch.entries(), IsEmpty());
  EXPECT_THAT(m_paths, IsEmpty());
}

TEST_F(TemporaryFileTest, HasThePermissionsOfNewFilesAndStaysInThisProcess) {
  const mode_t before = ::umask(0027);
  for (const auto naming : {TemporaryFile::Naming::WhenMoved, TemporaryFile::Naming::AtOnce}) {
    TemporaryFile file(m_scratch.path("new"), {}, naming);
    EXPECT_EQ(::fcntl(file.descriptor(), F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(file.moveToTarget(), 0);
    struct stat status = {};
    EXPECT_EQ(::stat(m_scratch.path("new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
  }
  ::umask(before);
}

TEST_F(TemporaryFileTest, MayHaveANameFromTheStart) {
  {
    const TemporaryFile file(m_scratch.path("new"), remember(), TemporaryFile::Naming::AtOnce);
    EXPECT_THAT(file.path(), StartsWith(m_scratch.path(".quillon-")));
    write(file, "text");
    EXPECT_EQ(contentOf(file.path()), "text");
  }
  EXPECT_THAT(m_scratch.entries(), IsEmpty());
  ASSERT_EQ(m_paths.size(), 2U);
  EXPECT_THAT(std::filesystem::path(m_paths[0]).filename().string(),
              MatchesRegex("\\.quillon-[0-9]+-[0-9]+"));
  EXPECT_EQ(m_paths[1], "");
}

TEST_F(TemporaryFileTest, WithANameIsMovedAsWell) {
  TemporaryFile file(m_scratch.path("new"), {}, TemporaryFile::Naming::AtOnce);
  write(file, "text");
  EXPECT_EQ(file.moveToTarget(), 0);
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "text");
}

TEST_F(TemporaryFileTest, WhatCannotBeMovedLeavesNothing) {
  {
    TemporaryFile file(m_scratch.path("new"));
    std::filesystem::create_directory(m_scratch.path("new"));
    EXPECT_EQ(file.moveToTarget(), EISDIR);
  }
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
}

TEST_F(TemporaryFileTest, WhoseDirectoryIsGoneCannotBeMoved) {
  std::filesystem::create_directory(m_scratch.path("inner"));
  {
    TemporaryFile file(m_scratch.path("inner/new"), remember());
    std::filesystem::remove_all(m_scratch.path("inner"));
    EXPECT_EQ(file.moveToTarget(), ENOENT);
    EXPECT_EQ(file.descriptor(), -1);
  }
  EXPECT_THAT(m_scratch.entries(), IsEmpty());
  EXPECT_THAT(m_paths, ElementsAre(StartsWith(m_scratch.path("inner/.quillon-")), ""));
}

TEST_F(TemporaryFileTest, WhatCannotBeClosedReplacesNothing) {
  std::ofstream(m_scratch.path("new")) << "before";
  {
    TemporaryFile file(m_scratch.path("new"), {}, TemporaryFile::Naming::AtOnce);
    ASSERT_EQ(::close(file.descriptor()), 0);
    EXPECT_EQ(file.moveToTarget(), EBADF);
    EXPECT_EQ(file.descriptor(), -1);
  }
  EXPECT_THAT(m_scratch.entries(), ElementsAre("new"));
  EXPECT_EQ(contentOf(m_scratch.path("new")), "before");
}

TEST_F(TemporaryFileTest, WithoutADirectoryIsAnError) {
  for (const auto naming : {TemporaryFile::Naming::WhenMoved, TemporaryFile::Naming::AtOnce}) {
    const TemporaryFile file(m_scratch.path("none/new"), remember(), naming);
    EXPECT_EQ(file.error(), ENOENT);
    EXPECT_EQ(file.descriptor(), -1);
    EXPECT_EQ(m_paths.back(), "");
  }
}

}  // namespace
}  // namespace quillon::memory
