#include <gtest/gtest.h>
#include <quillon/memory/AsciiText.h>

#include <string_view>

namespace quillon::memory {
namespace {

using namespace std::string_view_literals;

TEST(LowerCase, ChangesTheCapitalsOfAsciiAlone) {
  EXPECT_EQ(lowerCase(""), "");
  EXPECT_EQ(lowerCase("AZaz09_ @[`{"), "azaz09_ @[`{");
  EXPECT_EQ(lowerCase("\xC3\x84rger \xC4\xB0"), "\xC3\x84rger \xC4\xB0");
  EXPECT_EQ(lowerCase("A\0B"sv), "a\0b"sv);
}

TEST(Trimmed, TakesBlanksTabsAndLineEndsFromBothEnds) {
  EXPECT_EQ(trimmed("a"), "a");
  EXPECT_EQ(trimmed(" \t\r\na b\tc \t\r\n"), "a b\tc");
  EXPECT_EQ(trimmed("\v\fa\xC2\xA0"), "\v\fa\xC2\xA0");
}

TEST(Trimmed, LeavesNothingOfBlanksAlone) {
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" "), "");
  EXPECT_EQ(trimmed(" \r\n\t "), "");
}

}  // namespace
}  // namespace quillon::memory
