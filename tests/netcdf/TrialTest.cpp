#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "Trial.h"

namespace quillon::netcdf {
namespace {

TEST(Trial, ActionThatEndsSurvives) {
  int count = 0;
  EXPECT_TRUE(survives([&] { ++count; }));
  EXPECT_EQ(count, 0) << "the action ran in this process";
}

TEST(Trial, ActionThatThrowsSurvives) {
  EXPECT_TRUE(survives([] { throw std::runtime_error("no"); }));
}

TEST(Trial, CrashDoesNotSurvive) {
  for (const int fatal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGKILL}) {
    EXPECT_FALSE(survives([&] { std::raise(fatal); })) << fatal;
  }
}

TEST(Trial, EndOfTheProcessDoesNotSurvive) {
  EXPECT_FALSE(survives([] { std::_Exit(0); }));
}

TEST(Trial, EndlessLoopDoesNotSurvive) {
  volatile bool isRunning = true;
  EXPECT_FALSE(survives(
      [&] {
        while (isRunning) {
        }
      },
      1));
}

TEST(Trial, ActionPrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  survives([] {
    std::puts("output");
    std::fputs("error", stderr);
    std::fflush(stdout);
  });
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Trial, CallerMayIgnoreItsChildren) {
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_TRUE(survives([] {}));
  EXPECT_FALSE(survives([] { std::abort(); }));
  std::signal(SIGCHLD, before);
}

TEST(Trial, HandlersOfTheCallerDoNotRun) {
  const auto before = std::signal(SIGSEGV, [](int) { std::_Exit(0); });
  EXPECT_FALSE(survives([] { std::raise(SIGSEGV); }));
  std::signal(SIGSEGV, before);
}

}  // namespace
}  // namespace quillon::netcdf
