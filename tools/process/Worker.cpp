#include "Worker.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "Failure.h"
#include "WorkNotes.h"

namespace quillon::tools {

namespace {

using std::chrono::milliseconds;

constexpr unsigned long BYTES_PER_MILLISECOND = 4UL << 10U;
constexpr int TICKS = 30;  // how many make up the time without progress

// What the watch knows. It belongs to the worker alone, which has one thread when it starts.
struct Watch {
  WorkNotes* notes;
  unsigned long progress;  ///< at the last tick
  long idle;               ///< milliseconds since there was progress
  long most;
  long tick;
};

Watch& watch() {
  static Watch watch{};
  return watch;
}

/// Called by the signal of the timer, so that it may use little more than numbers.
void onTick(int /*signal*/) {
  Watch& state = watch();
  if (state.notes == nullptr) {
    return;
  }
  const unsigned long progress = state.notes->progress;
  if (state.notes->filesRead == 0 || progress != state.progress) {
    state.progress = progress;
    state.idle = 0;
    return;
  }
  state.idle += state.tick;
  const unsigned long bytes = state.notes->bytes;
  if (state.idle > state.most + static_cast<long>(bytes / BYTES_PER_MILLISECOND)) {
    state.notes->isStuck = true;
    ::kill(::getpid(), SIGKILL);
  }
}

void watchProgress(milliseconds most) {
  const milliseconds tick = std::max(most / TICKS, milliseconds(1));
  watch() = {&workNotes(), 0, 0, most.count(), tick.count()};
  struct sigaction action = {};
  action.sa_handler = onTick;
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGPROF, &action, nullptr);
  const timeval interval{tick.count() / 1000, (tick.count() % 1000) * 1000};
  const itimerval timer{interval, interval};
  ::setitimer(ITIMER_PROF, &timer, nullptr);
}

/// The bytes of memory of its own that this process has; 0 if that cannot be told.
unsigned long memoryInUse() {
  std::ifstream statm("/proc/self/statm");
  unsigned long pages = 0;
  for (int field = 0; field < 6; ++field) {  // the sixth is data and stack
    statm >> pages;
  }
  return statm ? pages * static_cast<unsigned long>(::sysconf(_SC_PAGESIZE)) : 0;
}

void lowerLimit(__rlimit_resource resource, unsigned long most) {
  rlimit limit{};
  if (::getrlimit(resource, &limit) == 0) {
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, most);
    ::setrlimit(resource, &limit);
  }
}

}  // namespace

void becomeWorker(pid_t parent, const WorkLimits& limits) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) {
    ::_exit(EXIT_TROUBLE);  // it has ended already
  }
  // A sanitizer's report, or a core file, would say nothing about the file that is to blame.
  for (const int fatal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
    std::signal(fatal, SIG_DFL);
  }
  lowerLimit(RLIMIT_CORE, 0);
  if (const unsigned long inUse = memoryInUse(); inUse > 0) {
    lowerLimit(RLIMIT_DATA, inUse + limits.memory);
  }
  watchProgress(limits.timeWithoutProgress);
}

}  // namespace quillon::tools
