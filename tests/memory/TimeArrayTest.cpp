#include <gtest/gtest.h>
#include <object_model/TupleX.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/TimeArray.h>

#include <stdexcept>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::TupleX;

TEST(TimeArrayTest, IsAnArrayOfMicroseconds) {
  const TimeArray array("time", {{"time", 2}}, {0, MICROSECONDS_PER_DAY});
  EXPECT_EQ(array.getElementType(), object_model::ElementType::Int);
  EXPECT_EQ(array.getUnit(), "microseconds since 1970-01-01");
  EXPECT_EQ(array.getPhysicalUnit(), "microseconds since 1970-01-01");
  EXPECT_EQ(array.getValueAsInt(TupleX{1}), MICROSECONDS_PER_DAY);
  EXPECT_EQ(array.times(), (std::vector<long>{0, MICROSECONDS_PER_DAY}));
  EXPECT_EQ(array.calendar(), Calendar::Standard);
}

TEST(TimeArrayTest, GivesItsTimesInStorageOrder) {
  const TimeArray array("t", {{"x", 2}, {"y", 2}}, {10, 11, MISSING_TIME, 21}, Calendar::NoLeap);
  const auto* times = dynamic_cast<const HasTimes*>(static_cast<const object_model::Data*>(&array));
  ASSERT_NE(times, nullptr);
  EXPECT_EQ(times->calendar(), Calendar::NoLeap);
  const unsigned long start[] = {0, 0};
  const unsigned long extent[] = {1, 2};
  long read[2];
  times->readTimes(start, extent, read);
  EXPECT_EQ(read[0], 10);
  EXPECT_EQ(read[1], MISSING_TIME);
}

TEST(TimeArrayTest, OffersItsValuesInBulk) {
  const TimeArray array("t", {{"x", 2}}, {10, 11});
  ASSERT_NE(bulkValuesOf(array), nullptr);
  EXPECT_EQ(bulkValuesOf(array)->storedType(), object_model::StoredType::Int64);
  EXPECT_EQ(bulkValuesOf(array)->valuesInPlace().first, array.times().data());
}

TEST(TimeArrayTest, MovesWithItsTimes) {
  TimeArray array("t", {{"x", 2}}, {10, 11}, Calendar::Day360);
  const TimeArray moved(std::move(array));
  EXPECT_EQ(moved.getValueAsInt(TupleX{1}), 11);
  EXPECT_EQ(moved.calendar(), Calendar::Day360);
  EXPECT_EQ(moved.valuesInPlace().first, moved.times().data());
}

TEST(TimeArrayTest, AnotherNumberOfTimesIsRefused) {
  EXPECT_EQ(test::thrownBy<std::invalid_argument>([] {
              const TimeArray array("t", {{"x", 2}}, {10});
            }),
            "Array 't' of shape (2) needs 2 values and was given 1");
}

TEST(TimeArrayTest, APositionOutsideIsRefused) {
  const TimeArray array("t", {{"x", 1}}, {10});
  EXPECT_EQ(test::thrownBy<std::out_of_range>([&] { array.getValueAsInt(TupleX{1}); }),
            "Array 't': position (1) is outside the shape (1)");
}

}  // namespace
}  // namespace quillon::memory
