#include <gtest/gtest.h>

#include <algorithm>

#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using object_model::Array;
using object_model::Dictionary;
using ::test::CallLog;
using ::test::Failure;
using ::test::record;

TEST(AreSameArrays, PassesOnWhatAnAccessorThrowsAndKeepsTheMessage) {
  const auto a = list<double>("A", {1, 2, 3});
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(a, "2", log);
  const auto compare = [&](Failure failure) {
    log.failAt(13, failure);  // 2.double(1)
    return compareArrays(*first->asArray(), *second->asArray());
  };
  EXPECT_EQ(compare(Failure::StandardException), throws("failed at 2.double(1)"));
  EXPECT_EQ(compare(Failure::InvalidCall),
            throws("object_model::InvalidCall: failed at 2.double(1)"));
  EXPECT_EQ(compare(Failure::Number), throws("the number 42"));
}

TEST(AreSameArrays, LeavesTheLastDifferenceBeforeAnExceptionInTheMessage) {
  const auto a = list<std::string>("A", {"a", "b", "c", "d"});
  const auto b = list<std::string>("A", {"a", "x", "y", "z"});
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  log.failAt(16, Failure::Number);  // 1.string(3)
  EXPECT_EQ(compareArrays(*first->asArray(), *second->asArray()),
            throws("the number 42",
                   "The arrays 'A' have different values at the position (2)': 'c' and 'y'."));
}

TEST(AreSameArrays, LeavesTheLastDifferentDictionaryBeforeAnExceptionInTheMessage) {
  const auto a = list<memory::Dictionary>("A", several(dictionary("a"), dictionary("b")));
  const auto b = list<memory::Dictionary>("A", several(dictionary("x"), dictionary("b")));
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  log.failAt(17, Failure::StandardException);  // 1.dictionary(1)
  EXPECT_EQ(compareArrays(*first->asArray(), *second->asArray()),
            throws("failed at 1.dictionary(1)",
                   "The arrays 'A' have different dictionaries at the position (0)':The "
                   "dictionaries have different names: 'a' and 'x'."));
}

TEST(AreSameArrays, PassesOnTheFailureOfAnAccessorThatIsNotProvided) {
  const UnreadableArray a("A", 2, {1});
  EXPECT_EQ(compareArrays(a, a),
            throws("object_model::InvalidCall: Array 'A' holds Double elements and cannot be read "
                   "as Double"));
}

TEST(AreSameDictionaries, LeavesTheMessageWhenAnExceptionPasses) {
  const auto a = dictionary("A", list<long>("x", {1, 2}));
  const auto b = dictionary("A", list<long>("x", {3, 2}));
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  compareDictionaries(*first->asDictionary(), *second->asDictionary());
  log.failAt(log.calls().size() - 1, Failure::Number);  // after the difference
  EXPECT_EQ(compareDictionaries(*first->asDictionary(), *second->asDictionary()),
            throws("the number 42"));
}

TEST(AreSimilarDictionaries, PassesOnAllFailuresButThoseOfTheLookup) {
  const auto a = dictionary("A", list<long>("x", {1}));
  CallLog log;
  const auto first = record(a, "1", log);
  const auto second = record(a, "2", log);
  compareOutlines(*first->asDictionary(), *second->asDictionary());
  const auto calls = log.calls();
  for (std::size_t call = 0; call < calls.size(); ++call) {
    log.failAt(call, Failure::StandardException);
    EXPECT_EQ(compareOutlines(*first->asDictionary(), *second->asDictionary()),
              calls[call] == "2.data(x)" ? differs("The dictionary 'A'  doesn't have a 'x' entry.")
                                         : throws("failed at " + calls[call]));
  }
}

/// Two dictionaries with entries of every kind and differences at every level.
struct EverythingTwice {
  static memory::Dictionary make(long offset) {
    memory::Dictionary result = dictionary(
        "all", list<unsigned long>("uint", {1, 2}), list<long>("int", {1, -2}),
        array<double>("double", {}, {1.5}), list<std::complex<double>>("complex", {{1, 2}}),
        list<std::string>("string", {"a", "b"}), list<bool>("boolean", {true, false}));
    result.add(dictionary("sub", dictionary("empty"), list<long>("x", {1, 2})));
    result.add(list<memory::Dictionary>(
        "items", several(dictionary("a", list<long>("x", {1 + offset, 2})),
                         dictionary("b", dictionary("c", list<long>("x", {1, 2 + offset})),
                                    list<double>("y", {1})))));
    return result;
  }

  explicit EverythingTwice(long offset) : a(make(0)), b(make(offset)) {}

  memory::Dictionary a;
  memory::Dictionary b;
  CallLog log;
  std::unique_ptr<object_model::Data> first = record(a, "1", log);
  std::unique_ptr<object_model::Data> second = record(b, "2", log);
};

class EveryFailureTest : public testing::TestWithParam<Failure> {};

TEST_P(EveryFailureTest, AtEveryCallIsSeenAsThePlainComparisonShowsIt) {
  for (const long offset : {0, 5}) {
    EverythingTwice data(offset);
    const Dictionary& first = *data.first->asDictionary();
    const Dictionary& second = *data.second->asDictionary();
    const auto compare = [&](const auto& areSame) {
      const Outcome outcome = outcomeOf([&](std::string* message) {
        return areSame(first, second, ComparisonType::Relative, 0.1, message);
      });
      return std::make_pair(outcome, data.log.calls());
    };
    std::size_t calls = compare(object_model::helper::areSameDictionaries).second.size();
    ASSERT_GT(calls, 100U);
    for (std::size_t call = 0; call < calls; ++call) {
      data.log.failAt(call, GetParam());
      const auto actual = compare(object_model::helper::areSameDictionaries);
      data.log.failAt(call, GetParam());
      const auto expected = compare(plain::areSameDictionaries);
      EXPECT_EQ(actual, expected) << "at " << call;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Failures, EveryFailureTest,
                         testing::Values(Failure::StandardException, Failure::InvalidCall,
                                         Failure::Number),
                         [](const auto& failure) {
                           switch (failure.param) {
                             case Failure::StandardException:
                               return "StandardException";
                             case Failure::InvalidCall:
                               return "InvalidCall";
                             default:
                               return "NoStandardException";
                           }
                         });

}  // namespace
}  // namespace quillon::test
