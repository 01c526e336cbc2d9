#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

#include "CopyBox.h"
#include "support/Properties.h"

namespace quillon::tables {
namespace {

/// Copies values to every other place, first along the direction that is slow in the source.
TEST(CopyBoxTest, NearestDirectionIsTheOneOfTheShortestStepThatIsOne) {
  const auto nearestBySteps = [](const std::vector<long>& steps) {
    std::vector<Stride> strides;
    strides.reserve(steps.size());
    for (const long step : steps) {
      strides.push_back({2, step, 1});
    }
    return nearestOf(strides);
  };
  EXPECT_EQ(nearestBySteps({8}), 0U);
  EXPECT_EQ(nearestBySteps({8, 4}), 1U);
  EXPECT_EQ(nearestBySteps({8, -4}), 1U);
  EXPECT_EQ(nearestBySteps({-4, 8}), 0U);
  EXPECT_EQ(nearestBySteps({4, 4}), 0U);
  EXPECT_EQ(nearestBySteps({8, 0, 4}), 2U);
  EXPECT_EQ(nearestBySteps({8, 1, 4}), 1U);
  EXPECT_EQ(nearestBySteps({8, 4, 2}), 2U);
}

TEST(CopyBoxTest, TilesGoWhereTheirValuesBelong) {
  std::vector<int> from(120);
  std::iota(from.begin(), from.end(), 0);
  std::vector<int> to(240, -1);
  std::vector<int> expected(240, -1);
  for (std::size_t i = 0; i < 40; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      expected[2 * i + 80 * k] = from[3 * i + k];
    }
  }
  const long size = sizeof(int);
  copyBox(reinterpret_cast<const char*>(from.data()), {{40, 3 * size, 2}, {3, size, 80}},
          to.data());
  EXPECT_EQ(to, expected);
}

/// A box of values in one order of its directions, copied into another, with gaps between the
/// values on either side.
template <class T>
void copyAny() {
  const std::size_t directions = 1 + ::test::pick(4UL);
  std::vector<Stride> strides(directions);
  std::vector<std::size_t> order(directions);
  long to = 1 + ::test::pick(2L);
  for (std::size_t k = 0; k < directions; ++k) {
    strides[k].count = 1 + ::test::pick(k < 2 ? 70UL : 4UL);
    strides[k].to = to;
    to *= static_cast<long>(strides[k].count);
    to += ::test::pick(2L);
    order[k] = k;
  }
  for (std::size_t k = directions; k > 1; --k) {
    std::swap(order[k - 1], order[::test::pick(k)]);
  }
  long from = 1 + ::test::pick(2L);
  for (const std::size_t k : order) {
    const bool isRepeated = ::test::pick(8) == 0;
    strides[k].from = isRepeated ? 0 : from * static_cast<long>(sizeof(T));
    from = isRepeated ? from : from * static_cast<long>(strides[k].count) + ::test::pick(2L);
  }
  std::vector<T> source(static_cast<std::size_t>(from));
  for (std::size_t k = 0; k < source.size(); ++k) {
    if constexpr (std::is_same_v<T, std::string>) {
      source[k] = std::to_string(k);
    } else {
      source[k] = static_cast<T>(k);
    }
  }
  std::vector<T> copied(static_cast<std::size_t>(to));
  copyBox(reinterpret_cast<const char*>(source.data()), strides, copied.data());
  std::vector<T> expected(copied.size());
  std::vector<unsigned long> at(directions, 0);
  for (std::size_t k = 0; k < directions;) {
    long offset = 0;
    long place = 0;
    for (std::size_t i = 0; i < directions; ++i) {
      offset += static_cast<long>(at[i]) * strides[i].from / static_cast<long>(sizeof(T));
      place += static_cast<long>(at[i]) * strides[i].to;
    }
    expected[static_cast<std::size_t>(place)] = source[static_cast<std::size_t>(offset)];
    for (k = 0; k < directions && ++at[k] == strides[k].count; ++k) {
      at[k] = 0;
    }
  }
  RC_ASSERT(copied == expected);
}

RC_GTEST_PROP(CopyBoxPropertyTest, EachValueGoesToItsPlace, ()) {
  if (::test::pick(4) == 0) {
    copyAny<std::string>();
  } else {
    copyAny<int>();
  }
}

}  // namespace
}  // namespace quillon::tables
