#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

#include "ObjectModel/ComparisonHelper/OddDictionary.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using ::test::CallLog;
using ::test::record;
using testing::ElementsAre;

TEST(AreSameDictionaries, AcceptsEmptyDictionariesOfOneName) {
  EXPECT_EQ(compareDictionaries(dictionary("A"), dictionary("A")), same());
}

TEST(AreSameDictionaries, ReportsADifferentOutlineAndComparesNoValues) {
  const auto mode = static_cast<ComparisonType>(7);  // would throw at the first value
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1}), dictionary("y")),
                                dictionary("A", list<long>("x", {2}), list<long>("y", {1})), mode),
            differs("The dictionaries don't have the same type: 'A' is a dictionary and 'A' is an "
                    "array."));
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1})), dictionary("B"), mode),
            differs("The dictionaries have different names: 'A' and 'B'."));
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1})), dictionary("A"), mode),
            differs("The dictionaries 'A' have different sizes: '1' and '0'."));
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1}), list<long>("y", {1})),
                                dictionary("A", list<long>("x", {2}), list<long>("z", {1})), mode),
            differs("The dictionary 'A'  doesn't have a 'y' entry."));
}

TEST(AreSameDictionaries, MatchesEntriesByNameAndNotByPosition) {
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1}), list<long>("y", {2})),
                                dictionary("A", list<long>("y", {2}), list<long>("x", {1}))),
            same());
}

TEST(AreSameDictionaries, PrefixesTheSentenceForAnArrayEntry) {
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("a", {1, 2, 3, 4})),
                                dictionary("A", list<long>("a", {1, 2, 3, 4, 5}))),
            differs("Array 'a': The arrays 'a' have different sizes for the dimension : '0': '4' "
                    "and '5'."));
}

memory::Dictionary rootWith(long value) {
  return dictionary("root", dictionary("sub", dictionary("leaf", list<long>("x", {value}))));
}

TEST(AreSameDictionaries, NamesTheContainersOfADifferenceDeepInside) {
  EXPECT_EQ(compareDictionaries(dictionary("root", dictionary("sub", list<long>("x", {1}))),
                                dictionary("root", dictionary("sub", list<long>("x", {2})))),
            differs("Dictionary 'root': Array 'x': The arrays 'x' have different values at the "
                    "position (0)': '1' and '2'."));
  EXPECT_EQ(compareDictionaries(rootWith(1), rootWith(2)),
            differs("Dictionary 'root': Dictionary 'sub': Array 'x': The arrays 'x' have different "
                    "values at the position (0)': '1' and '2'."));
}

TEST(AreSameDictionaries, PrefixesADifferentOutlineInside) {
  EXPECT_EQ(
      compareDictionaries(dictionary("root", dictionary("sub", list<long>("x", {1}))),
                          dictionary("root", dictionary("sub"))),
      differs("Dictionary 'root': The dictionaries 'sub' have different sizes: '1' and '0'."));
}

TEST(AreSameDictionaries, PassesModeAndToleranceToEveryLevel) {
  EXPECT_EQ(compareDictionaries(rootWith(10), rootWith(11), ComparisonType::Absolute, 1), same());
  EXPECT_EQ(compareDictionaries(rootWith(10), rootWith(12), ComparisonType::Absolute, 1),
            differs("Dictionary 'root': Dictionary 'sub': Array 'x': The arrays 'x' have different "
                    "values at the position (0)': '10' and '12'. The absolute delta is greater "
                    "than 1.000000"));
  EXPECT_EQ(compareDictionaries(rootWith(10), rootWith(10), static_cast<ComparisonType>(3)),
            rejectedAtLine(382));
}

TEST(AreSameDictionaries, StopsAtTheFirstDifferentEntryOfFirst) {
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("a", {1}), list<long>("b", {1}),
                                           UnreadableArray("c", 2, {1})),
                                dictionary("A", UnreadableArray("c", 2, {1}), list<long>("b", {2}),
                                           list<long>("a", {1}))),
            differs("Array 'b': The arrays 'b' have different values at the position (0)': '1' and "
                    "'2'."));
  EXPECT_EQ(compareDictionaries(dictionary("A", rootWith(1), UnreadableArray("c", 2, {1})),
                                dictionary("A", rootWith(2), UnreadableArray("c", 2, {1}))),
            differs("Dictionary 'A': Dictionary 'root': Dictionary 'sub': Array 'x': The arrays "
                    "'x' have different values at the position (0)': '1' and '2'."));
}

TEST(AreSameDictionaries, GoesOnAfterANestedDictionaryThatIsTheSame) {
  EXPECT_EQ(compareDictionaries(dictionary("A", rootWith(1), list<long>("z", {1})),
                                dictionary("A", rootWith(1), list<long>("z", {2}))),
            differs("Array 'z': The arrays 'z' have different values at the position (0)': '1' and "
                    "'2'."));
}

TEST(AreSameDictionaries, RefusesEntriesThatAreNeitherArraysNorDictionaries) {
  const NeitherKind neither("x");
  OddDictionary odd("A", 1);
  odd.onLookup = [&] { return &neither; };
  const auto ordinary = dictionary("A", list<long>("x", {1}));
  EXPECT_EQ(compareDictionaries(odd, odd), throws("std::bad_cast"));
  EXPECT_EQ(compareDictionaries(odd, ordinary), throws("std::bad_cast"));
  EXPECT_EQ(compareDictionaries(ordinary, odd), throws("std::bad_cast"));
}

TEST(AreSameDictionaries, RefusesAnEntryThatIsGoneAfterTheOutlineWasChecked) {
  const auto entry = list<long>("x", {1});
  int lookups = 0;
  OddDictionary second("A", 1);
  second.onLookup = [&]() -> const object_model::Data* {
    return ++lookups == 1 ? &entry : nullptr;
  };
  EXPECT_EQ(compareDictionaries(dictionary("A", list<long>("x", {1})), second),
            throws("std::bad_cast"));
}

TEST(AreSameDictionaries, NeedsNoMessage) {
  using object_model::helper::areSameDictionaries;
  const auto a = rootWith(1);
  EXPECT_TRUE(areSameDictionaries(a, rootWith(1), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameDictionaries(a, rootWith(2), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameDictionaries(a, dictionary("B"), ComparisonType::Exact, 0, nullptr));
}

TEST(AreSameDictionaries, ReplacesAMessageAndLeavesItWhenTheDictionariesAreTheSame) {
  std::string message = "an old message";
  EXPECT_TRUE(object_model::helper::areSameDictionaries(rootWith(1), rootWith(1),
                                                        ComparisonType::Exact, 0, &message));
  EXPECT_EQ(message, "an old message");
  EXPECT_FALSE(object_model::helper::areSameDictionaries(rootWith(1), dictionary("B"),
                                                         ComparisonType::Exact, 0, &message));
  EXPECT_EQ(message, "The dictionaries have different names: 'root' and 'B'.");
}

TEST(AreSameDictionaries, ChecksTheOutlineAtEveryLevelBeforeItsEntries) {
  CallLog log;
  const auto a = dictionary("A", dictionary("y"), list<long>("x", {1}));
  const auto b = dictionary("A", dictionary("y"), list<long>("x", {2}));
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  compareDictionaries(*first->asDictionary(), *second->asDictionary());
  EXPECT_THAT(log.calls(),
              ElementsAre("1.info", "1.name", "2.info", "2.name", "1.count", "2.count",       //
                          "1.dataName(0)", "1.data(y)", "1/y.info", "1/y.name", "2.data(y)",  //
                          "1/y.isDictionary", "2/y.isDictionary",                             //
                          "1.dataName(1)", "1.data(x)", "1/x.info", "1/x.name", "2.data(x)",  //
                          "1/x.isDictionary", "2/x.isDictionary",                             //
                          "1.count",                                                          //
                          "1.dataName(0)", "1.data(y)", "1/y.info", "1/y.name", "2.data(y)",  //
                          "1/y.isDictionary",                                                 //
                          "1/y.info", "1/y.name", "2/y.info", "2/y.name", "1/y.count", "2/y.count",
                          "1/y.count",                                                        //
                          "1.dataName(1)", "1.data(x)", "1/x.info", "1/x.name", "2.data(x)",  //
                          "1/x.isDictionary",                                                 //
                          "1/x.info", "1/x.name", "2/x.info", "2/x.name", "1/x.info",
                          "1/x.elementType", "2/x.info", "2/x.elementType", "1/x.size", "2/x.size",
                          "1/x.int(0)", "2/x.int(0)"));
}

TEST(AreSameDictionaries, AsksForTheContainersNameOnlyToExplain) {
  CallLog log;
  const auto a = dictionary("A", dictionary("x", list<long>("y", {1})));
  const auto b = dictionary("A", dictionary("x"));
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  std::string message;
  const auto lastCall = [&](std::string* explanation) {
    log.reset();
    EXPECT_FALSE(object_model::helper::areSameDictionaries(
        *first->asDictionary(), *second->asDictionary(), ComparisonType::Exact, 0, explanation));
    return log.calls().back();
  };
  EXPECT_EQ(lastCall(&message), "1.name");
  EXPECT_EQ(lastCall(nullptr), "2/x.count");
}

// Runs `task` in a thread with so little stack that no call of its own fits for every level of the
// deep dictionaries below.
void runOnSmallStack(const std::function<void()>& task) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread = {};
  const auto start = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, start,
                           const_cast<void*>(static_cast<const void*>(&task))),
            0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

Outcome compareOnSmallStack(const object_model::Dictionary& first,
                            const object_model::Dictionary& second) {
  Outcome outcome;
  runOnSmallStack([&] { outcome = compareDictionaries(first, second); });
  return outcome;
}

memory::Dictionary nest(int depth, long value) {
  memory::Dictionary result = dictionary("d", list<long>("x", {value}));
  for (int level = 0; level < depth; ++level) {
    result = dictionary("d", std::move(result));
  }
  return result;
}

TEST(AreSameDictionaries, NestsTenThousandDeepWithoutUsingStack) {
  const auto first = nest(10000, 1);
  EXPECT_EQ(compareOnSmallStack(first, nest(10000, 1)), same());

  std::string message;
  for (int level = 0; level < 10000; ++level) {
    message += "Dictionary 'd': ";
  }
  message += "Array 'x': The arrays 'x' have different values at the position (0)': '1' and '2'.";
  EXPECT_EQ(compareOnSmallStack(first, nest(10000, 2)), differs(message));
}

memory::Dictionary nestInArrays(int depth, long value) {
  memory::Dictionary result = dictionary("d", list<long>("x", {value}));
  for (int level = 0; level < depth; ++level) {
    result = dictionary("d", list<memory::Dictionary>("items", several(std::move(result))));
  }
  return result;
}

TEST(AreSameDictionaries, NestsThroughArraysWithoutUsingStack) {
  const auto first = nestInArrays(4000, 1);
  EXPECT_EQ(compareOnSmallStack(first, nestInArrays(4000, 1)), same());

  std::string message;
  for (int level = 0; level < 4000; ++level) {
    message +=
        "Array 'items': The arrays 'items' have different dictionaries at the position "
        "(0)':";
  }
  message += "Array 'x': The arrays 'x' have different values at the position (0)': '1' and '2'.";
  EXPECT_EQ(compareOnSmallStack(first, nestInArrays(4000, 2)), differs(message));
}

TEST(AreSameDictionaries, ComparesAHundredThousandEntries) {
  memory::Dictionary first("d");
  memory::Dictionary second("d");
  for (int i = 0; i < 100000; ++i) {
    first.add(list<long>("entry" + std::to_string(i), {i}));
    const int j = 99999 - i;
    second.add(list<long>("entry" + std::to_string(j), {j == 99999 ? 0 : j}));
  }
  EXPECT_EQ(compareDictionaries(first, second),
            differs("Array 'entry99999': The arrays 'entry99999' have different values at the "
                    "position (0)': '99999' and '0'."));
}

}  // namespace
}  // namespace quillon::test
