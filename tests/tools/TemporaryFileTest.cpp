#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "RunTool.h"
#include "TemporaryFile.h"
#include "WorkNotes.h"

namespace quillon::tools {
namespace {

using test::Scratch;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

void write(const TemporaryFile& file, const std::string& text) {
  ASSERT_EQ(::write(file.descriptor(), text.data(), text.size()),
            static_cast<ssize_t>(text.size()));
}

TEST(TemporaryFileTest, LeavesNothingUnlessItIsMoved) {
  const Scratch scratch;
  {
    const TemporaryFile file(scratch.path("new"));
    write(file, "text");
  }
  EXPECT_THAT(scratch.entries(), IsEmpty());
}

TEST(TemporaryFileTest, IsThereAloneWhenItIsMoved) {
  const Scratch scratch;
  TemporaryFile file(scratch.path("new"));
  write(file, "text");
  EXPECT_EQ(file.moveToTarget(), 0);
  EXPECT_THAT(scratch.entries(), ElementsAre("new"));
  EXPECT_EQ(test::contentOf(scratch.path("new")), "text");
  EXPECT_EQ(workNotes().temporaryFile.get(), "");
}

TEST(TemporaryFileTest, WhatCannotBeMovedLeavesNothing) {
  const Scratch scratch;
  {
    TemporaryFile file(scratch.path("new"));
    std::filesystem::create_directory(scratch.path("new"));
    EXPECT_EQ(file.moveToTarget(), EISDIR);
  }
  EXPECT_THAT(scratch.entries(), ElementsAre("new"));
}

TEST(TemporaryFileTest, WithoutADirectoryIsAnError) {
  const Scratch scratch;
  const TemporaryFile file(scratch.path("none/new"));
  EXPECT_EQ(file.error(), ENOENT);
  EXPECT_EQ(file.descriptor(), -1);
  EXPECT_EQ(workNotes().temporaryFile.get(), "");
}

}  // namespace
}  // namespace quillon::tools
