#include <gtest/gtest.h>
#include <quillon/memory/Wording.h>

namespace quillon::memory {
namespace {

struct EscapeCase {
  const char* rule;
  std::string text;
  std::string expected;
};

void PrintTo(const EscapeCase& c, std::ostream* stream) { *stream << c.rule; }

class EscapedTest : public ::testing::TestWithParam<EscapeCase> {};

TEST_P(EscapedTest, KeepsTextAndDisarmsTheRest) {
  EXPECT_EQ(escaped(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rules, EscapedTest,
                         ::testing::ValuesIn(std::vector<EscapeCase>{
                             {"EmptyStaysEmpty", "", ""},
                             {"PrintableAsciiPasses", " az~'\"", " az~'\""},
                             {"BackslashIsNoEscape", "\\x1b", "\\\\x1b"},
                             {"BackslashesAlone", "\\\\", "\\\\\\\\"},
                             {"LineBreaksAndTabsHaveNames", "a\nb\rc\td", "a\\nb\\rc\\td"},
                             {"TerminalSequenceIsDisarmed", "\x1b[31m", "\\x1b[31m"},
                             {"NulIsShown", std::string("a\0b", 3), "a\\x00b"},
                             {"DeleteIsShown", "\x7f", "\\x7f"},
                             {"TwoByteCharactersPass", "µm °C", "µm °C"},
                             {"FirstPrintableBeyondControls", "\xC2\xA0", "\xC2\xA0"},
                             {"EightBitControlsAreShown", "\xC2\x9B", "\\u009b"},
                             {"FirstAndLastEightBitControl", "\xC2\x80\xC2\x9F", "\\u0080\\u009f"},
                             {"WritingDirectionIsShown",
                              "a\xE2\x80\xAE"
                              "b",
                              "a\\u202eb"},
                             {"CharacterBeforeTheDirectionsPasses", "\xE2\x80\xA7", "\xE2\x80\xA7"},
                             {"CharacterOfNoWidthIsShown", "a\xE2\x80\x8B", "a\\u200b"},
                             {"ByteOrderMarkIsShown",
                              "\xEF\xBB\xBF"
                              "a",
                              "\\ufeffa"},
                             {"TagIsShown", "\xF3\xA0\x80\x81", "\\U000e0001"},
                             {"CombiningCharacterPasses", "e\xCC\x81", "e\xCC\x81"},
                             {"VariationSelectorPasses", "\xEF\xB8\x8F", "\xEF\xB8\x8F"},
                             {"ThreeByteCharactersPass", "€", "€"},
                             {"FourByteCharactersPass", "😀", "😀"},
                             {"LastCodePointPasses", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
                             {"BeyondTheLastCodePointIsShown", "\xF4\x90\x80\x80",
                              "\\xf4\\x90\\x80\\x80"},
                             {"OverlongFormIsShown", "\xC0\x9B", "\\xc0\\x9b"},
                             {"SurrogateIsShown", "\xED\xA0\x80", "\\xed\\xa0\\x80"},
                             {"LoneContinuationIsShown", "a\x80", "a\\x80"},
                             {"CutCharacterIsShown", "a\xE2\x82", "a\\xe2\\x82"},
                             {"CharacterWithoutContinuationIsShown", "\xE2(\xAC", "\\xe2(\\xac"},
                             {"NoLeadByteIsShown", "\xFF", "\\xff"},
                         }),
                         [](const auto& c) { return c.param.rule; });

TEST(DisarmedTest, KeepsTheEscapesOfQuotations) {
  const std::string sentence = "Cannot read " + inQuotes("\\\x1b\n\xFF µ");
  EXPECT_EQ(sentence, "Cannot read '\\\\\\x1b\\n\\xff µ'");
  EXPECT_EQ(disarmed(sentence), sentence);
  EXPECT_EQ(disarmed("\x1b\xE2\x80\xAE"), "\\x1b\\u202e");
}

TEST(InQuotesTest, QuotesEscapedText) { EXPECT_EQ(inQuotes("a\nb"), "'a\\nb'"); }

TEST(ListedTest, SeparatesNamesByCommas) {
  EXPECT_EQ(listed({}), "");
  EXPECT_EQ(listed({"A"}), "A");
  EXPECT_EQ(listed({"A", "\x1b", "C"}), "A, \\x1b, C");
}

TEST(ListedTest, FortyNamesAreListedWhole) {
  const std::string text = listed(std::vector<std::string>(40, "A"));
  EXPECT_EQ(text.size(), 40 + 2 * 39);
  EXPECT_EQ(text.find("more"), std::string::npos);
}

TEST(ListedTest, LongerListsEndWithTheNumberOfTheRest) {
  const std::string text = listed(std::vector<std::string>(42, "A"));
  EXPECT_EQ(text.substr(text.size() - 17), ", A, A and 2 more");
}

TEST(CountedTest, OneIsSingular) {
  EXPECT_EQ(counted(0, "array"), "0 arrays");
  EXPECT_EQ(counted(1, "array"), "1 array");
  EXPECT_EQ(counted(2, "array"), "2 arrays");
}

TEST(DisplayWidthTest, CountsCharactersNotBytes) {
  EXPECT_EQ(displayWidth(""), 0);
  EXPECT_EQ(displayWidth("µm °C"), 5);
  EXPECT_EQ(displayWidth("€😀"), 3);
}

}  // namespace
}  // namespace quillon::memory
