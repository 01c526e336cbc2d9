#include <gtest/gtest.h>
#include <quillon/memory/OutputTarget.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/ScratchDirectory.h"

namespace quillon::memory {
namespace {

namespace fs = std::filesystem;
using Scratch = test::ScratchDirectory;

class OutputTargetTest : public ::testing::Test {
 protected:
  fs::path directory() const { return fs::canonical(m_scratch.path()); }
  std::string link(const std::string& name, const std::string& to) const {
    fs::create_symlink(to, m_scratch.path(name));
    return m_scratch.path(name);
  }

  Scratch m_scratch;
};

TEST_F(OutputTargetTest, NamesOfDescriptorsAreDescriptors) {
  EXPECT_EQ(outputTargetOf("/dev/stdin").descriptor, 0);
  EXPECT_EQ(outputTargetOf("/dev/stdout").descriptor, 1);
  EXPECT_EQ(outputTargetOf("/dev/stderr").descriptor, 2);
  EXPECT_EQ(outputTargetOf("/dev/fd/17").descriptor, 17);
  EXPECT_EQ(outputTargetOf("/proc/self/fd/3").descriptor, 3);
  EXPECT_EQ(outputTargetOf("/proc/" + std::to_string(::getpid()) + "/fd/1").descriptor, 1);
  EXPECT_EQ(outputTargetOf(link("link", "/dev/stdout")).descriptor, 1);
}

TEST_F(OutputTargetTest, IsNoDescriptorUnlessToldOtherwise) {
  EXPECT_EQ(OutputTarget().descriptor, -1);
}

TEST_F(OutputTargetTest, OtherNamesAreNone) {
  for (const std::string path :
       {"/dev/null", "/proc/self/fd/x", "/proc/self/fd/1x", "/proc/self/fd/-1", "1"}) {
    EXPECT_EQ(outputTargetOf(path).descriptor, -1) << path;
  }
}

TEST_F(OutputTargetTest, FileIsItself) {
  const OutputTarget target = outputTargetOf(m_scratch.path("new"));
  EXPECT_EQ(target.file, directory() / "new");
  EXPECT_FALSE(target.error);
}

TEST_F(OutputTargetTest, LinksAreFollowedToWhatIsNotThere) {
  fs::create_directory(m_scratch.path("inner"));
  link("inner/second", "../new");
  EXPECT_EQ(outputTargetOf(link("first", "inner/second")).file, directory() / "new");
}

TEST_F(OutputTargetTest, LinkIntoAMissingDirectoryLeadsNowhere) {
  EXPECT_EQ(outputTargetOf(link("first", "none/new")).error, std::errc::no_such_file_or_directory);
}

TEST_F(OutputTargetTest, AMissingDirectoryIsNotTakenForTheCurrentOne) {
  const fs::path before = fs::current_path();
  fs::current_path(m_scratch.path());
  link("first", "new");
  const OutputTarget target = outputTargetOf("none/first");
  fs::current_path(before);
  EXPECT_EQ(target.error, std::errc::no_such_file_or_directory);
}

TEST_F(OutputTargetTest, AsManyLinksAreFollowedAsTheSystemFollows) {
  link("1", "new");
  for (int k = 2; k <= 41; ++k) {
    link(std::to_string(k), std::to_string(k - 1));
  }
  const OutputTarget target = outputTargetOf(m_scratch.path("40"));
  EXPECT_EQ(target.file, directory() / "new");
  EXPECT_FALSE(target.error) << target.error;
  EXPECT_EQ(outputTargetOf(m_scratch.path("41")).error, std::errc::too_many_symbolic_link_levels);
  EXPECT_FALSE(std::ofstream(m_scratch.path("41")).is_open());
  EXPECT_TRUE(std::ofstream(m_scratch.path("40")).is_open());
}

TEST_F(OutputTargetTest, NoNameLeadsNowhere) {
  EXPECT_EQ(outputTargetOf("").error, std::errc::no_such_file_or_directory);
}

TEST_F(OutputTargetTest, LinksInACircleLeadNowhere) {
  link("first", "second");
  EXPECT_EQ(outputTargetOf(link("second", "first")).error,
            std::errc::too_many_symbolic_link_levels);
}

int errorFor(const std::string& path) {
  struct stat status = {};
  ::stat(path.c_str(), &status);
  return errorOfReplacing(path, status);
}

TEST_F(OutputTargetTest, DirectoriesCannotBeReplaced) {
  std::ofstream(m_scratch.path("file")) << "text";
  EXPECT_EQ(errorFor(m_scratch.path()), EISDIR);
  EXPECT_EQ(errorFor(m_scratch.path("file")), 0);
  EXPECT_EQ(errorFor("/dev/null"), 0);
}

TEST_F(OutputTargetTest, WhatIsGoneCannotBeReplaced) {
  EXPECT_EQ(errorFor(m_scratch.path("gone")), ENOENT);
}

}  // namespace
}  // namespace quillon::memory
