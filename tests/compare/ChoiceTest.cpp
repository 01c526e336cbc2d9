#include <gmock/gmock.h>
#include <quillon/compare/Choice.h>
#include <quillon/memory/Selection.h>

#include <tuple>

#include "Support.h"

namespace quillon::compare {
namespace {

using memory::Dictionary;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Names = std::vector<std::string>;

class ChoiceTest : public ::testing::Test {
 protected:
  ChoiceTest() {
    m_first.add(row<double>("area", {1}));
    m_first.add(dictionary("li", row<double>("area", {1}), row<double>("radius", {1})));
    m_second.add(row<double>("axis", {1}));
    m_second.add(dictionary("li", row<double>("radius", {1})));
    m_second.add(Dictionary("empty"));
  }

  Chosen chosen(const Choice& choice) const { return choose(m_first, m_second, choice); }

  std::string error(const Choice& choice) const {
    try {
      std::ignore = choose(m_first, m_second, choice);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "no error";
  }

  static Choice variables(const Names& names) {
    Choice choice;
    choice.variables = names;
    return choice;
  }

  Dictionary m_first{"first"};
  Dictionary m_second{"second"};
};

TEST_F(ChoiceTest, IsOfWholeFilesUnlessToldOtherwise) {
  EXPECT_EQ(Choice().root, "/");
  EXPECT_EQ(Choice().sides, "Neither side");
}

TEST_F(ChoiceTest, EverythingUnlessAskedForLess) {
  const Chosen all = chosen({});
  EXPECT_THAT(all.paths, UnorderedElementsAre("area", "axis", "li/area", "li/radius"));
  EXPECT_THAT(all.first, UnorderedElementsAre("area", "li/area", "li/radius", "li/"));
  EXPECT_THAT(all.second, UnorderedElementsAre("axis", "li/", "li/radius", "li/", "empty/"));
}

TEST_F(ChoiceTest, ANameIsChosenWhereverItStands) {
  const Chosen areas = chosen(variables({"area"}));
  EXPECT_THAT(areas.first, UnorderedElementsAre("area", "li/area"));
  EXPECT_THAT(areas.second, ElementsAre("li/"));
}

TEST_F(ChoiceTest, PathsAndPatterns) {
  EXPECT_THAT(chosen(variables({"/area"})).paths, ElementsAre("area"));
  EXPECT_THAT(chosen(variables({"li/*"})).paths, ElementsAre("li/area", "li/radius"));
  EXPECT_THAT(chosen(variables({"a*"})).paths, ElementsAre("area", "axis", "li/area"));
}

TEST_F(ChoiceTest, WhatIsExcludedIsNotChosen) {
  Choice choice = variables({"a*"});
  choice.exclude = {"/area", "axis"};
  EXPECT_THAT(chosen(choice).paths, ElementsAre("li/area"));
  choice.exclude = {"*"};
  EXPECT_THAT(chosen(choice).paths, IsEmpty());
  EXPECT_THAT(chosen(choice).first, IsEmpty());
}

TEST_F(ChoiceTest, WhatIsUnreadableCanBeNamed) {
  Choice choice = variables({"shape"});
  choice.unreadable = {"li/shape"};
  EXPECT_THAT(chosen(choice).paths, ElementsAre("li/shape"));
  EXPECT_THAT(chosen(choice).first, ElementsAre("li/"));
}

TEST_F(ChoiceTest, PathsBeginWithTheRoot) {
  Choice choice = variables({"/cells/li/area"});
  choice.root = "/cells";
  EXPECT_THAT(chosen(choice).paths, ElementsAre("li/area"));
}

TEST_F(ChoiceTest, APatternThatStandsForNothingIsAnErrorWithAnOffer) {
  EXPECT_EQ(error(variables({"area", "raidus"})),
            "Neither side has a variable 'raidus'; did you mean 'radius', 'axis' or 'area'?");
  EXPECT_EQ(
      error(variables({"/lo/area"})),
      "Neither side has a variable '/lo/area'; did you mean '/li/area', '/area' or '/li/radius'?");
  Choice choice;
  choice.exclude = {"x*"};
  choice.sides = "Neither a nor b";
  EXPECT_EQ(error(choice),
            "Neither a nor b has a variable 'x*'; did you mean 'axis', 'area' or 'radius'?");
}

TEST_F(ChoiceTest, WhereNothingStandsNothingIsOffered) {
  m_first = Dictionary("first");
  m_second = Dictionary("second");
  EXPECT_EQ(error(variables({"area"})), "Neither side has a variable 'area'; there are none");
}

TEST_F(ChoiceTest, OfASideWithoutAnArrayTheNearestGroupIsTaken) {
  m_first.add(dictionary("deep", dictionary("er", row<double>("pitch", {1}))));
  m_first.add(dictionary("here", dictionary("alone", row<double>("tone", {1}))));
  m_second.add(dictionary("deep", row<double>("axis", {1})));
  const Chosen deep = chosen(variables({"pitch", "tone"}));
  EXPECT_THAT(deep.first, ElementsAre("deep/er/pitch", "here/alone/tone"));
  EXPECT_THAT(deep.second, ElementsAre("deep/"));
}

TEST_F(ChoiceTest, AGroupMayHaveNoName) {
  m_first.add(dictionary("", row<double>("pitch", {1})));
  EXPECT_THAT(chosen(variables({"pitch"})).paths, ElementsAre("/pitch"));
  EXPECT_THAT(chosen(variables({"pitch"})).second, IsEmpty());
  m_second.add(dictionary("", row<double>("axis", {1})));
  EXPECT_THAT(chosen(variables({"pitch"})).second, ElementsAre("/"));
}

TEST_F(ChoiceTest, AGroupWithoutANameMayLieInAnother) {
  m_first.add(dictionary("deep", dictionary("", row<double>("pitch", {1}))));
  m_second.add(dictionary("deep", row<double>("axis", {1})));
  EXPECT_THAT(chosen(variables({"pitch"})).first, ElementsAre("deep//pitch"));
  EXPECT_THAT(chosen(variables({"pitch"})).second, ElementsAre("deep/"));
}

TEST_F(ChoiceTest, OfNamesAsNearThoseOfTheFirstSideAreOfferedBeforeWhatIsUnreadable) {
  m_first = dictionary("first", row<double>("tone3", {1}));
  m_second = dictionary("second", row<double>("tone2", {1}), row<double>("tone3", {1}));
  Choice choice = variables({"tone"});
  choice.unreadable = {"tone1", "tone2"};
  EXPECT_EQ(error(choice),
            "Neither side has a variable 'tone'; did you mean 'tone3', 'tone2' or "
            "'tone1'?");
}

TEST_F(ChoiceTest, SelectionsTakeThePaths) {
  const Chosen areas = chosen(variables({"area", "radius"}));
  const memory::Selection first(m_first, areas.first);
  const memory::Selection second(m_second, areas.second);
  EXPECT_THAT(linesOf(first, second),
              ElementsAre("/area: only in the first", "/li/area: only in the first"));
}

TEST_F(ChoiceTest, NoNamesAreNothing) {
  EXPECT_THAT(chosen(variables({})).paths, IsEmpty());
  EXPECT_THAT(chosen(variables({})).second, IsEmpty());
}

TEST_F(ChoiceTest, GroupsStayWhereOnlyArraysAreExcluded) {
  Choice choice;
  choice.exclude = {"*"};
  EXPECT_THAT(chosen(choice).paths, IsEmpty());
  EXPECT_THAT(chosen(choice).first, ElementsAre("li/"));
  EXPECT_THAT(chosen(choice).second, UnorderedElementsAre("li/", "empty/"));
}

TEST_F(ChoiceTest, AnEntryThatIsNoneCanBeChosen) {
  const LooseDictionary none({"a"}, nullptr);
  EXPECT_THAT(choose(none, none, {}).first, ElementsAre("a"));
}

TEST_F(ChoiceTest, ANameThatOccursTwiceIsChosenOnce) {
  const memory::DoubleArray entry = row<double>("a", {1});
  const LooseDictionary twice({"a", "a"}, &entry);
  const Chosen all = choose(twice, twice, {});
  EXPECT_THAT(all.paths, ElementsAre("a"));
  EXPECT_THAT(all.first, ElementsAre("a"));
  EXPECT_THAT(all.second, ElementsAre("a"));
}

}  // namespace
}  // namespace quillon::compare
