#include <gtest/gtest.h>
#include <object_model/TupleX.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "support/Thrown.h"
#include "support/Values.h"

namespace object_model {
namespace {

using test::Address;
using test::valuesOf;
using test::View;
using Values = std::vector<unsigned long>;

TEST(TupleXTest, ACountGivesThatManyZeros) { EXPECT_EQ(valuesOf(TupleX(3)), (Values{0, 0, 0})); }

TEST(TupleXTest, AListGivesItsValuesInOrder) {
  const TupleX tuple({4, 5});
  EXPECT_EQ(tuple.size(), 2U);
  EXPECT_EQ(valuesOf(tuple), (Values{4, 5}));
}

TEST(TupleXTest, AnArrayGivesACopyOfItsValues) {
  std::array<unsigned long, 3> values = {9, 8, std::numeric_limits<unsigned long>::max()};
  const TupleX tuple(values.data(), values.size());
  values[0] = 0;
  EXPECT_EQ(valuesOf(tuple), (Values{9, 8, std::numeric_limits<unsigned long>::max()}));
}

TEST(TupleXTest, NoValuesGiveAnEmptyTupleWithNullData) {
  const std::initializer_list<unsigned long> noValues;
  for (const TupleX& tuple : {TupleX(nullptr, 0), TupleX(0UL), TupleX(noValues)}) {
    EXPECT_EQ(tuple.size(), 0U);
    EXPECT_EQ(Address::of(tuple), nullptr);
  }
}

TEST(TupleXTest, ACopySharesNothingWithItsSource) {
  const TupleX source({1, 2});
  TupleX copy(source);
  EXPECT_NE(Address::of(copy), Address::of(source));
  copy[0] = 100;
  EXPECT_EQ(valuesOf(source), (Values{1, 2}));
  EXPECT_EQ(valuesOf(copy), (Values{100, 2}));
}

TEST(TupleXTest, ACopyOfAnEmptyTupleIsEmptyWithNullData) {
  TupleX source({1});
  source.resize(0);
  const TupleX copy(source);
  EXPECT_EQ(copy.size(), 0U);
  EXPECT_EQ(Address::of(copy), nullptr);
}

TEST(TupleXTest, GrowingAppendsZerosAndCuttingKeepsTheFirst) {
  TupleX tuple({1, 2});
  tuple.resize(4);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2, 0, 0}));
  tuple.resize(1);
  EXPECT_EQ(valuesOf(tuple), (Values{1}));
}

TEST(TupleXTest, ValuesThatWereCutOffComeBackAsZeros) {
  TupleX tuple({1, 2, 3});
  tuple.resize(1);
  tuple.resize(3);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 0, 0}));
}

// Unlike construction and assignment from an empty tuple: a deliberate difference.
TEST(TupleXTest, ResizingToNothingKeepsTheAddress) {
  TupleX tuple({1, 2});
  const unsigned long* address = Address::of(tuple);
  tuple.resize(0);
  EXPECT_EQ(tuple.size(), 0U);
  EXPECT_EQ(Address::of(tuple), address);
}

TEST(TupleXTest, AssignmentTakesTheValuesOfAnotherOwner) {
  TupleX tuple({1});
  const TupleX source({7, 8, 9});
  EXPECT_EQ(&(tuple = source), &tuple);
  EXPECT_EQ(valuesOf(tuple), (Values{7, 8, 9}));
  tuple[0] = 0;
  EXPECT_EQ(valuesOf(source), (Values{7, 8, 9}));
}

TEST(TupleXTest, AssignmentTakesTheValuesOfAView) {
  std::array<unsigned long, 2> values = {5, 6};
  const View view(values.data(), values.size());
  const Tuple& plain = view;
  TupleX tuple({1, 2, 3});
  EXPECT_EQ(&(tuple = plain), &tuple);
  values[0] = 0;
  EXPECT_EQ(valuesOf(tuple), (Values{5, 6}));
}

TEST(TupleXTest, AssignmentToItselfChangesNothing) {
  TupleX tuple({1, 2, 3});
  const TupleX& itself = tuple;
  const Tuple& itselfAsView = tuple;
  const unsigned long* address = Address::of(tuple);
  tuple = itself;
  tuple = itselfAsView;
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2, 3}));
  EXPECT_EQ(Address::of(tuple), address);
}

// Unlike assignment from another empty tuple, which makes the data null.
TEST(TupleXTest, AssignmentToItselfWithoutValuesKeepsTheAddress) {
  TupleX tuple({1, 2});
  tuple.resize(0);
  const TupleX& itself = tuple;
  const unsigned long* address = Address::of(tuple);
  tuple = itself;
  EXPECT_NE(address, nullptr);
  EXPECT_EQ(Address::of(tuple), address);
}

// The old values come back: a deliberate quirk of assignment from an empty tuple.
TEST(TupleXTest, AssigningAnEmptyTupleKeepsTheStorage) {
  TupleX tuple({1, 2, 3});
  tuple = TupleX(0UL);
  EXPECT_EQ(tuple.size(), 0U);
  EXPECT_EQ(Address::of(tuple), nullptr);
  tuple.resize(2);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
}

TEST(TupleXTest, TheKeptStorageIsExtendedWithZeros) {
  TupleX tuple({1, 2, 3});
  tuple = Tuple();
  tuple.resize(5);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2, 3, 0, 0}));
}

TEST(TupleXTest, TheKeptStorageIsOverwrittenByTheNextAssignment) {
  TupleX tuple({1, 2, 3});
  tuple = Tuple();
  tuple = TupleX({9});
  tuple.resize(3);
  EXPECT_EQ(valuesOf(tuple), (Values{9, 0, 0}));
}

TEST(TupleXTest, ACopyDoesNotTakeTheKeptStorageAlong) {
  TupleX tuple({1, 2, 3});
  tuple = Tuple();
  TupleX copy(tuple);
  copy.resize(2);
  EXPECT_EQ(valuesOf(copy), (Values{0, 0}));
}

TEST(TupleXTest, AssigningAViewOfAllItsOwnValuesChangesNothing) {
  TupleX tuple({1, 2, 3});
  tuple = Tuple(tuple);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2, 3}));
}

RC_GTEST_PROP(TupleXTest, AssigningAViewOfSomeOfItsOwnValuesKeepsThem, (Values values)) {
  const auto first = *rc::gen::inRange<std::size_t>(0, values.size() + 1);
  const auto count = *rc::gen::inRange<std::size_t>(0, values.size() - first + 1);
  TupleX tuple(values.data(), values.size());
  tuple = View(values.empty() ? nullptr : &tuple[0] + first, count);
  const auto begin = values.begin() + static_cast<std::ptrdiff_t>(first);
  RC_ASSERT(valuesOf(tuple) == Values(begin, begin + static_cast<std::ptrdiff_t>(count)));
}

TEST(TupleXTest, ACountThatNoVectorCanHoldIsRefused) {
  EXPECT_THROW(const TupleX tuple(std::numeric_limits<unsigned long>::max()), std::length_error);
  EXPECT_THROW(const TupleX tuple(1UL << 60U), std::length_error);
}

TEST(TupleXTest, AResizeThatNoVectorCanHoldChangesNothing) {
  TupleX tuple({1, 2});
  const unsigned long* address = Address::of(tuple);
  EXPECT_THROW(tuple.resize(std::numeric_limits<unsigned long>::max()), std::length_error);
  EXPECT_EQ(valuesOf(tuple), (Values{1, 2}));
  EXPECT_EQ(Address::of(tuple), address);
}

TEST(TupleXTest, IsNotMadeFromANumberByItself) {
  EXPECT_FALSE((std::is_convertible_v<unsigned long, TupleX>));
  EXPECT_FALSE(std::is_default_constructible_v<TupleX>);
}

TEST(TupleXTest, IsDestroyedThroughItsBase) {
  // The sanitizers and the allocation tests see a leak if the base's destructor is not virtual.
  const std::unique_ptr<Tuple> tuple = std::make_unique<TupleX>(3UL);
  EXPECT_EQ(valuesOf(*tuple), (Values{0, 0, 0}));
}

}  // namespace
}  // namespace object_model
