#include <gmock/gmock.h>
#include <quillon/memory/TypedArray.h>

#include <utility>

#include "support/FaultInjection.h"

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Too long to be kept without an allocation.
const std::string LONG = "a text that needs memory of its own";

std::string inWords(const HasAttributes& object) {
  std::string words;
  for (const Attribute& attribute : object.attributes()) {
    words += attribute.name + "=" + std::get<std::string>(attribute.value) + "\n";
  }
  return words;
}

TEST(AttributeListTest, ObjectsHaveNoneAtFirst) {
  EXPECT_THAT(Dictionary("d").attributes(), IsEmpty());
  EXPECT_THAT(DoubleArray("a", {}, {0}).attributes(), IsEmpty());
}

TEST(AttributeListTest, AttributesKeepTheirOrderAndTypes) {
  DoubleArray array("a", {}, {0});
  array.setAttribute("standard_name", "air_temperature");
  array.setAttribute("range", std::vector<float>{0, 1});
  array.setAttribute("flags", std::vector<std::string>{"a", "b"});
  EXPECT_THAT(array.attributes(),
              ElementsAre(Attribute{"standard_name", "air_temperature"},
                          Attribute{"range", std::vector<float>{0, 1}},
                          Attribute{"flags", std::vector<std::string>{"a", "b"}}));
}

TEST(AttributeListTest, ANewValueStaysInThePlaceOfTheOld) {
  Dictionary dictionary("d");
  dictionary.setAttribute("a", "1");
  dictionary.setAttribute("b", "2");
  dictionary.setAttribute("a", "3");
  EXPECT_EQ(inWords(dictionary), "a=3\nb=2\n");
}

TEST(AttributeListTest, AllAreReplacedAtOnce) {
  Dictionary dictionary("d");
  dictionary.setAttribute("a", "1");
  dictionary.setAttributes({{"b", "2"}, {"c", "3"}});
  EXPECT_EQ(inWords(dictionary), "b=2\nc=3\n");
  dictionary.setAttributes({});
  EXPECT_THAT(dictionary.attributes(), IsEmpty());
}

TEST(AttributeListTest, RemovingSaysWhetherThereWasOne) {
  Dictionary dictionary("d");
  EXPECT_FALSE(dictionary.removeAttribute("a"));
  dictionary.setAttribute("a", "1");
  dictionary.setAttribute("b", "2");
  EXPECT_TRUE(dictionary.removeAttribute("a"));
  EXPECT_FALSE(dictionary.removeAttribute("a"));
  EXPECT_EQ(inWords(dictionary), "b=2\n");
}

TEST(AttributeListTest, AreFoundOnAnyObjectByItsClass) {
  Dictionary root("root");
  root.add(DoubleArray("a", {}, {0})).setAttribute("k", "v");
  const auto* found = dynamic_cast<const HasAttributes*>(root.data("a"));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(inWords(*found), "k=v\n");
}

TEST(AttributeListTest, MoveWithTheirObject) {
  DoubleArray array("a", {}, {0});
  array.setAttribute("k", "v");
  EXPECT_EQ(inWords(DoubleArray(std::move(array))), "k=v\n");
  Dictionary source("d");
  source.setAttribute("k", "v");
  Dictionary target("d");
  target.setAttribute("old", "gone");
  target = std::move(source);
  EXPECT_EQ(inWords(target), "k=v\n");
  EXPECT_EQ(inWords(Dictionary(std::move(target))), "k=v\n");
}

TEST(AttributeListTest, OutOfMemoryNothingIsChanged) {
  std::unique_ptr<Dictionary> dictionary;
  const auto failing = [&](const char* name) {
    test::AllOrNothing operation(
        [&] {
          dictionary = std::make_unique<Dictionary>("d");
          dictionary->setAttribute("a", LONG);
        },
        [&] { dictionary->setAttribute(name, LONG + "!"); }, [&] { return inWords(*dictionary); });
    return test::injectEveryFault(operation).allocations;
  };
  EXPECT_GE(failing("b"), 2U);
  EXPECT_GE(failing("a"), 1U);
}

}  // namespace
}  // namespace quillon::memory
