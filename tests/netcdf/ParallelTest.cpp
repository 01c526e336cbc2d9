#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "Parallel.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long MEBIBYTE = 1UL << 20U;

TEST(ParallelTest, ThreadsAreAtMostThePiecesAndWhatTheMachineRuns) {
  const unsigned machine = std::max(1U, std::thread::hardware_concurrency());
  EXPECT_EQ(threadsFor(0, 0), 1);
  EXPECT_EQ(threadsFor(1, MEBIBYTE * MEBIBYTE), 1);
  EXPECT_EQ(threadsFor(MEBIBYTE, MEBIBYTE * MEBIBYTE), machine);
}

TEST(ParallelTest, LittleWorkIsForOneThread) {
  EXPECT_EQ(threadsFor(100, MEBIBYTE / 4 + 1), 1);
  EXPECT_EQ(threadsFor(100, MEBIBYTE / 2), std::min(2U, threadsFor(100, MEBIBYTE * MEBIBYTE)));
}

void expectEachPieceOnce(unsigned threads, unsigned long pieces) {
  std::vector<std::atomic<int>> done(pieces);
  inParallel(threads, pieces, [&](unsigned worker, unsigned long piece) {
    EXPECT_LT(worker, threads);
    ++done[piece];
  });
  for (const std::atomic<int>& count : done) {
    EXPECT_EQ(count, 1);
  }
}

TEST(ParallelTest, EachPieceIsDoneOnce) {
  expectEachPieceOnce(1, 10);
  expectEachPieceOnce(8, 1000);
  expectEachPieceOnce(8, 3);
  expectEachPieceOnce(4, 0);
}

TEST(ParallelTest, OneThreadIsTheCallersOwn) {
  inParallel(1, 20, [caller = std::this_thread::get_id()](unsigned worker, unsigned long) {
    EXPECT_EQ(worker, 0U);
    EXPECT_EQ(std::this_thread::get_id(), caller);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  });
}

TEST(ParallelTest, EachThreadHasANumberOfItsOwn) {
  constexpr unsigned THREADS = 3;
  std::vector<std::atomic<int>> pieces(THREADS);
  std::atomic<unsigned> begun{0};
  inParallel(THREADS, THREADS, [&](unsigned worker, unsigned long) {
    ++pieces[worker];
    ++begun;
    // Each waits until all have one.
    for (int milliseconds = 0; begun < THREADS && milliseconds < 10000; ++milliseconds) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  for (const std::atomic<int>& count : pieces) {
    EXPECT_EQ(count, 1);
  }
}

TEST(ParallelTest, WhatAPieceThrowsComesOut) {
  EXPECT_THROW(inParallel(4, 100,
                          [](unsigned, unsigned long piece) {
                            if (piece == 50) {
                              throw std::runtime_error("piece 50");
                            }
                          }),
               std::runtime_error);
}

TEST(ParallelTest, WhatIsThrownEndsTheWorkOfAll) {
  std::atomic<int> done{0};
  EXPECT_THROW(inParallel(2, 2000,
                          [&](unsigned, unsigned long piece) {
                            if (piece == 0) {
                              throw std::runtime_error("piece 0");
                            }
                            std::this_thread::sleep_for(std::chrono::milliseconds(1));
                            ++done;
                          }),
               std::runtime_error);
  EXPECT_LT(done, 1999);
}

TEST(ParallelTest, ThreadsThatThereAreDoItAllWhereNoMoreCanBeStarted) {
  if (!MEMORY_IS_LIMITED) {
    GTEST_SKIP() << "there is always room for another thread's stack";
  }
  EXPECT_EQ(fateOf([] {
              std::atomic<unsigned long> sum{0};
              inParallel(1000, 3000, [&](unsigned, unsigned long piece) { sum += piece; });
              if (sum != 3000UL * 2999 / 2) {
                throw std::runtime_error("a piece was left out");
              }
            }),
            "");
}

}  // namespace
}  // namespace quillon::netcdf
