#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "Progress.h"

namespace quillon::tools {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class ProgressTest : public ::testing::Test {
 protected:
  Progress::Clock clock() {
    return [this] { return m_now; };
  }

  /// What appears on the stream while `amount` is done at `time` after the start.
  std::string shownAt(milliseconds time, Progress& progress, unsigned long amount) {
    m_now = steady_clock::time_point(time);
    m_stream.str("");
    progress.advance(amount);
    return m_stream.str();
  }

  std::ostringstream m_stream;
  steady_clock::time_point m_now;
};

TEST_F(ProgressTest, NothingIsShownInTheFirstHalfSecond) {
  {
    Progress progress(m_stream, true, 100, clock());
    EXPECT_EQ(shownAt(milliseconds(499), progress, 50), "");
  }
  EXPECT_EQ(m_stream.str(), "");
}

TEST_F(ProgressTest, LongWorkShowsItsShare) {
  Progress progress(m_stream, true, 200, clock());
  EXPECT_EQ(shownAt(milliseconds(500), progress, 51), "\rquillon: 25% read");
}

TEST_F(ProgressTest, AmountsAddUp) {
  Progress progress(m_stream, true, 200, clock());
  EXPECT_EQ(shownAt(milliseconds(1), progress, 50), "");
  EXPECT_EQ(shownAt(milliseconds(500), progress, 50), "\rquillon: 50% read");
  EXPECT_EQ(shownAt(milliseconds(700), progress, 100), "\rquillon: 100% read");
}

TEST_F(ProgressTest, TenUpdatesASecondAtMost) {
  Progress progress(m_stream, true, 100, clock());
  EXPECT_EQ(shownAt(milliseconds(600), progress, 1), "\rquillon: 1% read");
  EXPECT_EQ(shownAt(milliseconds(699), progress, 1), "");
  EXPECT_EQ(shownAt(milliseconds(700), progress, 1), "\rquillon: 3% read");
}

TEST_F(ProgressTest, WhatWasShownIsErasedAtTheEnd) {
  {
    Progress progress(m_stream, true, 1, clock());
    EXPECT_EQ(shownAt(milliseconds(500), progress, 1), "\rquillon: 100% read");
    m_stream.str("");
  }
  EXPECT_EQ(m_stream.str(), "\r" + std::string(20, ' ') + "\r");
}

TEST_F(ProgressTest, NothingIsShownWhereThereIsNoTerminal) {
  {
    Progress progress(m_stream, false, 100, clock());
    EXPECT_EQ(shownAt(milliseconds(5000), progress, 50), "");
  }
  EXPECT_EQ(m_stream.str(), "");
}

TEST_F(ProgressTest, MoreThanTheTotalIsAllOfIt) {
  Progress progress(m_stream, true, 10, clock());
  EXPECT_EQ(shownAt(milliseconds(500), progress, 11), "\rquillon: 100% read");
}

TEST_F(ProgressTest, WorkWithoutAmountIsDone) {
  Progress progress(m_stream, true, 0, clock());
  EXPECT_EQ(shownAt(milliseconds(500), progress, 0), "\rquillon: 100% read");
}

TEST_F(ProgressTest, HugeAmountsKeepTheirShare) {
  Progress progress(m_stream, true, std::numeric_limits<unsigned long>::max(), clock());
  EXPECT_EQ(shownAt(milliseconds(500), progress, 1UL << 63U), "\rquillon: 50% read");
}

}  // namespace
}  // namespace quillon::tools
