#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "ObjectModel/ComparisonHelper/BulkArray.h"
#include "ObjectModel/ComparisonHelper/PlainComparison.h"
#include "support/Allocations.h"
#include "support/FaultInjection.h"
#include "support/Recording.h"

namespace quillon::test {
namespace {

using object_model::Array;
using object_model::StoredType;
using ::testing::ElementsAre;
using ::testing::Pair;

/// The least number of values that are compared in bulk.
constexpr unsigned long ENOUGH = 64;

template <class Stored>
std::vector<Stored> values(unsigned long count) {
  std::vector<Stored> result;
  for (unsigned long k = 0; k < count; ++k) {
    result.push_back(static_cast<Stored>(k % 2 == 0));
  }
  return result;
}

template <class Stored>
std::vector<Stored> with(std::vector<Stored> values, std::size_t index, Stored value) {
  values[index] = value;
  return values;
}

Outcome differsAt(const std::string& position, const std::string& values) {
  return differs("The arrays 'A' have different values at the position (" + position +
                 ")': " + values + ".");
}

template <class Counting>
unsigned long accessorCalls(const Counting& first, const Counting& second) {
  return first.accessorCalls + second.accessorCalls;
}

TEST(BulkComparison, CallsNoAccessorWhereBothArraysOfferTheirValues) {
  const auto a = bulkList(values<double>(ENOUGH));
  const auto b = bulkList(values<double>(ENOUGH));
  EXPECT_EQ(compareArrays(a, b), same());
  EXPECT_EQ(accessorCalls(a, b), 0U);
}

TEST(BulkComparison, LeavesFewerValuesToTheAccessors) {
  const auto a = bulkList(values<double>(ENOUGH - 1));
  const auto b = bulkList(values<double>(ENOUGH - 1));
  EXPECT_EQ(compareArrays(a, b), same());
  EXPECT_EQ(accessorCalls(a, b), 2 * (ENOUGH - 1));
}

TEST(BulkComparison, LeavesArraysToTheAccessorsWhereOneOffersNothing) {
  const auto a = bulkList(values<double>(100));
  const PlacedArray<double> b({100}, packed({100}), values<double>(100));
  EXPECT_EQ(compareArrays(a, b), same());
  EXPECT_EQ(compareArrays(b, a), same());
  EXPECT_EQ(a.accessorCalls, 200U);
  EXPECT_EQ(b.accessorCalls, 200U);
}

/// The calls that two recorded arrays see.
template <class Compare>
::test::Calls callsOf(const Array& a, const Array& b, const Compare& compare) {
  ::test::CallLog log;
  const auto first = ::test::record(a, "1", log);
  const auto second = ::test::record(b, "2", log);
  log.reset();
  EXPECT_TRUE(compare(*first->asArray(), *second->asArray(), ComparisonType::Exact, 0, nullptr));
  return log.calls();
}

TEST(BulkComparison, MakesTheSameCallsAsEverOnArraysThatOfferNothing) {
  const auto a = list<double>("A", values<double>(100));
  const auto calls = callsOf(a, a, object_model::helper::areSameArrays);
  EXPECT_EQ(calls, callsOf(a, a, plain::areSameArrays));
  EXPECT_GT(calls.size(), 200U);
}

TEST(BulkComparison, ServesArraysInDictionaries) {
  auto a = dictionary("all", bulkList(values<long>(100)));
  auto b = dictionary("all", bulkList(with(values<long>(100), 70, 5L)));
  EXPECT_EQ(compareDictionaries(a, b),
            differs("Array 'A': The arrays 'A' have different values at the position (70)': '1' "
                    "and '5'."));
  EXPECT_EQ(dynamic_cast<const BulkArray<long>&>(*a.data(0)).accessorCalls, 0U);
}

TEST(BulkComparison, ReportsTheLastDifferenceOfSeveral) {
  const auto a = bulkList(values<long>(2000));
  const auto b = bulkList(with(with(values<long>(2000), 3, 7L), 1500, 8L));
  EXPECT_EQ(compareArrays(a, b), differsAt("1500", "'1' and '8'"));
}

TEST(BulkComparison, WritesTheSentenceOfTheRule) {
  const auto a = bulkList(values<float>(100));
  const auto b = bulkList(with(values<float>(100), 98, 1.75F));
  EXPECT_EQ(compareArrays(a, b, ComparisonType::Absolute, 0.75), same());
  EXPECT_EQ(compareArrays(a, b, ComparisonType::Absolute, 0.5),
            differs("The arrays 'A' have different values at the position (98)': '1.000000' and "
                    "'1.750000'. The absolute delta is greater than 0.500000"));
  EXPECT_EQ(compareArrays(a, b, ComparisonType::Relative, 0.25),
            differs("The arrays 'A' have different values at the position (98)': '1.000000' and "
                    "'1.750000'. The relative delta is greater than 0.250000"));
}

TEST(BulkComparison, LeavesUnknownRulesToTheAccessors) {
  const auto a = bulkList(values<double>(100));
  EXPECT_EQ(compareArrays(a, a, static_cast<ComparisonType>(7)), rejectedAtLine(392));
  const auto flags = bulkList(values<bool>(100));
  EXPECT_EQ(compareArrays(flags, flags, static_cast<ComparisonType>(7)), same());
  EXPECT_EQ(flags.accessorCalls, 0U);
}

template <class Stored>
class BulkComparisonOf : public testing::Test {};
using AllStored =
    testing::Types<signed char, short, int, long, unsigned char, unsigned short, unsigned int,
                   unsigned long, float, double, std::complex<float>, std::complex<double>, bool>;
TYPED_TEST_SUITE(BulkComparisonOf, AllStored, );

TYPED_TEST(BulkComparisonOf, SeesADifferenceAtEachEnd) {
  const auto same = values<TypeParam>(1000);
  for (const std::size_t place :
       {std::size_t(0), std::size_t(511), std::size_t(512), same.size() - 1}) {
    const auto a = bulkList(same);
    const auto b = bulkList(with(same, place, static_cast<TypeParam>(place % 2 != 0)));
    const Outcome outcome = compareArrays(a, b);
    EXPECT_EQ(outcome.same, false);
    EXPECT_THAT(outcome.message, testing::HasSubstr("(" + std::to_string(place) + ")"));
    EXPECT_EQ(accessorCalls(a, b), 0U);
  }
}

TYPED_TEST(BulkComparisonOf, ReadsBackwardsAndWithGaps) {
  const auto same = values<TypeParam>(1000);
  const Places backwards = {2997, {-3}, 3000};
  const BulkArray<TypeParam> a({1000}, backwards, same);
  EXPECT_EQ(compareArrays(a, bulkList(same)), test::same());
  EXPECT_EQ(compareArrays(bulkList(with(same, 1, TypeParam(1))), a).message,
            compareArrays(PlacedArray<TypeParam>({1000}, backwards, with(same, 1, TypeParam(1))), a)
                .message);
  EXPECT_EQ(compareArrays(bulkList(with(same, 1, TypeParam(1))), a).same, false);
}

TYPED_TEST(BulkComparisonOf, LeavesWhatIsStoredForOtherElementsToTheAccessors) {
  const std::pair<ElementType, StoredType> types[] = {
      {ElementType::UInt, StoredType::UInt64},
      {ElementType::Int, StoredType::Int64},
      {ElementType::Double, StoredType::Float64},
      {ElementType::Complex, StoredType::Complex128},
      {ElementType::Boolean, StoredType::Boolean}};
  for (const auto& [element, type] : types) {
    auto a = bulkList(values<TypeParam>(ENOUGH));
    const auto b = bulkList(values<TypeParam>(ENOUGH));
    if (element != a.getElementType()) {
      a.type = type;
      EXPECT_EQ(compareArrays(a, b), same());
      EXPECT_EQ(compareArrays(b, a), same());
      EXPECT_EQ(accessorCalls(a, b), 4 * ENOUGH);
    }
  }
}

TEST(BulkComparison, ReadsTransposedAndRepeatedValues) {
  const Numbers shape = {40, 3, 5};
  const auto inOrder = values<double>(600);
  const BulkArray<double> a(shape, packed(shape), inOrder);
  const BulkArray<double> b(shape, {0, {15, 5, 1}, 600}, inOrder);
  EXPECT_EQ(compareArrays(a, b), same());
  const BulkArray<double> c(shape, {0, {15, 5, 1}, 600},
                            with(inOrder, 40 * 3 * 4 + 40 * 2 + 7, 9.0));
  EXPECT_EQ(compareArrays(a, c), differsAt("7;2;4", "'0.000000' and '9.000000'"));
  const BulkArray<double> constant(shape, {0, {0, 0, 0}, 1}, std::vector<double>(600, 1));
  EXPECT_EQ(compareArrays(constant, a), differsAt("39;2;4", "'1.000000' and '0.000000'"));
}

/// How the values of two arrays lie in memory.
struct Layout {
  const char* name;
  Numbers shape;
  std::vector<long> first;
  std::vector<long> second;
};
class BulkLayout : public testing::TestWithParam<Layout> {};

/// In the midst of a larger buffer, so that values beside them can be read unharmed.
Places amid(const std::vector<long>& strides) { return {4000, strides, 8000}; }

TEST_P(BulkLayout, ShowsTheLastDifferenceAtItsPosition) {
  const Numbers& shape = GetParam().shape;
  std::vector<long> firsts(elementsOf(shape));
  std::iota(firsts.begin(), firsts.end(), 1);
  const BulkArray<long> a(shape, amid(GetParam().first), firsts);
  EXPECT_EQ(compareArrays(a, a), same());
  for (std::size_t k = 0; k < firsts.size(); ++k) {
    const BulkArray<long> b(shape, amid(GetParam().second), with(with(firsts, 0, -1L), k, -2L));
    const Outcome outcome = compareArrays(a, b);
    EXPECT_EQ(b.accessorCalls, 0U);
    EXPECT_EQ(outcome, outcomeOf([&](std::string* message) {
                return plain::areSameArrays(a, b, ComparisonType::Exact, 0, message);
              }))
        << "a difference in value " << k;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Memory, BulkLayout,
    testing::Values(Layout{"InOrder", {8, 9}, {1, 8}, {1, 8}},
                    Layout{"BothTransposed", {5, 4, 6}, {24, 6, 1}, {24, 6, 1}},
                    Layout{"TransposedSquares", {8, 8}, {8, 1}, {8, 1}},
                    Layout{"OneTransposed", {5, 4, 6}, {1, 5, 20}, {24, 6, 1}},
                    Layout{"RowsOfTwo", {2, 40}, {40, 1}, {40, 1}},
                    Layout{"FourDimensions", {3, 4, 3, 2}, {24, 6, 2, 1}, {24, 6, 2, 1}},
                    Layout{"GapsInOne", {8, 3, 4}, {1, 8, 24}, {1, 8, 30}},
                    Layout{"GapsInBoth", {8, 3, 4}, {1, 9, 30}, {1, 9, 30}},
                    Layout{"BackwardsInOne", {9, 8}, {-1, -9}, {8, 1}},
                    Layout{"RepeatedInBoth", {8, 3, 4}, {1, 0, 8}, {1, 0, 8}},
                    Layout{"DimensionsOfOneIndex", {1, 10, 1, 8}, {7, 8, 5, 1}, {1, 1, 1, 10}}),
    [](const auto& row) { return row.param.name; });

TEST(BulkComparison, OfFiveDimensionsLeavesOutTheLastTwo) {
  const Numbers shape = {5, 5, 5, 2, 2};
  const auto same = values<long>(500);
  const BulkArray<long> a(shape, packed(shape), same);
  const BulkArray<long> outside(shape, packed(shape), with(same, 125, 9L));
  EXPECT_EQ(compareArrays(a, outside), test::same());
  const BulkArray<long> inside(shape, packed(shape), with(same, 124, 9L));
  EXPECT_EQ(compareArrays(a, inside), differsAt("4;4;4;0;0", "'1' and '9'"));
  EXPECT_EQ(accessorCalls(a, inside), 0U);
}

TEST(BulkComparison, LeavesAnExtentOf0ThatIsNotComparedToTheAccessors) {
  const Numbers shape = {10, 10, 1, 1, 0};
  const BulkArray<long> a(shape, {0, {1, 10, 100, 100, 0}, 100}, {});
  EXPECT_EQ(compareArrays(a, a), same());
  EXPECT_EQ(a.accessorCalls, 200U);
}

struct Misfit {
  const char* name;
  StoredType type;
};
class BulkMisfit : public testing::TestWithParam<Misfit> {};

TEST_P(BulkMisfit, IsLeftToTheAccessors) {
  auto a = bulkList(values<double>(100));
  const auto b = bulkList(values<double>(100));
  a.type = GetParam().type;
  EXPECT_EQ(compareArrays(a, b), same());
  EXPECT_EQ(compareArrays(b, a), same());
  EXPECT_EQ(accessorCalls(a, b), 400U);
}

INSTANTIATE_TEST_SUITE_P(Types, BulkMisfit,
                         testing::Values(Misfit{"OfIntegers", StoredType::Int64},
                                         Misfit{"OfUnsignedIntegers", StoredType::UInt64},
                                         Misfit{"OfComplexNumbers", StoredType::Complex128},
                                         Misfit{"OfBooleans", StoredType::Boolean},
                                         Misfit{"BelowTheEnumeration", StoredType(-1)},
                                         Misfit{"AboveTheEnumeration", StoredType(13)}),
                         [](const auto& row) { return row.param.name; });

/// Keeps its steps to itself.
class WithoutStrides : public BulkArray<double> {
 public:
  using BulkArray::BulkArray;
  object_model::ValuesInPlace valuesInPlace() const override {
    return {BulkArray::valuesInPlace().first, nullptr};
  }
};

TEST(BulkComparison, LeavesValuesWithoutStridesToTheAccessors) {
  const WithoutStrides a({100}, packed({100}), values<double>(100));
  EXPECT_EQ(compareArrays(a, a), same());
  EXPECT_EQ(a.accessorCalls, 200U);
  const auto b = bulkList(values<double>(100));
  EXPECT_EQ(compareArrays(a, b), same());
  EXPECT_EQ(compareArrays(b, a), same());
  EXPECT_EQ(b.accessorCalls, 200U);
}

/// An array of more values than memory has. Neither its accessor nor its blocks can be read.
class Vast : public BulkArray<long> {
 public:
  explicit Vast(const Numbers& shape)
      : BulkArray(Numbers(shape.size(), 1), packed(Numbers(shape.size(), 1)), {}),
        m_size(shape.data(), shape.size()) {
    inPlace = false;
    beforeReading = [] { throw std::runtime_error("the first block"); };
  }
  const object_model::Tuple& size() const override { return m_size; }
  long getValueAsInt(const object_model::Tuple& /*at*/) const override {
    throw std::runtime_error("the first value");
  }

 private:
  object_model::TupleX m_size;
};

struct Count {
  const char* name;
  Numbers shape;
  const char* read;
};
class BulkCount : public testing::TestWithParam<Count> {};

TEST_P(BulkCount, DecidesHowValuesAreRead) {
  const Vast a(GetParam().shape);
  EXPECT_EQ(compareArrays(a, a), throws(GetParam().read));
}

INSTANTIATE_TEST_SUITE_P(
    Of, BulkCount,
    testing::Values(Count{"TheMostThatCanBeCounted", {~0UL}, "the first block"},
                    Count{"NoneModulo64Bits", {1UL << 40U, 1UL << 24U}, "the first value"},
                    Count{"SomeModulo64Bits", {1UL << 40U, (1UL << 24U) + 1}, "the first value"},
                    // Only the first three of five dimensions count.
                    Count{"ManyAlongDimension3", {8, 8, 8, 1UL << 62U, 1}, "the first block"},
                    Count{"ManyAlongDimension4", {8, 8, 8, 1, 1UL << 62U}, "the first block"},
                    Count{"ManyAlongDimension0", {1UL << 62U, 1, 1, 1, 1}, "the first block"}),
    [](const auto& row) { return row.param.name; });

/// An array that has another shape after some questions.
class Shrinking : public BulkArray<long> {
 public:
  explicit Shrinking(unsigned long truthfulAnswers)
      : BulkArray({10, 10}, packed({10, 10}), values<long>(100)),
        m_truthfulAnswers(truthfulAnswers) {}
  const object_model::Tuple& size() const override {
    ++m_answers;
    return m_answers > m_truthfulAnswers ? m_small : BulkArray::size();
  }
  object_model::ValuesInPlace valuesInPlace() const override {
    if (m_answers > m_truthfulAnswers) {
      throw std::logic_error("asked for values that are gone");
    }
    return BulkArray::valuesInPlace();
  }

 private:
  unsigned long m_truthfulAnswers;
  mutable unsigned long m_answers = 0;
  object_model::TupleX m_small = {10, 9};
};

TEST(BulkComparison, LeavesAnArrayThatHasChangedItsShapeToTheAccessors) {
  const BulkArray<long> other({10, 10}, packed({10, 10}), values<long>(100));
  const Shrinking first(1);
  EXPECT_EQ(compareArrays(first, other), same());
  EXPECT_EQ(first.accessorCalls, 100U);
  const Shrinking second(1);
  EXPECT_EQ(compareArrays(other, second), same());
  EXPECT_EQ(second.accessorCalls, 100U);
  const Shrinking late(2);
  EXPECT_EQ(compareArrays(late, other), same());
  EXPECT_EQ(late.accessorCalls, 0U);
}

/// Two equal arrays of a shape whose values have to be read.
struct ReadPair {
  ReadPair(const Numbers& shape, const std::vector<long>& firsts, const std::vector<long>& seconds)
      : first(shape, packed(shape), firsts), second(shape, packed(shape), seconds) {
    first.inPlace = false;
    second.inPlace = false;
  }
  BulkArray<long> first;
  BulkArray<long> second;
};

TEST(BulkComparison, ReadsTheSameBlocksOfBothForwards) {
  const auto all = values<long>(300'000);
  const ReadPair pair({1000, 300}, all, all);
  EXPECT_EQ(compareArrays(pair.first, pair.second), same());
  EXPECT_THAT(pair.first.blocks, ElementsAre(Pair(Numbers{0, 0}, Numbers{1000, 131}),
                                             Pair(Numbers{0, 131}, Numbers{1000, 131}),
                                             Pair(Numbers{0, 262}, Numbers{1000, 38})));
  EXPECT_EQ(pair.second.blocks, pair.first.blocks);
  EXPECT_EQ(accessorCalls(pair.first, pair.second), 0U);
}

TEST(BulkComparison, CutsLongRowsIntoBlocks) {
  const auto all = values<long>(400'000);
  const ReadPair pair({200'000, 2}, all, with(all, 350'000, 4L));
  EXPECT_EQ(compareArrays(pair.first, pair.second), differsAt("150000;1", "'1' and '4'"));
  EXPECT_THAT(pair.first.blocks, ElementsAre(Pair(Numbers{0, 0}, Numbers{131'072, 1}),
                                             Pair(Numbers{131'072, 0}, Numbers{68'928, 1}),
                                             Pair(Numbers{0, 1}, Numbers{131'072, 1}),
                                             Pair(Numbers{131'072, 1}, Numbers{68'928, 1})));
}

/// An array of zeros that notes which blocks of it are read.
class Zeros : public memory::ArrayBase, public object_model::BulkValues {
 public:
  Zeros(const Numbers& shape, const Numbers& chunks)
      : ArrayBase("A", ElementType::Int, axes(shape)), m_chunks(chunks) {}

  mutable BulkArray<long>::Blocks blocks;

  StoredType storedType() const override { return StoredType::Int64; }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    const unsigned long dimensions = size().size();
    blocks.emplace_back(Numbers(start, start + dimensions), Numbers(extent, extent + dimensions));
    const std::size_t count = elementsOf(blocks.back().second);
    if (count == 0) {
      throw std::logic_error("an empty block");
    }
    std::fill_n(static_cast<long*>(destination), count, 0L);
  }
  const unsigned long* chunkExtents() const override {
    return m_chunks.empty() ? nullptr : m_chunks.data();
  }

 private:
  Numbers m_chunks;
};

struct Cut {
  const char* name;
  Numbers shape;
  Numbers firstChunks;
  Numbers secondChunks;
  BulkArray<long>::Blocks blocks;
};
class BulkCut : public testing::TestWithParam<Cut> {};

TEST_P(BulkCut, IsTheSameInBoth) {
  const Zeros first(GetParam().shape, GetParam().firstChunks);
  const Zeros second(GetParam().shape, GetParam().secondChunks);
  EXPECT_EQ(compareArrays(first, second), same());
  EXPECT_EQ(first.blocks, GetParam().blocks);
  EXPECT_EQ(second.blocks, GetParam().blocks);
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, BulkCut,
    testing::Values(
        Cut{"AcrossTheDimensionThatDoesNotFit",
            {100'000, 2, 2},
            {},
            {},
            {{{0, 0, 0}, {100'000, 1, 1}},
             {{0, 1, 0}, {100'000, 1, 1}},
             {{0, 0, 1}, {100'000, 1, 1}},
             {{0, 1, 1}, {100'000, 1, 1}}}},
        Cut{"WhereChunksEnd",
            {1000, 3000},
            {},
            {100, 1000},
            {{{0, 0}, {1000, 2000}}, {{0, 2000}, {1000, 1000}}}},
        Cut{"InChunksThatAreLargerThanABlock",
            {2'200'000},
            {2'150'000},
            {},
            {{{0}, {2'097'152}}, {{2'097'152}, {102'848}}}},
        Cut{"WhateverChunksWithoutExtentAre",
            {2'200'000},
            {0},
            {},
            {{{0}, {2'097'152}}, {{2'097'152}, {102'848}}}},
        Cut{"NowhereInWhatFitsWhateverTheChunks", {100, 50}, {100, 7}, {}, {{{0, 0}, {100, 50}}}}),
    [](const auto& row) { return row.param.name; });

TEST(BulkComparison, ReadsOnlyThePositionsThatAreCompared) {
  const auto all = values<long>(300);
  const ReadPair pair({4, 5, 5, 3, 1}, all, with(all, 99, 6L));
  EXPECT_EQ(compareArrays(pair.first, pair.second), differsAt("3;4;4;0;0", "'0' and '6'"));
  EXPECT_THAT(pair.first.blocks, ElementsAre(Pair(Numbers{0, 0, 0, 0, 0}, Numbers{4, 5, 5, 1, 1})));
}

TEST(BulkComparison, LeavesTheLastDifferenceBeforeABlockThatCannotBeReadInTheMessage) {
  const auto all = values<long>(300'000);
  ReadPair pair({300'000}, all, with(with(all, 5, 7L), 131'072, 8L));
  pair.second.beforeReading = [&] {
    if (pair.second.blocks.size() == 2) {
      throw std::runtime_error("the second block");
    }
  };
  EXPECT_EQ(compareArrays(pair.first, pair.second),
            throws("the second block",
                   "The arrays 'A' have different values at the position (5)': '0' and '7'."));
}

TEST(BulkComparison, PassesOnWhatTheFirstBlockThrowsAndKeepsTheMessage) {
  const auto all = values<long>(100);
  ReadPair pair({100}, all, with(all, 5, 7L));
  pair.first.beforeReading = [] { throw 42; };
  EXPECT_EQ(compareArrays(pair.first, pair.second), throws("the number 42"));
}

TEST(BulkComparison, DoesWithoutMemoryForBlocks) {
  const auto all = values<long>(100);
  for (const long failing : {0, 1}) {
    const ReadPair pair({100}, all, all);
    bool same = false;
    ::test::failAllocation(failing);
    same = object_model::helper::areSameArrays(pair.first, pair.second, ComparisonType::Exact, 0,
                                               nullptr);
    const bool failed = ::test::hasAllocationFailed();
    ::test::failNoAllocation();
    EXPECT_TRUE(failed);
    EXPECT_TRUE(same);
    EXPECT_EQ(accessorCalls(pair.first, pair.second), 200U);
  }
}

}  // namespace
}  // namespace quillon::test
