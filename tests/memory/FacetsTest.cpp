#include <gtest/gtest.h>
#include <quillon/memory/Facets.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace quillon::memory {
namespace {

struct AttributePair {
  const char* rule;
  Attribute first;
  Attribute second;
  bool areSame;
};
void PrintTo(const AttributePair& some, std::ostream* out) { *out << some.rule; }

class AttributeTest : public ::testing::TestWithParam<AttributePair> {};

TEST_P(AttributeTest, IsTheSameInNameAndValue) {
  const auto& [rule, first, second, areSame] = GetParam();
  EXPECT_EQ(first == second, areSame);
  EXPECT_EQ(second == first, areSame);
  EXPECT_EQ(first != second, !areSame);
  EXPECT_EQ(second != first, !areSame);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, AttributeTest,
    ::testing::Values(
        AttributePair{"OfTheSameText", {"k", "v"}, {"k", "v"}, true},
        AttributePair{"OfAnotherName", {"k", "v"}, {"l", "v"}, false},
        AttributePair{"OfAnotherText", {"k", "v"}, {"k", "w"}, false},
        AttributePair{
            "OfTheSameNumbers", {"k", std::vector<int>{1, 2}}, {"k", std::vector<int>{1, 2}}, true},
        AttributePair{
            "OfFewerNumbers", {"k", std::vector<int>{1, 2}}, {"k", std::vector<int>{1}}, false},
        AttributePair{"OfNumbersOfAnotherType",
                      {"k", std::vector<int>{1}},
                      {"k", std::vector<long>{1}},
                      false},
        AttributePair{
            "OfATextAndAListOfIt", {"k", "v"}, {"k", std::vector<std::string>{"v"}}, false}),
    [](const auto& row) { return row.param.rule; });

TEST(FacetsTest, TheMissingTimeIsTheSmallestNumber) {
  EXPECT_EQ(MISSING_TIME, std::numeric_limits<long>::min());
}

}  // namespace
}  // namespace quillon::memory
