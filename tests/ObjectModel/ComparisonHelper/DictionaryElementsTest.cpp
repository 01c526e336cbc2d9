#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ObjectModel/ComparisonHelper/OddDictionary.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using ::test::CallLog;
using ::test::record;
using testing::ElementsAre;

memory::Dictionary item(long value) { return dictionary("item", list<long>("x", {value})); }

memory::DictionaryArray items(const std::vector<long>& values) {
  std::vector<memory::Dictionary> elements;
  for (const long value : values) {
    elements.push_back(item(value));
  }
  return list<memory::Dictionary>("items", std::move(elements));
}

/// An array whose only element is what it is given.
class ArrayOf : public memory::ArrayBase {
 public:
  explicit ArrayOf(const object_model::Data* element)
      : ArrayBase("items", ElementType::Dictionary, axes({})), m_element(element) {}
  const object_model::Data* getValueAsDictionary(const object_model::Tuple&) const override {
    return m_element;
  }

 private:
  const object_model::Data* m_element;
};

TEST(AreSameArrays, ComparesDictionaryElements) {
  EXPECT_EQ(compareArrays(items({1, 2}), items({1, 2})), same());
  EXPECT_EQ(compareArrays(items({}), items({})), same());
}

TEST(AreSameArrays, PutsNoBlankBeforeTheSentenceForADictionaryElement) {
  EXPECT_EQ(
      compareArrays(list<memory::Dictionary>("items", several(item(1), item(1), dictionary("x"))),
                    list<memory::Dictionary>("items", several(item(1), item(1), dictionary("y")))),
      differs("The arrays 'items' have different dictionaries at the position (2)':"
              "The dictionaries have different names: 'x' and 'y'."));
}

TEST(AreSameArrays, ReportsTheLastDifferentDictionaryElement) {
  EXPECT_EQ(compareArrays(items({1, 2, 3, 4}), items({5, 2, 6, 4})),
            differs("The arrays 'items' have different dictionaries at the position (2)':"
                    "Array 'x': The arrays 'x' have different values at the position (0)': '3' and "
                    "'6'."));
}

TEST(AreSameArrays, PassesModeAndToleranceToDictionaryElements) {
  EXPECT_EQ(compareArrays(items({10}), items({11}), ComparisonType::Relative, 0.5), same());
  EXPECT_EQ(compareArrays(items({1}), items({1}), static_cast<ComparisonType>(-1)),
            rejectedAtLine(382));
  const auto empty = list<memory::Dictionary>("items", several(dictionary("x")));
  EXPECT_EQ(compareArrays(empty, empty, static_cast<ComparisonType>(7)), same());
}

TEST(AreSameArrays, WithoutAMessageComparesDictionaryElementsToo) {
  using object_model::helper::areSameArrays;
  EXPECT_TRUE(areSameArrays(items({1, 2}), items({1, 2}), ComparisonType::Exact, 0, nullptr));
  EXPECT_FALSE(areSameArrays(items({1, 2}), items({3, 2}), ComparisonType::Exact, 0, nullptr));
}

TEST(AreSameArrays, VisitsDictionaryElementsOfTwoDimensionsInFull) {
  const std::vector<std::string> positions = {"0;0", "1;0", "0;1", "1;1", "0;2", "1;2"};
  for (std::size_t different = 0; different < positions.size(); ++different) {
    std::vector<memory::Dictionary> some;
    std::vector<memory::Dictionary> others;
    for (std::size_t k = 0; k < positions.size(); ++k) {
      some.push_back(item(1));
      others.push_back(item(k == different ? 2 : 1));
    }
    EXPECT_EQ(compareArrays(array<memory::Dictionary>("items", {2, 3}, std::move(some)),
                            array<memory::Dictionary>("items", {2, 3}, std::move(others))),
              differs("The arrays 'items' have different dictionaries at the position (" +
                      positions[different] +
                      ")':Array 'x': The arrays 'x' have different values at the position (0)': "
                      "'1' and '2'."));
  }
}

TEST(AreSameArrays, VisitsDictionaryElementsOfFiveDimensionsLikeOthers) {
  std::vector<memory::Dictionary> some;
  std::vector<memory::Dictionary> others;
  for (int i = 0; i < 8; ++i) {  // shape (2, 1, 1, 2, 2): only the first two are visited
    some.push_back(item(0));
    others.push_back(item(i < 2 ? 0 : i));
  }
  const std::vector<unsigned long> shape = {2, 1, 1, 2, 2};
  EXPECT_EQ(compareArrays(array<memory::Dictionary>("items", shape, std::move(some)),
                          array<memory::Dictionary>("items", shape, std::move(others))),
            same());
}

TEST(AreSameArrays, NamesTheEmptyPositionOfADictionaryElement) {
  const auto x = dictionary("x");
  const auto y = dictionary("y");
  EXPECT_EQ(compareArrays(ArrayOf(&x), ArrayOf(&y)),
            differs("The arrays 'items' have different dictionaries at the position (empty)':"
                    "The dictionaries have different names: 'x' and 'y'."));
}

memory::Dictionary around(memory::Dictionary element) {
  return dictionary("all", list<memory::Dictionary>("items", several(std::move(element))));
}

TEST(AreSameDictionaries, SaysWhatDiffersInADictionaryElementOfAnEntry) {
  const std::string where =
      "Array 'items': The arrays 'items' have different dictionaries at the position (0)':";
  EXPECT_EQ(compareDictionaries(around(dictionary("x")), around(dictionary("y"))),
            differs(where + "The dictionaries have different names: 'x' and 'y'."));
  EXPECT_EQ(
      compareDictionaries(around(dictionary("x", item(1))), around(dictionary("x", item(2)))),
      differs(where + "Dictionary 'x': Array 'x': The arrays 'x' have different values at the "
                      "position (0)': '1' and '2'."));
}

TEST(AreSameArrays, RefusesElementsThatAreNoDictionaries) {
  const auto good = dictionary("x");
  const auto wrong = list<long>("x", {1});
  const NeitherKind neither("x");
  for (const object_model::Data* bad : {static_cast<const object_model::Data*>(&wrong),
                                        static_cast<const object_model::Data*>(&neither),
                                        static_cast<const object_model::Data*>(nullptr)}) {
    EXPECT_EQ(compareArrays(ArrayOf(bad), ArrayOf(&good)), throws("std::bad_cast"));
    EXPECT_EQ(compareArrays(ArrayOf(&good), ArrayOf(bad)), throws("std::bad_cast"));
  }
}

TEST(AreSameArrays, ReadsDictionaryElementsOfSecondFirst) {
  CallLog log;
  const auto a = list<memory::Dictionary>("items", several(dictionary("p"), dictionary("q")));
  const auto first = record(a, "1", log);
  const auto second = record(a, "2", log);
  EXPECT_EQ(compareArrays(*first->asArray(), *second->asArray()), same());
  EXPECT_THAT(
      log.calls(),
      ElementsAre("1.info", "1.name", "2.info", "2.name", "1.info", "1.elementType", "2.info",
                  "2.elementType", "1.size", "2.size", "2.dictionary(0)", "1.dictionary(0)",  //
                  "1(0).info", "1(0).name", "2(0).info", "2(0).name", "1(0).count", "2(0).count",
                  "1(0).count", "2.dictionary(1)", "1.dictionary(1)",  //
                  "1(1).info", "1(1).name", "2(1).info", "2(1).name", "1(1).count", "2(1).count",
                  "1(1).count"));
}

TEST(AreSameArrays, AsksForTheNamesOfContainersFromTheInsideOut) {
  CallLog log;
  const auto a = list<memory::Dictionary>(
      "items", several(dictionary("p", dictionary("q", dictionary("r", dictionary("s"))))));
  const auto b = list<memory::Dictionary>(
      "items", several(dictionary("p", dictionary("q", dictionary("r", list<long>("s", {}))))));
  const auto first = record(a, "1", log);
  const auto second = record(b, "2", log);
  const auto lastCalls = [&](bool explains, std::ptrdiff_t count) {
    log.reset();
    outcomeOf(
        [&](std::string* message) {
          return object_model::helper::areSameArrays(*first->asArray(), *second->asArray(),
                                                     ComparisonType::Exact, 0, message);
        },
        explains);
    return std::vector<std::string>(log.calls().end() - count, log.calls().end());
  };
  EXPECT_THAT(lastCalls(true, 5), ElementsAre("2(0)/q/r/s.isDictionary", "1(0)/q.info",
                                              "1(0)/q.name", "1(0).info", "1(0).name"));
  // Without a message nobody asks for the outermost container's sentence.
  EXPECT_THAT(lastCalls(false, 3),
              ElementsAre("2(0)/q/r/s.isDictionary", "1(0)/q.info", "1(0)/q.name"));
}

}  // namespace
}  // namespace quillon::test
