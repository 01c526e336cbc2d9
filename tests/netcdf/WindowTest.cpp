#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "Window.h"

namespace quillon::netcdf {
namespace {

/// A grid whose value at each offset is the offset, and which counts what is read from it.
struct Storage {
  unsigned long reads = 0;
  unsigned long values = 0;
  bool isBroken = false;

  unsigned long read(const memory::Block& block, std::vector<unsigned long>& destination) {
    ++reads;
    destination.resize(std::max<std::size_t>(destination.size(), block.count));
    values += block.count;
    for (unsigned long k = 0; k < block.count; ++k) {
      if (isBroken && k == block.count / 2) {
        throw std::runtime_error("broken");
      }
      destination[k] = isBroken ? 999 : block.first + k;
    }
    return 8 * block.count;
  }
};

class WindowTest : public testing::TestWithParam<std::size_t> {
 protected:
  unsigned long at(unsigned long offset) {
    return m_window.at(
        offset,
        [this](const memory::Block& block, std::vector<unsigned long>& destination) {
          return m_storage.read(block, destination);
        },
        [this](unsigned long bytes) { m_reported += bytes; });
  }

  static constexpr unsigned long VALUES = 7 * 5 * 3;
  Storage m_storage;
  unsigned long m_reported = 0;
  Window<unsigned long> m_window{memory::BlockLayout({3, 5, 7}, GetParam())};
};

TEST_P(WindowTest, WalkInOrderReadsEachValueOnce) {
  for (unsigned long offset = 0; offset < VALUES; ++offset) {
    ASSERT_EQ(at(offset), offset);
  }
  EXPECT_EQ(m_storage.values, VALUES);
  EXPECT_EQ(m_reported, 8 * VALUES);
}

TEST_P(WindowTest, WalkBackwardsReadsEachValueOnce) {
  for (unsigned long offset = VALUES; offset > 0;) {
    --offset;
    ASSERT_EQ(at(offset), offset);
  }
  EXPECT_EQ(m_storage.values, VALUES);
}

TEST_P(WindowTest, HoppingFindsTheSameValues) {
  std::mt19937 random(GetParam());
  for (int k = 0; k < 1000; ++k) {
    const unsigned long offset = random() % VALUES;
    ASSERT_EQ(at(offset), offset);
  }
}

TEST_P(WindowTest, ValueInTheWindowIsNotReadAgain) {
  at(VALUES - 1);
  at(VALUES - 1);
  EXPECT_EQ(m_storage.reads, 1U);
}

TEST_P(WindowTest, FailureLeavesNoHalfWindow) {
  at(0);
  m_storage.isBroken = true;
  const unsigned long outside = GetParam() < VALUES ? VALUES - 1 : 0;
  if (outside != 0) {
    EXPECT_THROW(at(outside), std::runtime_error);
  }
  m_storage.isBroken = false;
  for (unsigned long offset = 0; offset < VALUES; ++offset) {
    ASSERT_EQ(at(offset), offset);
  }
}

TEST_P(WindowTest, FirstFailureLeavesAnEmptyWindow) {
  m_storage.isBroken = true;
  EXPECT_THROW(at(0), std::runtime_error);
  EXPECT_THROW(at(0), std::runtime_error);
  m_storage.isBroken = false;
  EXPECT_EQ(at(0), 0U);
}

TEST_P(WindowTest, ReportMayUseTheWindow) {
  const auto read = [this](const memory::Block& block, std::vector<unsigned long>& destination) {
    return m_storage.read(block, destination);
  };
  unsigned long found = 0;
  const auto report = [&](unsigned long) { found = at(VALUES - 1); };
  EXPECT_EQ(m_window.at(0, read, report), 0U);
  EXPECT_EQ(found, VALUES - 1);
}

TEST(WindowRoomTest, IsKeptWhereItIsEnoughAndGivenBackBeforeMoreIsAskedFor) {
  Window<int> window{memory::BlockLayout({7}, 3)};
  std::vector<std::size_t> sizes;
  for (const unsigned long offset : {6UL, 0UL, 3UL, 6UL}) {
    window.at(
        offset,
        [&sizes](const memory::Block& block, std::vector<int>& destination) {
          sizes.push_back(destination.size());
          destination.resize(std::max<std::size_t>(destination.size(), block.count));
          return 0UL;
        },
        [](unsigned long) {});
  }
  EXPECT_EQ(sizes, (std::vector<std::size_t>{0, 0, 3, 3}));
}

INSTANTIATE_TEST_SUITE_P(OfValues, WindowTest,
                         testing::Values(1, 2, 3, 7, 15, 16, 31, 104, 105, 1000),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace quillon::netcdf
