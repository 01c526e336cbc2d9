#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Arguments.h"
#include "Failure.h"

namespace quillon::tools {
namespace {

using ::testing::ElementsAre;
using ::testing::Property;
using ::testing::StrEq;
using ::testing::Throws;

auto failsWith(const char* sentence) {
  return Throws<Failure>(Property(&Failure::what, StrEq(sentence)));
}

TEST(SplitNamesTest, CommasSeparateNames) {
  EXPECT_THAT(splitNames("--index", "TIME"), ElementsAre("TIME"));
  EXPECT_THAT(splitNames("--index", "TIME,COADSY,TIME"), ElementsAre("TIME", "COADSY", "TIME"));
}

TEST(SplitNamesTest, BlanksAroundNamesAreTrimmed) {
  EXPECT_THAT(splitNames("--index", " a b,\tc "), ElementsAre("a b", "c"));
}

TEST(SplitPatternsTest, BackslashesQuoteCommas) {
  EXPECT_THAT(splitPatterns("--variables", "a\\,b , c*"), ElementsAre("a\\,b", "c*"));
  EXPECT_THAT([] { splitPatterns("--variables", "a, ,c"); },
              failsWith("--variables takes names separated by commas, and 'a, ,c' holds an empty "
                        "one"));
}

TEST(InLinesTest, LinesLeaveRoomForTheNames) {
  EXPECT_EQ(inLines(""), "");
  EXPECT_EQ(inLines(std::string(54, 'a') + " b"), std::string(54, 'a') + "\nb");
  EXPECT_EQ(inLines(std::string(52, 'a') + " b c"), std::string(52, 'a') + " b\nc");
}

TEST(ParseCountTest, BothEndsAreAllowed) {
  EXPECT_EQ(parseCount("--precision", "1", 1, 17), 1);
  EXPECT_EQ(parseCount("--precision", "17", 1, 17), 17);
  for (const char* text : {"0", "18", "", "-1", "x", "1.5", "18446744073709551616"}) {
    EXPECT_THAT(
        [text] { parseCount("--precision", text, 1, 17); },
        failsWith(("--precision takes a whole number from 1 to 17, not '" + std::string(text) + "'")
                      .c_str()));
  }
}

TEST(RequireKnownTest, OffersTheNearest) {
  EXPECT_NO_THROW(requireKnown("--format", "json", {"text", "json"}));
  EXPECT_THAT(
      [] {
        requireKnown("--format", "jsno", {"text", "json"});
      },
      failsWith("--format takes one of text, json, not 'jsno'; did you mean 'json'?"));
}

class EmptyNameTest : public ::testing::TestWithParam<const char*> {};

TEST_P(EmptyNameTest, IsRefused) {
  const std::string sentence = "--index takes names separated by commas, and '" +
                               std::string(GetParam()) + "' holds an empty one";
  EXPECT_THAT([] { splitNames("--index", GetParam()); }, failsWith(sentence.c_str()));
}

INSTANTIATE_TEST_SUITE_P(Lists, EmptyNameTest,
                         ::testing::Values("", ",", "A,", ",A", "A,,B", "A, "));

TEST(ParseRowsTest, WholeNumbersOf64BitsAreRead) {
  EXPECT_EQ(parseRows("0"), 0);
  EXPECT_EQ(parseRows("10"), 10);
  EXPECT_EQ(parseRows("007"), 7);
  EXPECT_EQ(parseRows("18446744073709551615"), 18446744073709551615UL);
}

class ParseRowsTest : public ::testing::TestWithParam<const char*> {};

TEST_P(ParseRowsTest, AnythingElseIsRefused) {
  const std::string sentence =
      "--max-rows takes a whole number from 0 (all rows) to 18446744073709551615, not '" +
      std::string(GetParam()) + "'";
  EXPECT_THAT([] { parseRows(GetParam()); }, failsWith(sentence.c_str()));
}

INSTANTIATE_TEST_SUITE_P(Texts, ParseRowsTest,
                         ::testing::Values("", "-1", "+1", "1.5", "1e3", "ten", "10 ", " 10",
                                           "0x10", "18446744073709551616",
                                           "99999999999999999999999"));

TEST(SourceTest, RootIsCalledByItsFile) {
  EXPECT_EQ((FileGroup{"a.nc", ""}.inWords()), "'a.nc'");
  EXPECT_EQ((FileGroup{"a.nc", "/"}.inWords()), "'a.nc'");
}

TEST(SourceTest, GroupIsNamed) {
  EXPECT_EQ((FileGroup{"a\n.nc", "cells/li"}.inWords()), "Group 'cells/li' of 'a\\n.nc'");
}

TEST(ArgumentsTest, TolerancesAreNumbersOfAtLeastZero) {
  EXPECT_EQ(parseTolerance("--absolute", "0"), 0.0);
  EXPECT_EQ(parseTolerance("--absolute", "1e-3"), 0.001);
  EXPECT_EQ(parseTolerance("--absolute", "inf"), std::numeric_limits<double>::infinity());
  for (const std::string text : {"", "-1", "nan", "-nan", "1x", " 1", "1e999", "0,5"}) {
    try {
      parseTolerance("--absolute", text);
      ADD_FAILURE() << text;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), "--absolute takes a number of at least 0, not '" + text + "'");
    }
  }
}

}  // namespace
}  // namespace quillon::tools
