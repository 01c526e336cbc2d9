#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "TestFiles.h"
#include "Trial.h"

namespace quillon::netcdf {
namespace {

TEST(Trial, ActionThatEndsSurvives) {
  int count = 0;
  EXPECT_TRUE(survives([&] { ++count; }, 0));
  EXPECT_EQ(count, 0) << "the action ran in this process";
}

TEST(Trial, ErrorOfTheActionArrives) {
  const std::string longText(200000, 'x');  // more than a pipe takes at once
  EXPECT_EQ(errorOf([&] { survives([&] { throw Error(longText); }, 0); }), longText);
  EXPECT_EQ(errorOf([&] { survives([&] { throw Error(""); }, 0); }), "");
}

TEST(Trial, ActionThatThrowsAnythingElseDoesNotSurvive) {
  EXPECT_FALSE(survives([] { throw std::runtime_error("no"); }, 0));
  EXPECT_FALSE(survives([] { throw 1; }, 0));
}

TEST(Trial, MemoryIsLimitedInProportionToTheFile) {
  constexpr unsigned long MIB = 1UL << 20U;
  const auto canAllocate = [](unsigned long bytes, unsigned long fileBytes) {
    return survives(
        [bytes] {
          void* volatile block = std::malloc(bytes);
          const bool isThere = block != nullptr;
          std::free(block);
          if (!isThere) {
            throw std::bad_alloc();
          }
        },
        fileBytes);
  };
  // Memory that the process has freed and still holds comes on top, a few megabytes.
  EXPECT_TRUE(canAllocate(250 * MIB, 0));
  EXPECT_FALSE(canAllocate(400 * MIB, 0));
  EXPECT_TRUE(canAllocate(750 * MIB, 4 * MIB));
  EXPECT_FALSE(canAllocate(900 * MIB, 4 * MIB));
  EXPECT_TRUE(canAllocate(900 * MIB, std::numeric_limits<unsigned long>::max()));
}

TEST(Trial, MemoryOfTheProcessItselfIsNotLimited) {
  const auto limit = [] {
    rlimit addresses{};
    return getrlimit(RLIMIT_AS, &addresses) == 0 ? addresses.rlim_cur : 0;
  };
  const rlim_t before = limit();
  survives([] {}, 0);
  EXPECT_EQ(limit(), before);
}

TEST(Trial, CrashDoesNotSurvive) {
  for (const int fatal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGKILL}) {
    EXPECT_FALSE(survives([&] { std::raise(fatal); }, 0)) << fatal;
  }
}

TEST(Trial, EndOfTheProcessDoesNotSurvive) {
  EXPECT_FALSE(survives([] { std::_Exit(0); }, 0));
}

TEST(Trial, EndlessLoopDoesNotSurvive) {
  volatile bool isRunning = true;
  EXPECT_FALSE(survives(
      [&] {
        while (isRunning) {
        }
      },
      0, 1));
}

TEST(Trial, ActionPrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  survives(
      [] {
        std::puts("output");
        std::fputs("error", stderr);
        std::fflush(stdout);
      },
      0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Trial, CallerMayIgnoreItsChildren) {
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_TRUE(survives([] {}, 0));
  EXPECT_FALSE(survives([] { std::abort(); }, 0));
  std::signal(SIGCHLD, before);
}

TEST(Trial, HandlersOfTheCallerDoNotRun) {
  const auto before = std::signal(SIGSEGV, [](int) { std::_Exit(0); });
  EXPECT_FALSE(survives([] { std::raise(SIGSEGV); }, 0));
  std::signal(SIGSEGV, before);
}

}  // namespace
}  // namespace quillon::netcdf
