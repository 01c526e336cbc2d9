#include <gmock/gmock.h>
#include <quillon/memory/Pattern.h>
#include <rapidcheck/gtest.h>

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct PatternCase {
  const char* rule;
  std::string pattern;
  std::string text;
  bool among_names;
  bool among_paths;
};
void PrintTo(const PatternCase& some, std::ostream* out) { *out << some.rule; }

class PatternTest : public ::testing::TestWithParam<PatternCase> {};

TEST_P(PatternTest, MatchesNamesAndPaths) {
  const PatternCase& some = GetParam();
  EXPECT_EQ(Pattern(some.pattern, Slash::Stops).matches(some.text), some.among_names);
  EXPECT_EQ(Pattern(some.pattern, Slash::Passes).matches(some.text), some.among_paths);
}

INSTANTIATE_TEST_SUITE_P(Rules, PatternTest,
                         ::testing::ValuesIn(std::vector<PatternCase>{
                             {"PlainTextMatchesItself", "area", "area", true, true},
                             {"PlainTextMatchesNoLongerOne", "area", "areas", false, false},
                             {"PlainTextMatchesNoShorterOne", "area", "are", false, false},
                             {"EmptyPatternMatchesEmptyText", "", "", true, true},
                             {"EmptyPatternMatchesNothingElse", "", "a", false, false},
                             {"StarMatchesNothing", "area*", "area", true, true},
                             {"StarMatchesMany", "a*a", "area", true, true},
                             {"StarGoesBack", "*ab", "aab", true, true},
                             {"StarGoesBackByAllThatFollowedIt", "*ab", "axb", false, false},
                             {"StarsGoBack", "*a*b", "xaaxb", true, true},
                             {"StarStopsAtSlashes", "/a*", "/a/b", false, true},
                             {"LaterStarStopsAtSlashes", "*/*b", "a/c/b", false, true},
                             {"SlashMatchesItself", "/a/*", "/a/b", true, true},
                             {"QuestionMarkMatchesOne", "?", "a", true, true},
                             {"QuestionMarkMatchesNotNone", "?", "", false, false},
                             {"QuestionMarkMatchesOneCharacterOfUtf8", "?", "\xC3\xA4", true, true},
                             {"QuestionMarkMatchesAByteThatIsNoUtf8", "??",
                              "\xC3"
                              "a",
                              true, true},
                             {"QuestionMarkStopsAtSlashes", "a?b", "a/b", false, true},
                             {"BracketsListCharacters", "[ab]", "b", true, true},
                             {"BracketsListManyCharacters", "[abc]", "b", true, true},
                             {"BracketsMatchNoOtherCharacter", "[ab]", "c", false, false},
                             {"BracketsHoldRanges", "[a-c]x", "bx", true, true},
                             {"RangesHaveADash", "[axc]", "b", false, false},
                             {"RangesEnd", "[a-c]", "d", false, false},
                             {"RangesAreOfCharacters", "[\xC3\xA0-\xC3\xBC]", "\xC3\xA4", true,
                              true},
                             {"ExclamationMarkNegates", "[!a]", "b", true, true},
                             {"CaretNegates", "[^a]", "a", false, false},
                             {"NegatedBracketsStopAtSlashes", "a[!x]b", "a/b", false, true},
                             {"ClosingBracketMayComeFirst", "[]]", "]", true, true},
                             {"ClosingBracketMayComeFirstAfterNegation", "[!]]", "]", false, false},
                             {"DashAtTheEndIsADash", "[a-]", "-", true, true},
                             {"QuotedBracketIsListed", "[\\]a]", "]", true, true},
                             {"BackslashInBracketsIsNotListed", "[\\]a]", "\\", false, false},
                             {"BracketsListAQuotedCharacterAlone", "[\\a]", "a", true, true},
                             {"QuotedCharacterAloneLeavesNoBackslash", "[\\a]", "\\", false, false},
                             {"QuotedBackslashIsListed", "[\\\\]", "\\", true, true},
                             {"RangesMayEndInAQuotedCharacter", "[Z-\\]]", "[", true, true},
                             {"RangesEndInTheQuotedCharacter", "[Z-\\]]", "^", false, false},
                             {"ExclamationMarkInNegationIsNotListed", "[!a]", "!", true, true},
                             {"CaretInNegationIsNotListed", "[^a]", "^", true, true},
                             {"BracketAfterExclamationMarkIsNegated", "[!]]", "a", true, true},
                             {"BracketAfterCaretIsNegated", "[^]]", "a", true, true},
                             {"BracketAfterNegationClosesNothing", "[!]]", "a]", false, false},
                             {"UnclosedBracketIsAnOrdinaryCharacter", "[ab", "[ab", true, true},
                             {"UnclosedBracketMatchesNothingElse", "*[ab", "a", false, false},
                             {"BracketAtTheEndIsAnOrdinaryCharacter", "?[", "a[", true, true},
                             {"BracketAtTheEndMatchesNothingElse", "a[", "ab", false, false},
                             {"BackslashQuotesAStar", "\\*", "*", true, true},
                             {"QuotedStarMatchesNothingElse", "\\*", "a", false, false},
                             {"QuotedTextMatchesItself", "a\\b", "ab", true, true},
                             {"BackslashAtTheEndIsABackslash", "?\\", "a\\", true, true},
                             {"VeryTextMatchesWhateverItHolds", "a[1]", "a[1]", true, true},
                             {"VeryTextIsAPatternForOthers", "a[1]", "a1", true, true},
                         }),
                         [](const auto& row) { return row.param.rule; });

TEST(PatternFindTest, NameThatIsTheVeryTextGoesBeforeThePattern) {
  EXPECT_THAT(Pattern("a[12]").find({"a1", "a[12]", "a2"}), ElementsAre(1));
  EXPECT_THAT(Pattern("a[12]").find({"a1", "b", "a2"}), ElementsAre(0, 2));
  EXPECT_THAT(Pattern("x").find({"a1"}), IsEmpty());
}

TEST(PatternFindTest, WildcardsAreToldFromPlainText) {
  EXPECT_FALSE(Pattern("/cells/area]!-").hasWildcards());
  for (const char* text : {"a*", "a?", "[a", "a\\b"}) {
    EXPECT_TRUE(Pattern(text).hasWildcards()) << text;
  }
}

/// The rule for stars and plain characters, one character at a time.
bool matchesPlainly(const std::string& pattern, const std::string& text) {
  if (pattern.empty()) {
    return text.empty();
  }
  if (pattern[0] == '*') {
    return matchesPlainly(pattern.substr(1), text) ||
           (!text.empty() && text[0] != '/' && matchesPlainly(pattern, text.substr(1)));
  }
  return !text.empty() && pattern[0] == text[0] &&
         matchesPlainly(pattern.substr(1), text.substr(1));
}

RC_GTEST_PROP(PatternProperty, StarsMatchAsTheirRuleSays, ()) {
  const auto text = [](const char* letters) {
    return *rc::gen::container<std::string>(rc::gen::elementOf(std::string(letters)));
  };
  const std::string pattern = text("ab/**").substr(0, 8);
  const std::string name = text("aabb/").substr(0, 10);
  RC_ASSERT(Pattern(pattern).matches(name) == (name == pattern || matchesPlainly(pattern, name)));
}

}  // namespace
}  // namespace quillon::memory
