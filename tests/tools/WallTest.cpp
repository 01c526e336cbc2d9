#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "Failure.h"
#include "Memory.h"
#include "RunTool.h"
#include "Wall.h"
#include "WorkNotes.h"

namespace quillon::tools {
namespace {

using std::chrono::milliseconds;
using test::Scratch;

struct Ending {
  int status;
  std::string sentence;
};

bool operator==(const Ending& first, const Ending& second) {
  return first.status == second.status && first.sentence == second.sentence;
}

void PrintTo(const Ending& ending, std::ostream* stream) {
  *stream << "status " << ending.status << ", " << ending.sentence;
}

Ending endingOf(const std::function<int()>& work, const WorkLimits& limits = {physicalMemory()}) {
  ::testing::internal::CaptureStderr();
  const int status = doBehindWall(work, limits);
  return {status, ::testing::internal::GetCapturedStderr()};
}

Ending trouble(const std::string& sentence) {
  return {EXIT_TROUBLE, "quillon: " + sentence + "\n"};
}

void useProcessorTime(milliseconds time) {
  const std::clock_t end = std::clock() + time.count() * (CLOCKS_PER_SEC / 1000);
  while (std::clock() < end) {
  }
}

/// Ends by `signal`, whatever handles it in this process.
int dieBy(int signal) {
  ::raise(signal);
  return 0;
}

TEST(WallTest, StatusOfTheWorkIsPassedOn) {
  for (const int status : {0, 1, 2}) {
    EXPECT_EQ(endingOf([=] { return status; }), (Ending{status, ""}));
  }
}

TEST(WallTest, WorkIsDoneInAnotherProcess) {
  const pid_t here = ::getpid();
  EXPECT_EQ(endingOf([=] { return ::getpid() != here && ::getppid() == here ? 0 : 1; }).status, 0);
}

struct Crash {
  int signal;
  std::string name;
};

void PrintTo(const Crash& crash, std::ostream* stream) { *stream << crash.name; }

class CrashTest : public ::testing::TestWithParam<Crash> {};

TEST_P(CrashTest, WhileAFileIsReadIsASentenceAboutIt) {
  EXPECT_EQ(endingOf([] {
              noteReading({"a\tb.nc"});
              return dieBy(GetParam().signal);
            }),
            trouble("Cannot read 'a\\tb.nc': the libraries that read it crashed (" +
                    GetParam().name + "); it is damaged or was changed meanwhile"));
}

INSTANTIATE_TEST_SUITE_P(Signals, CrashTest,
                         ::testing::Values(Crash{SIGSEGV, "Segmentation fault"},
                                           Crash{SIGBUS, "Bus error"}, Crash{SIGABRT, "Aborted"},
                                           Crash{SIGFPE, "Floating point exception"},
                                           Crash{SIGILL, "Illegal instruction"}),
                         [](const auto& crash) {
                           std::string name = crash.param.name;
                           name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
                           return name;
                         });

TEST(WallTest, CrashWhileTwoFilesAreReadNamesBoth) {
  EXPECT_EQ(endingOf([] {
              noteReading({"a.nc", "b.nc"});
              return dieBy(SIGSEGV);
            }),
            trouble("Cannot read 'a.nc' and 'b.nc': the libraries that read them crashed "
                    "(Segmentation fault); one of them is damaged or was changed meanwhile"));
}

TEST(WallTest, CrashWhileNothingIsReadBlamesNoFile) {
  EXPECT_EQ(endingOf([] {
              noteReading({"a.nc"});
              noteReading({});
              return dieBy(SIGSEGV);
            }),
            trouble("The process that does the work crashed (Segmentation fault)"));
}

TEST(WallTest, ExitOfALibraryIsNoSuccess) {
  EXPECT_EQ(endingOf([]() -> int { ::_exit(0); }),
            trouble("The process that does the work crashed (exit)"));
}

TEST(WallTest, KilledWorkerIsTrouble) {
  EXPECT_EQ(endingOf([] { return dieBy(SIGKILL); }),
            trouble("The process that does the work was killed; systems do so when memory runs "
                    "out"));
}

TEST(WallTest, LimitOfProcessorTimeIsNamed) {
  EXPECT_EQ(endingOf([] {
              noteReading({"a.nc"});
              return dieBy(SIGXCPU);
            }),
            trouble("Cannot read 'a.nc': the processor time is used up (see ulimit -t)"));
}

TEST(WallTest, ReadingWithoutProgressIsEnded) {
  EXPECT_EQ(endingOf(
                [] {
                  noteReading({"a.nc"});
                  useProcessorTime(milliseconds(20000));
                  return 0;
                },
                {physicalMemory(), milliseconds(150)}),
            trouble("Cannot read 'a.nc': the libraries that read it took processor time without "
                    "end; it is damaged"));
}

TEST(WallTest, ReadingWithProgressIsNotEnded) {
  EXPECT_EQ(endingOf(
                [] {
                  noteReading({"a.nc"});
                  for (int step = 0; step < 40; ++step) {
                    useProcessorTime(milliseconds(20));
                    noteProgress();
                  }
                  return 1;
                },
                {physicalMemory(), milliseconds(300)}),
            (Ending{1, ""}));
}

TEST(WallTest, ReadingThatWaitsIsNotEnded) {
  EXPECT_EQ(endingOf(
                [] {
                  noteReading({"a.nc"});
                  ::usleep(500000);
                  return 0;
                },
                {physicalMemory(), milliseconds(60)}),
            (Ending{0, ""}));
}

TEST(WallTest, WorkThatReadsNothingIsNotEnded) {
  EXPECT_EQ(endingOf(
                [] {
                  useProcessorTime(milliseconds(500));
                  return 0;
                },
                {physicalMemory(), milliseconds(60)}),
            (Ending{0, ""}));
}

TEST(WallTest, LongFilesMayTakeLonger) {
  const Scratch scratch;
  const std::string path = scratch.path("long.nc");
  test::writeContent(path, "");
  ASSERT_EQ(::truncate(path.c_str(), 8L << 20U), 0);
  EXPECT_EQ(endingOf(
                [&] {
                  noteReading({path});
                  useProcessorTime(milliseconds(1000));
                  return 0;
                },
                {physicalMemory(), milliseconds(60)}),
            (Ending{0, ""}));
}

TEST(WallTest, ClaimOfMemoryFailsInTheWorker) {
  EXPECT_EQ(endingOf(
                [] {
                  const auto isGiven = [](std::size_t bytes) {
                    return ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0) != MAP_FAILED;
                  };
                  return isGiven(200U << 20U) && !isGiven(200U << 20U) ? 0 : 1;
                },
                {300U << 20U}),
            (Ending{0, ""}));
}

TEST(WallTest, IgnoredEndsOfChildrenAreNoticed) {
  std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(endingOf([] { return 1; }), (Ending{1, ""}));
}

TEST(WallTest, TemporaryFileOfACrashIsRemoved) {
  const Scratch scratch;
  const std::string path = scratch.path("temporary");
  test::writeContent(path, "half a");
  EXPECT_EQ(endingOf([&] {
              noteTemporaryFile(path);
              return dieBy(SIGSEGV);
            }).status,
            EXIT_TROUBLE);
  EXPECT_THAT(scratch.entries(), ::testing::IsEmpty());
}

/// Runs `action` in a process of its own. @return its exit status.
int inProcess(const std::function<int()>& action) {
  const pid_t process = ::fork();
  if (process == 0) {
    ::_exit(action());
  }
  if (process < 0) {
    throw std::system_error(errno, std::generic_category(), "no process");
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// How a process ends in which the system refuses a limit that a test needs.
constexpr int NO_LIMIT_HERE = 99;

/// How the tool ends, in a process of its own, below the limit that `lower` sets.
Ending endingBelowLimit(const std::function<bool()>& lower) {
  ::testing::internal::CaptureStderr();
  const int status = inProcess(
      [&] { return lower() ? doBehindWall([] { return 0; }, {physicalMemory()}) : NO_LIMIT_HERE; });
  return {status, ::testing::internal::GetCapturedStderr()};
}

bool forbidProcesses() {
  const rlimit none{1, 1};
  // The limit is a user's, who has this process already; for root there is none.
  return ::setrlimit(RLIMIT_NPROC, &none) == 0 && (::getuid() != 0 || ::setuid(65534) == 0);
}

Ending endingWithDescriptors(rlim_t count) {
  return endingBelowLimit([count] {
    const rlimit limit{count, count};
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
  });
}

TEST(WallTest, WithoutAChildNothingIsDone) {
  EXPECT_EQ(endingBelowLimit(forbidProcesses),
            trouble("Cannot start the process that reads: no more processes may be started (see "
                    "ulimit -u)"));
}

TEST(WallTest, TooFewDescriptorsAreTrouble) {
  EXPECT_EQ(endingWithDescriptors(15),
            trouble("Only 15 files may be open at a time, and reading needs 16 (see ulimit -n)"));
  EXPECT_EQ(endingWithDescriptors(16), (Ending{0, ""}));
}

TEST(WallTest, HardlyAnyDescriptorsAreTrouble) {
  if (IS_SANITIZED) {
    GTEST_SKIP() << "the undefined-behaviour sanitizer needs descriptors to look at objects";
  }
  EXPECT_EQ(endingWithDescriptors(4),
            trouble("Only 4 files may be open at a time, and reading needs 16 (see ulimit -n)"));
}

class RequestTest : public ::testing::TestWithParam<int> {};

TEST_P(RequestTest, EndsWorkerAndParentAlike) {
  const Scratch scratch;
  const std::string temporary = scratch.path("temporary");
  test::writeContent(temporary, "half a");
  EXPECT_EQ(inProcess([&] {
              std::signal(GetParam(), SIG_DFL);
              return doBehindWall(
                  [&] {
                    noteTemporaryFile(temporary);
                    ::kill(::getppid(), GetParam());  // as somebody who knows the parent alone does
                    ::sleep(60);
                    return 0;
                  },
                  {physicalMemory()});
            }),
            128 + GetParam());
  EXPECT_THAT(scratch.entries(), ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, RequestTest,
                         ::testing::Values(SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGALRM, SIGUSR1,
                                           SIGUSR2));

TEST(WallTest, IgnoredRequestEndsNothing) {
  EXPECT_EQ(inProcess([] {
              std::signal(SIGHUP, SIG_IGN);  // as nohup does
              return doBehindWall(
                  [] {
                    ::kill(::getppid(), SIGHUP);
                    ::usleep(100000);
                    return 1;
                  },
                  {physicalMemory()});
            }),
            1);
}

TEST(WallTest, WorkerDoesNotOutliveItsParent) {
  int ends[2] = {};
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_EQ(inProcess([&] {
              return doBehindWall(
                  [] {
                    ::kill(::getppid(), SIGKILL);
                    ::sleep(60);
                    return 0;
                  },
                  {physicalMemory()});
            }),
            128 + SIGKILL);
  ::close(ends[1]);
  pollfd closed{ends[0], 0, 0};  // as soon as nobody has the other end any more
  EXPECT_EQ(::poll(&closed, 1, 20000), 1);
  ::close(ends[0]);
}

}  // namespace
}  // namespace quillon::tools
