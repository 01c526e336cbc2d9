#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "ObjectModel/ComparisonHelper/OddDictionary.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using ::test::CallLog;
using ::test::record;
using testing::ElementsAre;

TEST(AreSimilarDictionaries, AcceptsEmptyDictionariesOfOneName) {
  EXPECT_EQ(compareOutlines(dictionary("A"), dictionary("A")), same());
}

TEST(AreSimilarDictionaries, ReportsDifferentNames) {
  EXPECT_EQ(compareOutlines(dictionary("A"), dictionary("B")),
            differs("The dictionaries have different names: 'A' and 'B'."));
}

TEST(AreSimilarDictionaries, ReportsDifferentNamesBeforeDifferentCounts) {
  EXPECT_EQ(compareOutlines(dictionary("A", list<long>("x", {1})), dictionary("B")),
            differs("The dictionaries have different names: 'A' and 'B'."));
}

TEST(AreSimilarDictionaries, ReportsDifferentCounts) {
  EXPECT_EQ(compareOutlines(dictionary("params", dictionary("a"), dictionary("b"), dictionary("c")),
                            dictionary("params", dictionary("a"), dictionary("b"), dictionary("c"),
                                       dictionary("d"))),
            differs("The dictionaries 'params' have different sizes: '3' and '4'."));
}

TEST(AreSimilarDictionaries, ReportsCountsAsUnsigned64BitNumbers) {
  EXPECT_EQ(
      compareOutlines(OddDictionary("A", 18446744073709551615UL), OddDictionary("A", 4294967295UL)),
      differs("The dictionaries 'A' have different sizes: '18446744073709551615' and "
              "'4294967295'."));
}

TEST(AreSimilarDictionaries, ReportsAMissingEntryWithTwoBlanks) {
  EXPECT_EQ(
      compareOutlines(dictionary("B", list<long>("x", {1})), dictionary("B", list<long>("y", {1}))),
      differs("The dictionary 'B'  doesn't have a 'x' entry."));
}

TEST(AreSimilarDictionaries, ReportsTheFirstOfSeveralMissingEntries) {
  EXPECT_EQ(compareOutlines(
                dictionary("B", list<long>("x", {1}), list<long>("y", {1}), list<long>("z", {1})),
                dictionary("B", list<long>("p", {1}), list<long>("q", {1}), list<long>("x", {1}))),
            differs("The dictionary 'B'  doesn't have a 'y' entry."));
}

TEST(AreSimilarDictionaries, TakesWhateverALookupThrowsForAMissingEntry) {
  const auto first = dictionary("A", list<long>("x", {1}));
  const Outcome missing = differs("The dictionary 'A'  doesn't have a 'x' entry.");
  OddDictionary second("A", 1);
  second.onLookup = []() -> const object_model::Data* { throw 42; };
  EXPECT_EQ(compareOutlines(first, second), missing);
  second.onLookup = []() -> const object_model::Data* { throw std::runtime_error("lost"); };
  EXPECT_EQ(compareOutlines(first, second), missing);
  second.onLookup = []() -> const object_model::Data* { throw object_model::InvalidCall("no"); };
  EXPECT_EQ(compareOutlines(first, second), missing);
}

TEST(AreSimilarDictionaries, TakesALookupThatYieldsNothingForAMissingEntry) {
  OddDictionary second("A", 1);
  second.onLookup = [] { return nullptr; };
  EXPECT_EQ(compareOutlines(dictionary("A", list<long>("x", {1})), second),
            differs("The dictionary 'A'  doesn't have a 'x' entry."));
}

TEST(AreSimilarDictionaries, ReportsTheNameThatWasLookedUpWhateverItIsNow) {
  std::optional<NeitherKind> entry("the name before");
  OddDictionary first("A", 1);
  first.onLookup = [&] { return &*entry; };
  OddDictionary second("A", 1);
  second.onLookup = [&] {
    entry.emplace("another name");
    return nullptr;
  };
  EXPECT_EQ(compareOutlines(first, second),
            differs("The dictionary 'A'  doesn't have a 'the name before' entry."));
}

TEST(AreSimilarDictionaries, RefusesAnEntryOfTheFirstThatIsNothing) {
  OddDictionary first("A", 1);
  first.onLookup = [] { return nullptr; };
  EXPECT_EQ(compareOutlines(first, dictionary("A", list<long>("x", {1}))), throws("std::bad_cast"));
}

TEST(AreSimilarDictionaries, ReportsDifferentKindsUnderTheContainersNames) {
  EXPECT_EQ(compareOutlines(dictionary("params", dictionary("x")),
                            dictionary("params", list<long>("x", {1}))),
            differs("The dictionaries don't have the same type: 'params' is a dictionary and "
                    "'params' is an array."));
  EXPECT_EQ(compareOutlines(dictionary("params", list<long>("x", {1})),
                            dictionary("params", dictionary("x"))),
            differs("The dictionaries don't have the same type: 'params' is an array and "
                    "'params' is a dictionary."));
}

TEST(AreSimilarDictionaries, TakesAnEntryOfNeitherKindForAnArray) {
  const NeitherKind neither("x");
  OddDictionary odd("A", 1);
  odd.onLookup = [&] { return &neither; };
  EXPECT_EQ(compareOutlines(odd, dictionary("A", list<long>("x", {1}))), same());
  EXPECT_EQ(compareOutlines(odd, dictionary("A", dictionary("x"))),
            differs("The dictionaries don't have the same type: 'A' is an array and 'A' is a "
                    "dictionary."));
}

TEST(AreSimilarDictionaries, MatchesEntriesByNameAndNotByPosition) {
  EXPECT_EQ(compareOutlines(dictionary("A", list<long>("x", {1}), dictionary("y")),
                            dictionary("A", dictionary("y"), list<long>("x", {1}))),
            same());
}

TEST(AreSimilarDictionaries, LooksAtNoValueAndNotIntoNestedDictionaries) {
  EXPECT_EQ(
      compareOutlines(dictionary("A", list<long>("x", {1}), dictionary("y", list<long>("z", {1}))),
                      dictionary("A", list<double>("x", {2, 3}), dictionary("y"))),
      same());
}

TEST(AreSimilarDictionaries, ChecksNoEntryOfACountThatIsNotPositiveIn32Bits) {
  for (const unsigned long count :
       {2147483648UL, 4294967295UL, 4294967296UL, 9223372036854775808UL, 18446744073709551615UL}) {
    const OddDictionary odd("A", count);  // every lookup fails
    EXPECT_EQ(compareOutlines(odd, odd), same()) << count;
    EXPECT_EQ(compareDictionaries(odd, odd), same()) << count;
  }
}

TEST(AreSimilarDictionaries, ChecksTheEntriesThatACountHasIn32Bits) {
  const OddDictionary odd("A", 4294967297UL);
  EXPECT_EQ(compareOutlines(odd, odd), throws("no entry"));
}

TEST(AreSimilarDictionaries, NeedsNoMessage) {
  using object_model::helper::areSimilarDictionaries;
  const auto a = dictionary("A", dictionary("x"));
  EXPECT_TRUE(areSimilarDictionaries(a, a, nullptr));
  EXPECT_FALSE(areSimilarDictionaries(a, dictionary("B"), nullptr));
  EXPECT_FALSE(areSimilarDictionaries(a, dictionary("A"), nullptr));
  EXPECT_FALSE(areSimilarDictionaries(a, dictionary("A", dictionary("y")), nullptr));
  EXPECT_FALSE(areSimilarDictionaries(a, dictionary("A", list<long>("x", {})), nullptr));
}

TEST(AreSimilarDictionaries, ReplacesAMessageAndLeavesItWhenTheOutlinesAgree) {
  std::string message = "an old message";
  EXPECT_TRUE(
      object_model::helper::areSimilarDictionaries(dictionary("A"), dictionary("A"), &message));
  EXPECT_EQ(message, "an old message");
  EXPECT_FALSE(
      object_model::helper::areSimilarDictionaries(dictionary("A"), dictionary("B"), &message));
  EXPECT_EQ(message, "The dictionaries have different names: 'A' and 'B'.");
}

TEST(AreSimilarDictionaries, AsksEverythingOnceAndInOrder) {
  CallLog log;
  const auto a = dictionary("A", list<long>("x", {1}), dictionary("y"));
  const auto first = record(a, "1", log);
  const auto second = record(a, "2", log);
  EXPECT_EQ(compareOutlines(*first->asDictionary(), *second->asDictionary()), same());
  EXPECT_THAT(log.calls(),
              ElementsAre("1.info", "1.name", "2.info", "2.name", "1.count", "2.count",       //
                          "1.dataName(0)", "1.data(x)", "1/x.info", "1/x.name", "2.data(x)",  //
                          "1/x.isDictionary", "2/x.isDictionary",                             //
                          "1.dataName(1)", "1.data(y)", "1/y.info", "1/y.name", "2.data(y)",  //
                          "1/y.isDictionary", "2/y.isDictionary"));
}

}  // namespace
}  // namespace quillon::test
