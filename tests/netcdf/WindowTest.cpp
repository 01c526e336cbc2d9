#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <stdexcept>

#include "Window.h"

namespace quillon::netcdf {
namespace {

/// A grid whose value at each offset is the offset, and which counts what is read from it.
struct Storage {
  unsigned long reads = 0;
  unsigned long values = 0;
  bool isBroken = false;

  void read(const Block& block, unsigned long* destination) {
    ++reads;
    values += block.count;
    for (unsigned long k = 0; k < block.count; ++k) {
      if (isBroken && k == block.count / 2) {
        throw std::runtime_error("broken");
      }
      destination[k] = isBroken ? 999 : block.first + k;
    }
  }
};

class WindowTest : public testing::TestWithParam<std::size_t> {
 protected:
  unsigned long at(unsigned long offset) {
    return m_window.at(offset, [this](const Block& block, unsigned long* destination) {
      m_storage.read(block, destination);
    });
  }

  static constexpr unsigned long VALUES = 7 * 5 * 3;
  Storage m_storage;
  Window<unsigned long> m_window{WindowLayout({7, 5, 3}, GetParam())};
};

TEST_P(WindowTest, WalkInOrderReadsEachValueOnce) {
  for (unsigned long offset = 0; offset < VALUES; ++offset) {
    ASSERT_EQ(at(offset), offset);
  }
  EXPECT_EQ(m_storage.values, VALUES);
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

INSTANTIATE_TEST_SUITE_P(OfValues, WindowTest,
                         testing::Values(1, 2, 3, 7, 15, 16, 31, 104, 105, 1000),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace quillon::netcdf
