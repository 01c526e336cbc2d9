#include <gtest/gtest.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/StridedArray.h>
#include <quillon/memory/Values.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <numeric>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::TupleX;
using test::thrownBy;

constexpr long STEP = sizeof(int);

std::vector<int> valuesOf(const StridedArray<int>& array) {
  const TypedArray<int> copy = array.clone();
  return {copy.begin(), copy.end()};
}

class StridedArrayTest : public ::testing::Test {
 protected:
  const std::array<int, 6> m_memory = {0, 1, 2, 3, 4, 5};
};

TEST_F(StridedArrayTest, TheLastDimensionMayVaryFastest) {
  const StridedArray<int> array("a", {{"x", 2}, {"y", 3}}, m_memory.data(), {3 * STEP, STEP});
  EXPECT_EQ(array.value(1, 2), 5);
  EXPECT_EQ(array.value(TupleX{1, 0}), 3);
  EXPECT_EQ(array.getValueAsInt(TupleX{0, 2}), 2);
  EXPECT_EQ(valuesOf(array), (std::vector<int>{0, 3, 1, 4, 2, 5}));
}

TEST_F(StridedArrayTest, StepsMayBeNegativeZeroOrWide) {
  EXPECT_EQ(valuesOf({"back", {{"x", 6}}, &m_memory[5], {-STEP}}),
            (std::vector<int>{5, 4, 3, 2, 1, 0}));
  EXPECT_EQ(valuesOf({"same", {{"x", 3}}, &m_memory[4], {0}}), (std::vector<int>{4, 4, 4}));
  EXPECT_EQ(valuesOf({"some", {{"x", 3}}, m_memory.data(), {2 * STEP}}),
            (std::vector<int>{0, 2, 4}));
}

TEST_F(StridedArrayTest, WithoutDimensionsItIsOneValue) {
  const StridedArray<int> array("a", {}, &m_memory[3], {});
  EXPECT_EQ(array.value(), 3);
  EXPECT_EQ(valuesOf(array), std::vector<int>{3});
}

TEST_F(StridedArrayTest, MayHoldNothing) {
  EXPECT_EQ(valuesOf({"a", {{"x", 0}}, nullptr, {STEP}}), std::vector<int>());
}

TEST_F(StridedArrayTest, SeesWhatHappensToTheMemory) {
  std::array<double, 2> memory = {1, 2};
  const StridedArray<double> array("a", {{"x", 2}}, memory.data(), {8});
  EXPECT_EQ(&array.value(1), &memory[1]);
  memory[1] = 7;
  EXPECT_EQ(array.getValueAsDouble(TupleX{1}), 7);
}

TEST_F(StridedArrayTest, KeepsTheMemoryAliveAsLongAsItLives) {
  auto memory = std::make_shared<std::vector<int>>(3, 8);
  const std::weak_ptr<std::vector<int>> observer = memory;
  const int* first = memory->data();
  {
    StridedArray<int> array("a", {{"x", 3}}, first, {STEP}, std::move(memory));
    const StridedArray<int> moved(std::move(array));
    EXPECT_FALSE(observer.expired());
    EXPECT_EQ(moved.value(2), 8);
  }
  EXPECT_TRUE(observer.expired());
}

TEST_F(StridedArrayTest, LiesInPlace) {
  const StridedArray<int> array("a", {{"x", 2}, {"y", 3}}, m_memory.data(), {3 * STEP, STEP});
  const object_model::BulkValues* bulk = bulkValuesOf(array);
  ASSERT_NE(bulk, nullptr);
  EXPECT_EQ(bulk->storedType(), object_model::StoredType::Int32);
  EXPECT_EQ(bulk->valuesInPlace().first, m_memory.data());
  EXPECT_EQ(bulk->valuesInPlace().strides[0], 3 * STEP);
  EXPECT_EQ(bulk->valuesInPlace().strides[1], STEP);
}

TEST_F(StridedArrayTest, ACloneHasTheRemarks) {
  StridedArray<int> array("a", {{"x", 2}}, m_memory.data(), {STEP});
  array.setUnit("m");
  array.setAttribute("k", "v");
  const TypedArray<int> clone = array.clone("b");
  EXPECT_EQ(clone.getName(), "b");
  EXPECT_EQ(clone.getUnit(), "m");
  EXPECT_EQ(clone.attributes(), array.attributes());
}

// Errors

TEST_F(StridedArrayTest, APositionOutsideIsRefused) {
  const StridedArray<int> array("a", {{"x", 2}}, m_memory.data(), {STEP});
  const char* const message = "Array 'a': position (2) is outside the shape (2)";
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(2); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(TupleX{2}); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.getValueAsInt(TupleX{2}); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(object_model::Tuple()); }),
            "Array 'a': position () is outside the shape (2)");
}

TEST_F(StridedArrayTest, AnotherTypeIsRefused) {
  const StridedArray<int> array("a", {{"x", 2}}, m_memory.data(), {STEP});
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.getValueAsDouble(TupleX{0}); }),
            "Array 'a' holds Int elements and cannot be read as Double");
}

TEST_F(StridedArrayTest, AnotherNumberOfStepsIsRefused) {
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              const StridedArray<int> array("a", {{"x", 2}, {"y", 3}}, m_memory.data(), {STEP});
            }),
            "Array 'a' has 2 dimensions and was given 1 steps");
}

TEST_F(StridedArrayTest, NoMemoryIsRefused) {
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              const StridedArray<int> array("a", {{"x", 2}}, nullptr, {STEP});
            }),
            "Array 'a' was given no values to view");
}

TEST_F(StridedArrayTest, ValuesThatAreNotAlignedAreRefused) {
  const char* const message = "Array 'a' was given values that are not aligned for int32";
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              const StridedArray<int> array("a", {{"x", 2}}, m_memory.data(), {STEP + 1});
            }),
            message);
  const char* const inside = static_cast<const char*>(static_cast<const void*>(m_memory.data()));
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              const StridedArray<int> array("a", {{"x", 2}},
                                            reinterpret_cast<const int*>(inside + 2), {STEP});
            }),
            message);
}

TEST_F(StridedArrayTest, WhereThereAreNoValuesNothingNeedsToBeAligned) {
  const char* const inside = static_cast<const char*>(static_cast<const void*>(m_memory.data()));
  const StridedArray<int> array("a", {{"x", 0}, {"y", 2}}, reinterpret_cast<const int*>(inside + 2),
                                {STEP + 1, STEP});
  EXPECT_EQ(array.numberOfElements(), 0U);
  EXPECT_EQ(array.clone("b").numberOfElements(), 0U);
}

// Against an array that owns its values one after the other

/// A block of random extents with random steps, and the same values collected by hand.
struct Strided {
  std::vector<Axis> axes;
  std::vector<long> strides;
  std::vector<short> memory;
  std::size_t first = 0;
  std::vector<short> expected;
};

Strided anyStrided() {
  Strided strided;
  const auto dimensions = *rc::gen::inRange<std::size_t>(0, 4);
  std::vector<unsigned long> extents;
  long lowest = 0;
  long highest = 0;
  for (std::size_t k = 0; k < dimensions; ++k) {
    extents.push_back(*rc::gen::inRange<unsigned long>(0, 4));
    const long step = *rc::gen::inRange<long>(-5, 6);
    strided.axes.emplace_back("axis", extents.back());
    strided.strides.push_back(step * static_cast<long>(sizeof(short)));
    const long reach = step * (static_cast<long>(extents.back()) - 1);
    lowest += std::min(reach, 0L);
    highest += std::max(reach, 0L);
  }
  strided.memory.resize(static_cast<std::size_t>(highest - lowest + 1));
  std::iota(strided.memory.begin(), strided.memory.end(), short{0});
  strided.first = static_cast<std::size_t>(-lowest);
  const unsigned long count =
      std::accumulate(extents.begin(), extents.end(), 1UL, std::multiplies<unsigned long>());
  for (unsigned long offset = 0; offset < count; ++offset) {
    long place = -lowest;
    unsigned long rest = offset;
    for (std::size_t k = 0; k < dimensions; ++k) {
      place += static_cast<long>(rest % extents[k]) * strided.strides[k] /
               static_cast<long>(sizeof(short));
      rest /= extents[k];
    }
    strided.expected.push_back(strided.memory[static_cast<std::size_t>(place)]);
  }
  return strided;
}

RC_GTEST_PROP(StridedArrayProperty, IsTheTypedArrayOfTheSameValues, ()) {
  const Strided strided = anyStrided();
  const StridedArray<short> array("a", strided.axes, strided.memory.data() + strided.first,
                                  strided.strides);
  const TypedArray<short> plain("a", strided.axes, strided.expected);
  const TypedArray<short> clone = array.clone();
  RC_ASSERT(std::vector<short>(clone.begin(), clone.end()) == strided.expected);
  const BlockLayout layout(array, *rc::gen::inRange<unsigned long>(1, 20));
  RC_ASSERT(layout.size() == strided.expected.size());
  for (unsigned long at = 0; at < layout.size();) {
    const Block block = layout.blockAt(at);
    std::vector<long> fromStrided(block.count);
    std::vector<long> fromPlain(block.count);
    copyValues(array, block, fromStrided.data());
    copyValues(plain, block, fromPlain.data());
    RC_ASSERT(fromStrided == fromPlain);
    at = block.first + block.count;
  }
  const BlockLayout values(array, 1);
  for (unsigned long k = 0; k < values.size(); ++k) {
    const Block block = values.blockAt(k);
    const TupleX position(block.start.data(), block.start.size());
    RC_ASSERT(array.getValueAsInt(position) == strided.expected[k]);
    RC_ASSERT(array.value(position) == strided.expected[k]);
  }
}

}  // namespace
}  // namespace quillon::memory
