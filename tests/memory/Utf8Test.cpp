#include <gtest/gtest.h>
#include <quillon/memory/Utf8.h>
#include <quillon/memory/Wording.h>

#include <cstdint>
#include <string>

namespace quillon::memory {
namespace {

struct CharacterCase {
  const char* rule;
  std::string text;
  std::size_t length;
  char32_t point;
};
void PrintTo(const CharacterCase& some, std::ostream* out) { *out << some.rule; }

class FirstCharacterTest : public ::testing::TestWithParam<CharacterCase> {};

TEST_P(FirstCharacterTest, IsFound) {
  const Character found = firstCharacter(GetParam().text);
  EXPECT_EQ(found.length, GetParam().length);
  EXPECT_EQ(found.point, GetParam().point);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FirstCharacterTest,
    ::testing::Values(
        CharacterCase{"AnEmptyTextHasNone", "", 0, 0}, CharacterCase{"Ascii", "ab", 1, U'a'},
        CharacterCase{"TwoBytes", "\xC3\xA4z", 2, U'\u00E4'},
        CharacterCase{"ThreeBytes", "\xE2\x82\xAC", 3, U'\u20AC'},
        CharacterCase{"FourBytes", "\xF0\x9F\x98\x80", 4, U'\U0001F600'},
        CharacterCase{"TheLastPoint", "\xF4\x8F\xBF\xBF", 4, U'\U0010FFFF'},
        CharacterCase{"BehindTheLastPoint", "\xF4\x90\x80\x80", 0, 0},
        CharacterCase{"Overlong", "\xC0\xAF", 0, 0},
        CharacterCase{"BeforeTheSurrogates", "\xED\x9F\xBF", 3, U'\uD7FF'},
        CharacterCase{"LastSurrogate", "\xED\xBF\xBF", 0, 0},
        CharacterCase{"BehindTheSurrogates", "\xEE\x80\x80", 3, U'\uE000'},
        CharacterCase{"Surrogate", "\xED\xA0\x80", 0, 0}, CharacterCase{"CutOff", "\xE2\x82", 0, 0},
        CharacterCase{"Continuation", "\x82", 0, 0}, CharacterCase{"LeadByteAlone", "\xC3(", 0, 0}),
    [](const auto& some) { return some.param.rule; });

TEST(Utf8Test, TheReplacementCharacterIsUFFFD) { EXPECT_EQ(REPLACEMENT, "\xEF\xBF\xBD"); }

TEST(Utf8LengthTest, EndsAtTheFirstByteThatIsPartOfNoCharacter) {
  EXPECT_EQ(utf8Length(""), 0U);
  EXPECT_EQ(utf8Length("ab\xC3\xA4z"), 5U);
  EXPECT_EQ(utf8Length("ab\xC3\xA4\xFFz"), 4U);
  EXPECT_EQ(utf8Length("\xE2\x82"), 0U);
  EXPECT_EQ(utf8Length("a\xE2\x82"), 1U);
  EXPECT_EQ(utf8Length("a\x80"), 1U);
}

TEST(WidthTest, LatinLettersTakeOnePlace) {
  EXPECT_EQ(widthOf(U'a'), 1);
  EXPECT_EQ(widthOf(U'\u00E4'), 1);
  EXPECT_EQ(widthOf(U'\u2082'), 1);
}

TEST(WidthTest, ChineseJapaneseKoreanAndEmojiTakeTwo) {
  EXPECT_EQ(widthOf(U'\u4E2D'), 2);
  EXPECT_EQ(widthOf(U'\u30C6'), 2);
  EXPECT_EQ(widthOf(U'\uAC00'), 2);
  EXPECT_EQ(widthOf(U'\uFF21'), 2);
  EXPECT_EQ(widthOf(U'\U0001F600'), 2);
}

TEST(WidthTest, CombiningMarksAndWhatShowsNothingTakeNone) {
  EXPECT_EQ(widthOf(U'\u02FF'), 1);
  EXPECT_EQ(widthOf(U'\u0300'), 0);
  EXPECT_EQ(widthOf(U'\u0301'), 0);
  EXPECT_EQ(widthOf(U'\u3099'), 0);
  EXPECT_EQ(widthOf(U'\u200B'), 0);
  EXPECT_EQ(widthOf(U'\uFEFF'), 0);
  EXPECT_EQ(widthOf(U'\U000E0100'), 0);
}

/// A checksum of what `tell` says of all code points.
template <class Tell>
std::uint64_t checksum(Tell tell) {
  constexpr std::uint64_t PRIME = 4294967291;
  std::uint64_t sum = 0;
  for (char32_t point = 0; point <= 0x10FFFF; ++point) {
    sum = (sum * 31 + static_cast<std::uint64_t>(tell(point)) + 1) % PRIME;
  }
  return sum;
}

// Of all points that stand for something, these are the widths that the general categories and East
// Asian widths in Python's unicodedata 14.0.0 give.
TEST(WidthTest, OfEachCodePointIsThatOfTheCharacterDatabase) {
  EXPECT_EQ(checksum(widthOf), 2539626421U);
}

TEST(WidthTest, HangulVowelsAndFinalsJoinTheSyllableBefore) {
  EXPECT_EQ(widthOf(U'\u1160'), 0);
  EXPECT_EQ(widthOf(U'\u11FF'), 0);
  EXPECT_EQ(widthOf(U'\uD7B0'), 0);
  EXPECT_EQ(widthOf(U'\uD7FB'), 0);
}

TEST(InvisibleTest, EachCodePointThatShowsNothingIs) {
  EXPECT_EQ(checksum(isInvisible), 504375445U);
}

TEST(WidthTest, OfATextIsTheSumOverItsCharacters) {
  EXPECT_EQ(displayWidth(""), 0U);
  EXPECT_EQ(displayWidth("e\xCC\x81t\xC3\xA9"), 3U);
  EXPECT_EQ(displayWidth("\xE6\xB8\xA9\xE5\xBA\xA6 K"), 6U);
  EXPECT_EQ(displayWidth("\xFFz"), 2U);
}

}  // namespace
}  // namespace quillon::memory
