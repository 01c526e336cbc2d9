#include "Wall.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

#include "Failure.h"
#include "WorkNotes.h"

namespace quillon::tools {

namespace {

// With fewer, files that are sound look damaged to the libraries that read them.
constexpr rlim_t FEWEST_OPEN_FILES = 16;

/// The signals by which people and systems ask a process to end.
constexpr std::array<int, 7> REQUESTS = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,
                                         SIGALRM, SIGUSR1, SIGUSR2};

bool isRequest(int signal) {
  return std::find(REQUESTS.begin(), REQUESTS.end(), signal) != REQUESTS.end();
}

/// Keeps the requests and the news of a child's end for whoever waits for them.
class HeldSignals {
 public:
  HeldSignals() {
    ::sigemptyset(&m_held);
    ::sigaddset(&m_held, SIGCHLD);
    for (const int request : REQUESTS) {
      ::sigaddset(&m_held, request);
    }
    // Whoever started this process may have ignored it, and an ignored child leaves no status.
    std::signal(SIGCHLD, SIG_DFL);
    ::sigprocmask(SIG_BLOCK, &m_held, &m_before);
  }
  ~HeldSignals() { release(); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  void release() const { ::sigprocmask(SIG_SETMASK, &m_before, nullptr); }

  int next() const { return ::sigwaitinfo(&m_held, nullptr); }

 private:
  sigset_t m_held = {};
  sigset_t m_before = {};
};

void requireDescriptors() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < FEWEST_OPEN_FILES) {
    throw Failure("Only " + std::to_string(limit.rlim_cur) +
                  " files may be open at a time, and reading needs " +
                  std::to_string(FEWEST_OPEN_FILES) + " (see ulimit -n)");
  }
}

Failure cannotStart(int error) {
  const std::string reason = error == EAGAIN ? "no more processes may be started (see ulimit -u)"
                                             : std::generic_category().message(error);
  return Failure{"Cannot start the process that reads: " + reason};
}

int waitFor(pid_t child, const HeldSignals& signals) {
  int status = 0;
  while (::waitpid(child, &status, WNOHANG) == 0) {
    if (const int signal = signals.next(); isRequest(signal)) {
      ::kill(child, signal);
    }
  }
  return status;
}

void removeTemporaryFile(const WorkNotes& notes) {
  if (const std::string path = notes.temporaryFile.get(); !path.empty()) {
    ::unlink(path.c_str());
  }
}

/// What has become of a worker that did not come to its end.
std::string fateOf(int status, const WorkNotes& notes) {
  const bool isReading = notes.filesRead > 0;
  const bool isOne = notes.filesRead == 1;
  const std::string start = isReading ? "Cannot read " + notes.files.get() + ": " : std::string();
  const std::string damaged = isOne ? "it is damaged" : "one of them is damaged";
  const std::string libraries =
      isOne ? "the libraries that read it " : "the libraries that read them ";
  if (notes.isStuck) {
    return start + libraries + "took processor time without end; " + damaged;
  }
  const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  if (signal == SIGKILL) {
    return start + (isReading ? "the" : "The") +
           " process that does the work was killed; systems do so when memory runs out";
  }
  if (signal == SIGXCPU) {
    return start + (isReading ? "the" : "The") + " processor time is used up (see ulimit -t)";
  }
  const std::string how = signal == 0 ? "exit" : ::strsignal(signal);
  return isReading
             ? start + libraries + "crashed (" + how + "); " + damaged + " or was changed meanwhile"
             : "The process that does the work crashed (" + how + ")";
}

/// Ends as the worker did, so that a shell sees a program that was asked to end.
void dieBy(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t set = {};
  ::sigemptyset(&set);
  ::sigaddset(&set, signal);
  ::raise(signal);
  ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

int conclude(int status, const WorkNotes& notes) {
  if (WIFEXITED(status) && notes.isDone) {
    return WEXITSTATUS(status);
  }
  if (WIFSIGNALED(status) && isRequest(WTERMSIG(status))) {
    dieBy(WTERMSIG(status));
  }
  return reportTrouble(fateOf(status, notes));
}

int runChild(const std::function<int()>& work, const WorkLimits& limits) {
  WorkNotes& notes = shareWorkNotes();
  const HeldSignals signals;
  std::fflush(nullptr);  // what is in the buffers is for one of the two to write
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child < 0) {
    throw cannotStart(errno);
  }
  if (child == 0) {
    signals.release();
    becomeWorker(parent, limits);
    const int status = work();
    notes.isDone = true;
    // Without the libraries' own ends, which could still crash on what they hold of a damaged file.
    ::_exit(status);
  }
  const int status = waitFor(child, signals);
  removeTemporaryFile(notes);
  return conclude(status, notes);
}

}  // namespace

int doBehindWall(const std::function<int()>& work, const WorkLimits& limits) {
  try {
    requireDescriptors();
    return runChild(work, limits);
  } catch (const Failure& failure) {
    return reportTrouble(failure.what());
  }
}

}  // namespace quillon::tools
