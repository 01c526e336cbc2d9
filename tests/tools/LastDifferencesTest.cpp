#include <gtest/gtest.h>
#include <object_model/ComparisonHelper.h>
#include <quillon/memory/TypedArray.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "LastDifferences.h"

namespace quillon::tools {
namespace {

using memory::Axis;
using memory::Dictionary;
using memory::TypedArray;
using object_model::helper::ComparisonType;

void ignore(unsigned long /*positions*/) {}

/// The library's verdict and its sentence.
std::string verdictOn(const object_model::Dictionary& first, const object_model::Dictionary& second,
                      const ComparisonRule& rule) {
  std::string sentence;
  const bool same = object_model::helper::areSameDictionaries(first, second, rule.type,
                                                              rule.tolerance, &sentence);
  return (same ? "same " : "different ") + sentence;
}

std::string verdictOnViews(const Dictionary& first, const Dictionary& second,
                           const ComparisonRule& rule = {}, const Tick& tick = ignore) {
  CountedPairs counted(rule, tick);
  const LastDifferences last = lastDifferencesOf(first, second, counted);
  return verdictOn(last.first, last.second, rule);
}

std::vector<Axis> axesOfRank(std::size_t rank) {
  std::vector<Axis> axes;
  for (std::size_t k = 0; k < rank; ++k) {
    axes.emplace_back("axis", 2 + k % 2);
  }
  return axes;
}

std::size_t sizeOf(const std::vector<Axis>& axes) {
  std::size_t size = 1;
  for (const Axis& axis : axes) {
    size *= axis.size();
  }
  return size;
}

class LastDifferencesTest : public ::testing::Test {
 protected:
  /// Adds arrays of these axes, of which some values differ, to both groups.
  template <class Value>
  void add(const std::string& name, const std::vector<Axis>& axes,
           const std::vector<Value>& choice) {
    std::vector<Value> values;
    for (std::size_t i = sizeOf(axes); i > 0; --i) {
      values.push_back(choice[below(choice.size())]);
    }
    m_first.add(TypedArray<Value>(name, axes, values));
    for (unsigned long changes = below(4) / 2 * below(values.size() + 1); changes > 0; --changes) {
      values[below(values.size())] = choice[below(choice.size())];
    }
    m_second.add(TypedArray<Value>(name, axes, values));
  }

  unsigned long below(unsigned long bound) { return m_random() % bound; }

  std::mt19937 m_random{1};  // NOLINT(bugprone-random-generator-seed): the same cases each time
  Dictionary m_first{"group"};
  Dictionary m_second{"group"};
};

TEST_F(LastDifferencesTest, TheLibrarySaysOfThemWhatItSaysOfTheGroups) {
  for (int round = 0; round < 500; ++round) {
    m_first = Dictionary("group");
    m_second = Dictionary("group");
    add<double>("d", axesOfRank(below(7)), {0, -1, 1, 1.25, -1.25, 1e-10, 1e10});
    add<long>("i", axesOfRank(below(7)), {0, 1, -1, 1L << 62, (1L << 62) + 1});
    add<unsigned long>("u", axesOfRank(below(7)), {0, 1, ~0UL});
    add<std::string>("s", axesOfRank(below(7)), {"", "a", "b"});
    for (const ComparisonRule& rule :
         {ComparisonRule{}, ComparisonRule{ComparisonType::Absolute, 0.5},
          ComparisonRule{ComparisonType::Relative, 0.25}}) {
      EXPECT_EQ(verdictOnViews(m_first, m_second, rule), verdictOn(m_first, m_second, rule));
    }
  }
}

TEST_F(LastDifferencesTest, NaNInBothIsNoDifference) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  m_first.add(memory::DoubleArray("v", {Axis("x", 3)}, {nan, 1, nan}));
  m_second.add(memory::DoubleArray("v", {Axis("x", 3)}, {nan, 1, nan}));
  EXPECT_EQ(verdictOnViews(m_first, m_second), "same ");
}

TEST_F(LastDifferencesTest, OutlinesAreThoseOfTheGroups) {
  m_first.add(memory::IntArray("v", {Axis("x", 3)}, {1, 2, 3}));
  m_second.add(memory::IntArray("v", {Axis("x", 2)}, {1, 2}));
  EXPECT_EQ(verdictOnViews(m_first, m_second), verdictOn(m_first, m_second, {}));
  m_first.add(memory::IntArray("more", {}, {1}));
  EXPECT_EQ(verdictOnViews(m_first, m_second), verdictOn(m_first, m_second, {}));
}

TEST_F(LastDifferencesTest, NothingIsCountedBehindTheFirstArrayThatDiffers) {
  for (const char* name : {"a", "b", "c"}) {
    m_first.add(memory::IntArray(name, {Axis("x", 2)}, {1, 2}));
    m_second.add(memory::IntArray(name, {Axis("x", 2)}, {1, name[0] == 'b' ? 3 : 2}));
  }
  unsigned long counted = 0;
  verdictOnViews(m_first, m_second, {}, [&counted](unsigned long values) { counted += values; });
  EXPECT_EQ(counted, 4);
}

}  // namespace
}  // namespace quillon::tools
