#include <gmock/gmock.h>
#include <quillon/memory/NameChoice.h>

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

class NameChoiceTest : public ::testing::Test {
 protected:
  NameChoiceTest() {
    m_choice.add("area", "/area");
    m_choice.add("area", "/cells/area");
    m_choice.add("a*", "/cells/a*");
    m_choice.add("radius", "/cells/li/radius");
  }

  NameChoice m_choice;
};

TEST_F(NameChoiceTest, APatternOfNamesFindsThemWhereverTheyStand) {
  EXPECT_THAT(m_choice.find({"area"}), ElementsAre(0, 1));
  EXPECT_THAT(m_choice.find({"r*", "?rea"}), ElementsAre(0, 1, 3));
}

TEST_F(NameChoiceTest, AnExactNameGoesBeforeAPattern) {
  EXPECT_THAT(m_choice.find({"a*"}), ElementsAre(2));
  EXPECT_THAT(m_choice.find({"[a]*"}), ElementsAre(0, 1, 2));
  EXPECT_THAT(m_choice.find({"/cells/a*"}), ElementsAre(2));
}

TEST_F(NameChoiceTest, APatternWithASlashIsOneOfPaths) {
  EXPECT_THAT(m_choice.find({"/area"}), ElementsAre(0));
  EXPECT_THAT(m_choice.find({"cells/*"}), ElementsAre(1, 2, 3));
  EXPECT_THAT(m_choice.find({"*/radius"}), ElementsAre(3));
}

TEST_F(NameChoiceTest, ABackslashQuotes) {
  EXPECT_THAT(m_choice.find({"a\\*"}), ElementsAre(2));
  EXPECT_THAT(m_choice.find({"a\\?"}), IsEmpty());
}

TEST_F(NameChoiceTest, TheFirstPatternThatStandsForNothingIsKnown) {
  EXPECT_EQ(m_choice.unmatched({"area", "cells/*"}), std::nullopt);
  EXPECT_EQ(m_choice.unmatched({"area", "Area", "x"}), "Area");
}

TEST_F(NameChoiceTest, OffersEachNameOnceAndPathsForPaths) {
  EXPECT_EQ(m_choice.offerFor("aera"), "; did you mean 'area', 'a*' or 'radius'?");
  EXPECT_EQ(m_choice.offerFor("/aera"), "; did you mean '/area', '/cells/a*' or '/cells/area'?");
  EXPECT_EQ(NameChoice().offerFor("a"), " and no other");
}

TEST(SplitPatternsTest, BlanksAreTrimmedAndQuotedCommasStay) {
  EXPECT_THAT(splitPatterns("A"), ElementsAre("A"));
  EXPECT_THAT(splitPatterns(" A , B*\t"), ElementsAre("A", "B*"));
  EXPECT_THAT(splitPatterns("a b,c\\,d,\\\\,e"), ElementsAre("a b", "c\\,d", "\\\\", "e"));
  EXPECT_THAT(splitPatterns("A,,\\"), ElementsAre("A", "", "\\"));
  EXPECT_THAT(splitPatterns(",A"), ElementsAre("", "A"));
  EXPECT_THAT(splitPatterns("\\,A"), ElementsAre("\\,A"));
  EXPECT_THAT(splitPatterns(""), ElementsAre(""));
}

}  // namespace
}  // namespace quillon::memory
