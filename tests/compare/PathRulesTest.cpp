#include <gmock/gmock.h>

#include "Support.h"

namespace quillon::compare {
namespace {

using memory::Dictionary;
using ::testing::ElementsAre;

/// How many values differ by path, of a tree whose every value differs by 1.
std::vector<std::string> differing(const Options& options) {
  const auto make = [](double value) {
    return dictionary("root", row<double>("a", {value}), row<double>("a[1]", {value}),
                      row<double>("a1", {value}),
                      dictionary("g", row<double>("a", {value}), row<double>("b", {value})));
  };
  std::vector<std::string> paths;
  for (const Difference& row : compare(make(1), make(2), options).rows) {
    paths.push_back(row.path);
  }
  return paths;
}

Options tolerating(std::vector<PathTolerance> tolerances) {
  Options options;
  options.tolerances = std::move(tolerances);
  return options;
}

Options ignoring(std::vector<std::string> patterns) {
  Options options;
  options.ignore = std::move(patterns);
  return options;
}

TEST(PathRulesTest, WithoutPatternsEverythingIsCompared) {
  EXPECT_THAT(differing({}), ElementsAre("/a", "/a[1]", "/a1", "/g/a", "/g/b"));
}

TEST(PathRulesTest, ToleranceHoldsForThePathsThatMatch) {
  EXPECT_THAT(differing(tolerating({{"/g/*", {1, 0}}})), ElementsAre("/a", "/a[1]", "/a1"));
}

TEST(PathRulesTest, PathsBeginWithTheRoot) {
  Options options = tolerating({{"/cells/li/a", {1, 0}}, {"/a1", {1, 0}}, {"li/g/*", {1, 0}}});
  options.root = "/cells/li";
  EXPECT_THAT(differing(options),
              ElementsAre("/cells/li/a[1]", "/cells/li/a1", "/cells/li/g/a", "/cells/li/g/b"));
  options =
      tolerating({{"/cells/li/a[1]", {1, 0}}});  // the very path, not a pattern of /cells/li/a1
  options.root = "/cells/li";
  EXPECT_THAT(differing(options),
              ElementsAre("/cells/li/a", "/cells/li/a1", "/cells/li/g/a", "/cells/li/g/b"));
  options = {};
  options.root = "/cells";
  EXPECT_EQ(compare(row<double>("a", {1}), row<double>("a", {2}), options).rows.at(0).path,
            "/cells");
}

TEST(PathRulesTest, StarCrossesSlashes) {
  EXPECT_THAT(differing(tolerating({{"*a", {1, 0}}})), ElementsAre("/a[1]", "/a1", "/g/b"));
}

TEST(PathRulesTest, LastToleranceThatMatchesHolds) {
  EXPECT_THAT(differing(tolerating({{"*", {1, 0}}, {"/g/a", {0, 0}}})), ElementsAre("/g/a"));
  EXPECT_THAT(differing(tolerating({{"/g/a", {0, 0}}, {"*", {1, 0}}})), ElementsAre());
}

TEST(PathRulesTest, SlashAtTheStartMayBeLeftOut) {
  EXPECT_THAT(differing(tolerating({{"g/a", {1, 0}}, {"a", {1, 0}}})),
              ElementsAre("/a[1]", "/a1", "/g/b"));
}

TEST(PathRulesTest, PatternThatIsAnEntrysPathStandsForThatAlone) {
  EXPECT_THAT(differing(tolerating({{"/a[1]", {1, 0}}})), ElementsAre("/a", "/a1", "/g/a", "/g/b"));
  EXPECT_THAT(differing(tolerating({{"/a\\[1]", {1, 0}}})),
              ElementsAre("/a", "/a1", "/g/a", "/g/b"));
  EXPECT_THAT(differing(tolerating({{"/a[01]", {1, 0}}})),
              ElementsAre("/a", "/a[1]", "/g/a", "/g/b"));
}

TEST(PathRulesTest, IgnoredEntriesAreLeftOutWithAllBelow) {
  EXPECT_THAT(differing(ignoring({"/g"})), ElementsAre("/a", "/a[1]", "/a1"));
  EXPECT_THAT(differing(ignoring({"*/a"})), ElementsAre("/a[1]", "/a1", "/g/b"));
}

TEST(PathRulesTest, IgnoredEntriesMayBeOnOneSideAlone) {
  const Dictionary a = dictionary("a", row<double>("x", {1}));
  const Dictionary b = dictionary("b", row<double>("y", {1}));
  EXPECT_THAT(linesOf(a, b, ignoring({"x"})), ElementsAre("/y: only in the second"));
  EXPECT_THAT(linesOf(a, b, ignoring({"y"})), ElementsAre("/x: only in the first"));
}

TEST(PathRulesTest, ToleranceOfTheRootArrayIsThatOfSlash) {
  Options options = tolerating({{"/", {1, 0}}});
  EXPECT_TRUE(compare(row<double>("a", {1}), row<double>("a", {2}), options).same);
}

TEST(PathRulesTest, IgnoredElementsAreLeftOut) {
  const auto make = [](double value) {
    std::vector<Dictionary> items;
    for (int k = 0; k < 3; ++k) {
      items.push_back(dictionary("item", row<double>("v", {value})));
    }
    return dictionary("a", memory::DictionaryArray("items", {{"x", 3}}, std::move(items)));
  };
  const std::string differs = ": 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2";
  EXPECT_THAT(linesOf(make(1), make(2), ignoring({"/items\\[1]"})),
              ElementsAre("/items[0]/v" + differs, "/items[2]/v" + differs));
}

TEST(PathRulesTest, IgnoredAttributesMayLeaveOutTheSlashAtTheStart) {
  RichArray array("v", {{"x", 1}}, {1});
  array.given = {{"a", std::string("x")}, {"b", std::string("y")}};
  Dictionary first("a");
  first.add(std::move(array));
  const Dictionary second = dictionary("b", row<double>("v", {1}));
  Options options = ignoring({"v@a"});
  options.attributes = true;
  EXPECT_THAT(linesOf(first, second, options), ElementsAre("/v@b: only in the first: 'y'"));
  options.ignore = {"/v@a"};
  EXPECT_THAT(linesOf(first, second, options), ElementsAre("/v@b: only in the first: 'y'"));
}

TEST(PathRulesTest, PathThatHasWildcardsMayLeaveOutTheSlashAtTheStart) {
  EXPECT_THAT(differing(tolerating({{"a[1]", {1, 0}}})), ElementsAre("/a", "/a1", "/g/a", "/g/b"));
}

TEST(PathRulesTest, PathThatHasWildcardsIsThatOfAnEntryOfEitherSide) {
  const Dictionary with = dictionary("a", row<double>("a[1]", {1}), row<double>("a1", {1}));
  const Dictionary without = dictionary("b", row<double>("a1", {2}));
  const std::string differs = "/a1: 1 of 1 values differ; the largest delta is 1 at x=0: ";
  EXPECT_THAT(linesOf(with, without, ignoring({"/a[1]"})), ElementsAre(differs + "1 and 2"));
  EXPECT_THAT(linesOf(without, with, ignoring({"/a[1]"})), ElementsAre(differs + "2 and 1"));
}

TEST(PathRulesTest, NamesInAPathMayHaveSlashes) {
  const auto make = [](double value) {
    return dictionary("root",
                      dictionary("a/b", row<double>("c[1]", {value}), row<double>("c1", {value})));
  };
  EXPECT_THAT(linesOf(make(1), make(2), ignoring({"/a/b/c[1]"})),
              ElementsAre("/a/b/c1: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2"));
}

TEST(PathRulesTest, PathIsFoundBehindShorterOnesAndLongerNames) {
  const auto make = [](double value) {
    return dictionary("root", row<double>("a name that is longer", {value}),
                      dictionary("d", row<double>("x[1]", {value}), row<double>("x1", {value})));
  };
  const std::string differs = ": 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2";
  EXPECT_THAT(linesOf(make(1), make(2), ignoring({"/d/x[1]"})),
              ElementsAre("/a name that is longer" + differs, "/d/x1" + differs));
}

TEST(PathRulesTest, PatternWhoseEndIsAnEntryIsAPatternElsewhere) {
  const auto make = [](double value) {
    return dictionary("cells", row<double>("x[1]", {value}), row<double>("x1", {value}));
  };
  Options options = ignoring({"*****/x[1]"});  // as long as the root and more
  options.root = "/cells";
  EXPECT_THAT(linesOf(make(1), make(2), options),
              ElementsAre("/cells/x[1]: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and "
                          "2"));
}

TEST(PathRulesTest, IgnoredAttributesMayStandAnywhereBelow) {
  RichArray array("v", {{"x", 1}}, {1});
  array.given = {{"a", std::string("x")}};
  Dictionary group("g");
  group.add(std::move(array));
  Dictionary first("a");
  first.add(std::move(group));
  Options options = ignoring({"*@a"});
  options.attributes = true;
  EXPECT_THAT(linesOf(first, dictionary("b", dictionary("g", row<double>("v", {1}))), options),
              ElementsAre());
}

TEST(PathRulesTest, EntryThatFailsIsNoTroubleForAPattern) {
  const memory::DoubleArray entry = row<double>("a", {1});
  const LooseDictionary failing({"thrown"}, &entry);
  EXPECT_THAT(linesOf(failing, failing, ignoring({"/thrown/a[1]"})),
              ElementsAre("/thrown: not compared: gone"));
  const Dictionary other = dictionary("b", row<double>("thrown/a1", {1}));
  EXPECT_THAT(linesOf(failing, other, ignoring({"/thrown/a[1]"})),
              ElementsAre("/thrown: not compared: gone"));
}

TEST(PathRulesTest, EmptyPatternIsThePathOfTheRoot) {
  EXPECT_THAT(differing(ignoring({""})), ElementsAre("/a", "/a[1]", "/a1", "/g/a", "/g/b"));
  EXPECT_TRUE(
      compare(row<double>("a", {1}), row<double>("a", {2}), tolerating({{"", {1, 0}}})).same);
}

TEST(PathRulesTest, PatternsOfPathsThatAreNotBelowTheRootMatchNothing) {
  const auto make = [](double value) {
    return dictionary("cells", row<double>("x*", {value}), row<double>("x1", {value}));
  };
  Options options = ignoring({"/other/x*", "/cellsX/x*", "/x*"});
  options.root = "/cells";
  const std::string differs = ": 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2";
  EXPECT_THAT(linesOf(make(1), make(2), options),
              ElementsAre("/cells/x*" + differs, "/cells/x1" + differs));
}

TEST(PathRulesTest, EntryThatIsNoneIsNoTroubleForAPattern) {
  const LooseDictionary none({"a"}, nullptr);
  EXPECT_THAT(linesOf(none, none, ignoring({"/a/*"})),
              ElementsAre("/a: not compared: neither side has an object there"));
}

TEST(PathRulesTest, EntryThatFailsInItsOwnWayIsNoTroubleForAPattern) {
  const memory::DoubleArray entry = row<double>("a", {1});
  const LooseDictionary failing({"closed"}, &entry);
  EXPECT_THAT(linesOf(failing, failing, ignoring({"/closed/a[1]"})),
              ElementsAre("/closed: not compared: shut"));
  const Dictionary other = dictionary("b", row<double>("closed/a1", {1}));
  EXPECT_THAT(linesOf(failing, other, ignoring({"/closed/a[1]"})),
              ElementsAre("/closed: not compared: shut"));
}

}  // namespace
}  // namespace quillon::compare
