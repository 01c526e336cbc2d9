#include <gtest/gtest.h>

#include <string>

#include "RunTool.h"
#include "WorkNotes.h"

namespace quillon::tools {
namespace {

TEST(NotedTextTest, IsEmptyAtFirstAndThenWhatWasSet) {
  NotedText text;
  EXPECT_EQ(text.get(), "");
  text.set("something long");
  text.set("short");
  EXPECT_EQ(text.get(), "short");
  text.set("");
  EXPECT_EQ(text.get(), "");
}

TEST(NotedTextTest, CutsWhatDoesNotFit) {
  NotedText text;
  text.set(std::string(NotedText::CAPACITY + 1, 'x'));
  EXPECT_EQ(text.get(), std::string(NotedText::CAPACITY, 'x'));
}

TEST(WorkNotesTest, FilesThatAreReadAreNamedAndMeasured) {
  const test::Scratch scratch;
  test::writeContent(scratch.path("a"), "1234");
  test::writeContent(scratch.path("b"), "12");
  noteReading({scratch.path("a"), scratch.path("b")});
  EXPECT_EQ(workNotes().filesRead, 2U);
  EXPECT_EQ(workNotes().bytes, 6U);
  EXPECT_EQ(workNotes().files.get(), "'" + scratch.path("a") + "' and '" + scratch.path("b") + "'");
  noteReading({scratch.path("none")});
  EXPECT_EQ(workNotes().filesRead, 1U);
  EXPECT_EQ(workNotes().bytes, 0U);
  noteReading({});
  EXPECT_EQ(workNotes().filesRead, 0U);
  EXPECT_EQ(workNotes().files.get(), "");
}

TEST(WorkNotesTest, EveryNoteIsProgress) {
  const unsigned long before = workNotes().progress;
  noteProgress();
  noteReading({});
  EXPECT_EQ(workNotes().progress, before + 2);
}

}  // namespace
}  // namespace quillon::tools
