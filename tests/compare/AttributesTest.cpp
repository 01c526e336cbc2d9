#include <gmock/gmock.h>
#include <quillon/memory/TimeArray.h>

#include "Support.h"

namespace quillon::compare {
namespace {

using memory::Attribute;
using memory::Dictionary;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

RichArray withAttributes(std::vector<Attribute> attributes) {
  RichArray array("t2m", {{"x", 1}}, {1});
  array.given = std::move(attributes);
  return array;
}

std::vector<std::string> linesOfAttributes(std::vector<Attribute> first,
                                           std::vector<Attribute> second, Options options = {}) {
  options.attributes = true;
  return linesOf(withAttributes(std::move(first)), withAttributes(std::move(second)), options);
}

TEST(AttributesTest, AreNotComparedUnlessAskedFor) {
  EXPECT_TRUE(compare(withAttributes({{"a", std::string("x")}}), withAttributes({})).same);
}

TEST(AttributesTest, RecordsOfHowAFileWasMadeAreThese) {
  EXPECT_THAT(RECORD_ATTRIBUTES, ElementsAre("history", "date_created", "creation_date", "uuid",
                                             "tracking_id", "NCO", "CDO"));
}

TEST(AttributesTest, DifferInValueOrAreOnOneSideOnly) {
  EXPECT_THAT(linesOfAttributes({{"a", std::string("x")}, {"b", std::string("y")}},
                                {{"c", std::vector<int>{1, 2}}, {"a", std::string("z")}}),
              ElementsAre("/@a: the attributes differ: 'x' and 'z'", "/@b: only in the first: 'y'",
                          "/@c: only in the second: '1, 2'"));
}

TEST(AttributesTest, CalendarsAreAttributesUnlessTheyAreTheStandardOne) {
  const auto times = [](memory::Calendar calendar) {
    return memory::TimeArray("t", {{"x", 1}}, {1}, calendar);
  };
  Options options;
  options.attributes = true;
  const memory::TimeArray standard = times(memory::Calendar::Standard);
  const memory::TimeArray noLeap = times(memory::Calendar::NoLeap);
  EXPECT_TRUE(compare(noLeap, noLeap, options).same);
  EXPECT_THAT(linesOf(noLeap, standard, options),
              ElementsAre("/@calendar: only in the first: 'noleap'"));
  EXPECT_THAT(linesOf(noLeap, times(memory::Calendar::Day360), options),
              ElementsAre("/@calendar: the attributes differ: 'noleap' and '360_day'"));
  memory::TimeArray named = times(memory::Calendar::NoLeap);
  named.setAttribute("calendar", std::string("365_day"));
  EXPECT_THAT(linesOf(named, standard, options),
              ElementsAre("/@calendar: only in the first: '365_day'"));
  EXPECT_TRUE(compare(noLeap, standard).same);
}

TEST(AttributesTest, TypesDifferWhereTextsDoNot) {
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<int>{1}}}, {{"a", std::vector<short>{1}}}),
              ElementsAre("/@a: the attributes differ: '1 (int32)' and '1 (int16)'"));
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<long>{1}}}, {{"a", std::string("1")}}),
              ElementsAre("/@a: the attributes differ: '1 (int64)' and '1 (text)'"));
}

TEST(AttributesTest, MissingNumbersAreTheSame) {
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<double>{1, NOT_A_NUMBER}}},
                                {{"a", std::vector<double>{1, NOT_A_NUMBER}}}),
              IsEmpty());
}

TEST(AttributesTest, OneTextIsAListOfIt) {
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<std::string>{"x"}}}, {{"a", std::string("x")}}),
              IsEmpty());
  EXPECT_THAT(linesOfAttributes({{"a", std::string("x")}}, {{"a", std::vector<std::string>{"x"}}}),
              IsEmpty());
  EXPECT_THAT(
      linesOfAttributes({{"a", std::vector<std::string>{"x", "y"}}}, {{"a", std::string("x, y")}}),
      ElementsAre("/@a: the attributes differ: 'x, y (texts)' and 'x, y (text)'"));
}

TEST(AttributesTest, IgnoredOnesAreLeftOutByNameAndByPattern) {
  const std::vector<Attribute> some = {{"history", std::string("x")}, {"a", std::string("y")}};
  Options options;
  options.ignoredAttributes = RECORD_ATTRIBUTES;
  EXPECT_THAT(linesOfAttributes(some, {}, options), ElementsAre("/@a: only in the first: 'y'"));
  options.ignore = {"*@a"};
  EXPECT_THAT(linesOfAttributes(some, {}, options), IsEmpty());
  options.ignoredAttributes = {};
  options.ignore = {"*a"};  // of entries, as it has no @
  EXPECT_THAT(linesOfAttributes(some, {}, options).size(), 2);
}

TEST(AttributesTest, DescriptionsAreLongNamesAndTitles) {
  const auto make = [](const std::string& title, const std::string& name) {
    Dictionary result("d", title);
    memory::DoubleArray array = row<double>("t2m", {1});
    array.setDescription(name);
    result.add(std::move(array));
    return result;
  };
  Options options;
  options.attributes = true;
  EXPECT_THAT(linesOf(make("A", "x"), make("B", ""), options),
              ElementsAre("/@title: the attributes differ: 'A' and 'B'",
                          "/t2m@long_name: only in the first: 'x'"));
}

TEST(AttributesTest, FollowTheOrderOfTheFirstSide) {
  EXPECT_THAT(linesOfAttributes({{"b", std::string("x")}, {"a", std::string("y")}}, {}),
              ElementsAre("/@b: only in the first: 'x'", "/@a: only in the first: 'y'"));
}

TEST(AttributesTest, ListsOfDifferentLengthsDiffer) {
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<int>{1, 2}}, {"b", std::vector<int>{}}},
                                {{"a", std::vector<int>{1, 2, 3}}, {"b", std::vector<int>{1}}}),
              ElementsAre("/@a: the attributes differ: '1, 2' and '1, 2, 3'",
                          "/@b: the attributes differ: '' and '1'"));
}

TEST(AttributesTest, DescriptionGoesBeforeTheOthersUnlessItIsAmongThem) {
  Options options;
  options.attributes = true;
  const RichArray none = withAttributes({});
  RichArray array = withAttributes({{"a", std::string("x")}});
  array.setDescription("described");
  EXPECT_THAT(linesOf(array, none, options), ElementsAre("/@long_name: only in the first: "
                                                         "'described'",
                                                         "/@a: only in the first: 'x'"));
  array.given.push_back({"long_name", std::string("named")});
  EXPECT_THAT(linesOf(array, none, options), ElementsAre("/@a: only in the first: 'x'",
                                                         "/@long_name: only in the first: "
                                                         "'named'"));
}

TEST(AttributesTest, ObjectsThatOfferNoneHaveTheirDescription) {
  Options options;
  options.attributes = true;
  const LooseDictionary none({}, nullptr);
  EXPECT_THAT(linesOf(none, none, options), IsEmpty());
  EXPECT_THAT(linesOf(none, Dictionary("d", "A"), options),
              ElementsAre("/@title: only in the second: 'A'"));
}

TEST(AttributesTest, NumbersDifferFromOthersAndFromMissingOnes) {
  EXPECT_THAT(linesOfAttributes({{"a", std::vector<double>{1}},
                                 {"b", std::vector<double>{NOT_A_NUMBER}},
                                 {"c", std::vector<double>{2}}},
                                {{"a", std::vector<double>{2}},
                                 {"b", std::vector<double>{2}},
                                 {"c", std::vector<double>{NOT_A_NUMBER}}}),
              ElementsAre("/@a: the attributes differ: '1' and '2'",
                          "/@b: the attributes differ: 'nan' and '2'",
                          "/@c: the attributes differ: '2' and 'nan'"));
}

}  // namespace
}  // namespace quillon::compare
