#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Writers.h>

#include <cmath>

#include "TestArrays.h"

namespace quillon::tables {
namespace {

std::string markdown(const memory::Dictionary& data, const Shown& shown = {}) {
  std::string text;
  writeMarkdown(Table(data, plan(data)), into(text), shown);
  return text;
}

TEST(MarkdownTest, HasARowOfNamesAndNumbersAtTheRight) {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("mean_area", {{"x", 2}}, {1.0 / 3, std::nan("")}));
  data.add(memory::StringArray("s", {{"x", 2}}, {"a", ""}));
  EXPECT_EQ(markdown(data),
            "| x | mean_area | s |\n"
            "| ---: | ---: | :--- |\n"
            "| 0 | 0.333333 | a |\n"
            "| 1 |  |  |\n");
}

TEST(MarkdownTest, TimesAndInfinitiesHaveNoQuotes) {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("d", {{"x", 2}}, {HUGE_VAL, -HUGE_VAL}));
  data.add(Hours("t", {{"x", 2}}, {0, 24}));
  EXPECT_EQ(markdown(data),
            "| x | d | t |\n"
            "| ---: | ---: | :--- |\n"
            "| 0 | inf | 1970-01-01 |\n"
            "| 1 | -inf | 1970-01-02 |\n");
}

TEST(MarkdownTest, TextsAreShownLiterally) {
  memory::Dictionary data("data");
  data.add(
      memory::StringArray("_s_", {{"x", 5}}, {"a|b", "*a* `b`", "<i>&amp;", "C:\\a\nb", "~X~"}));
  EXPECT_EQ(markdown(data),
            "| x | \\_s\\_ |\n"
            "| ---: | :--- |\n"
            "| 0 | a\\|b |\n"
            "| 1 | \\*a\\* \\`b\\` |\n"
            "| 2 | \\<i>\\&amp; |\n"
            "| 3 | C:\\\\\\\\a\\\\nb |\n"
            "| 4 | \\~X\\~ |\n");
}

TEST(MarkdownTest, TenRowsAreShownUnlessMoreAreAskedFor) {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("a", {{"x", 12}}, countedUp<double>(12)));
  const auto lines = [&](const Shown& shown) {
    const std::string text = markdown(data, shown);
    return std::count(text.begin(), text.end(), '\n');
  };
  EXPECT_EQ(lines({}), 12);
  EXPECT_EQ(lines({0, 6, 0}), 14);
}

TEST(MarkdownTest, TextsMakeNoLinksAndNoPictures) {
  memory::Dictionary data("data");
  data.add(memory::StringArray("a[x=0]", {{"x", 3}}, {"[a](b)", "![a](b) [c] (d)]", "[a]("}));
  EXPECT_EQ(markdown(data),
            "| x | a[x=0] |\n"
            "| ---: | :--- |\n"
            "| 0 | [a\\](b) |\n"
            "| 1 | ![a\\](b) [c] (d)] |\n"
            "| 2 | [a\\]( |\n");
}

TEST(MarkdownTest, UnderlinesWithinWordsNeedNoEscape) {
  memory::Dictionary data("data");
  data.add(memory::StringArray("s", {{"x", 14}},
                               {"1_2", "A_B", "Z_a", "a_.", "._a", "a_{", "a_[", "a_:", "_a", "a_",
                                "0_9", "a_/", "a_@", "a_z"}));
  EXPECT_EQ(markdown(data, {0, 6, 0}),
            "| x | s |\n"
            "| ---: | :--- |\n"
            "| 0 | 1_2 |\n"
            "| 1 | A_B |\n"
            "| 2 | Z_a |\n"
            "| 3 | a\\_. |\n"
            "| 4 | .\\_a |\n"
            "| 5 | a\\_{ |\n"
            "| 6 | a\\_[ |\n"
            "| 7 | a\\_: |\n"
            "| 8 | \\_a |\n"
            "| 9 | a\\_ |\n"
            "| 10 | 0_9 |\n"
            "| 11 | a\\_/ |\n"
            "| 12 | a\\_@ |\n"
            "| 13 | a_z |\n");
}

}  // namespace
}  // namespace quillon::tables
