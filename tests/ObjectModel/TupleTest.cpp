#include <gtest/gtest.h>
#include <object_model/Tuple.h>
#include <object_model/TupleX.h>

#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/Thrown.h"
#include "support/Values.h"

namespace object_model {
namespace {

using test::Address;
using test::thrownBy;
using test::valuesOf;
using test::View;
using Values = std::vector<unsigned long>;

TEST(TupleTest, ADefaultTupleIsAnEmptyView) {
  const Tuple tuple;
  EXPECT_EQ(tuple.size(), 0U);
  EXPECT_EQ(Address::of(tuple), nullptr);
}

TEST(TupleTest, AViewShowsTheValuesOfTheirOwner) {
  std::array<unsigned long, 3> values = {4, 5, 6};
  const View view(values.data(), values.size());
  EXPECT_EQ(valuesOf(view), (Values{4, 5, 6}));
  values[1] = 50;
  EXPECT_EQ(valuesOf(view), (Values{4, 50, 6}));
  EXPECT_EQ(&std::as_const(view)[2], &values[2]);
}

TEST(TupleTest, WritingThroughAViewReachesTheOwner) {
  std::array<unsigned long, 2> values = {1, 2};
  View view(values.data(), values.size());
  view[1] = 20;
  EXPECT_EQ(values, (std::array<unsigned long, 2>{1, 20}));
}

TEST(TupleTest, CopyingMakesAnotherViewOfTheSameValues) {
  TupleX owner({7, 8});
  Tuple copy(owner);
  EXPECT_EQ(Address::of(copy), Address::of(owner));
  copy[0] = 70;
  EXPECT_EQ(valuesOf(owner), (Values{70, 8}));
}

TEST(TupleTest, DestroyingAViewReleasesNothing) {
  TupleX owner({7, 8});
  { const Tuple copy(owner); }
  EXPECT_EQ(valuesOf(owner), (Values{7, 8}));
}

TEST(TupleTest, AssigningToAViewThrowsAndChangesNothing) {
  std::array<unsigned long, 2> values = {1, 2};
  View view(values.data(), values.size());
  Tuple& plain = view;
  const TupleX other({3, 4});
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { plain = other; }), "invalid call");
  EXPECT_EQ(Address::of(view), values.data());
  EXPECT_EQ(valuesOf(view), (Values{1, 2}));
}

TEST(TupleTest, AssigningAnyTupleThrows) {
  Tuple empty;
  const Tuple otherEmpty;
  const Tuple& self = empty;
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { empty = otherEmpty; }), "invalid call");
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { empty = self; }), "invalid call");
}

TEST(TupleTest, AssigningThroughTheBaseOfAnOwningTupleThrowsToo) {
  TupleX owner({1});
  Tuple& base = owner;
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { base = TupleX({2, 3}); }), "invalid call");
  EXPECT_EQ(valuesOf(owner), Values{1});
}

}  // namespace
}  // namespace object_model
