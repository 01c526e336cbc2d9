#include "Trial.h"

#include <fcntl.h>
#include <quillon/netcdf/File.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>
#include <string_view>

#include "Bounded.h"

namespace quillon::netcdf {
namespace {

// How the copy says that the action has ended: by return, or by an error, whose text follows. A
// null character ends the verdict: the pipe's own end may come late, as another thread's copy, made
// at the same time, has that pipe open too.
constexpr char RETURNED = 'r';
constexpr char FAILED = 'f';

// What the libraries may take for a file: for its own sake, and for each byte of it. An opened
// variable takes tens of kilobytes, and half a kilobyte of its file.
constexpr unsigned long BYTES_FOR_ANY_FILE = 256UL << 20U;
constexpr unsigned long BYTES_FOR_A_BYTE = 128;

/// The bytes of addresses that this process has in use; 0 if that cannot be told.
unsigned long addressesInUse() {
  unsigned long pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
}

void limitMemory(unsigned long fileBytes) {
  const unsigned long inUse = addressesInUse();
  rlimit limit{};
  if (inUse > 0 && getrlimit(RLIMIT_AS, &limit) == 0) {
    const unsigned long more =
        boundedSum(BYTES_FOR_ANY_FILE, boundedProduct(fileBytes, BYTES_FOR_A_BYTE));
    limit.rlim_cur = std::min<unsigned long>(limit.rlim_cur, boundedSum(inUse, more));
    setrlimit(RLIMIT_AS, &limit);
  }
}

// Whatever the caller does on a crash, such as printing a report, is not for the copy to do.
void dieQuietly(unsigned int mostSeconds) {
  for (const int fatal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU}) {
    std::signal(fatal, SIG_DFL);
  }
  const rlimit noDump{0, 0};
  setrlimit(RLIMIT_CORE, &noDump);
  const rlimit time{mostSeconds, mostSeconds};
  setrlimit(RLIMIT_CPU, &time);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
}

void writeVerdict(int to, const std::string& verdict) {
  std::string_view rest(verdict.c_str(), verdict.size() + 1);
  while (!rest.empty()) {
    const ssize_t count = write(to, rest.data(), rest.size());
    if (count > 0) {
      rest.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return;
    }
  }
}

/// Empty if the copy has died before it came to a verdict.
std::string readVerdict(int from) {
  std::string verdict;
  std::array<char, 512> part{};
  while (verdict.empty() || verdict.back() != '\0') {
    const ssize_t count = read(from, part.data(), part.size());
    if (count > 0) {
      verdict.append(part.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return {};
    }
  }
  verdict.pop_back();
  return verdict;
}

[[noreturn]] void runCopy(const std::function<void()>& action, unsigned long fileBytes,
                          unsigned int mostSeconds, int verdict) {
  dieQuietly(mostSeconds);
  limitMemory(fileBytes);
  try {
    action();
    writeVerdict(verdict, {RETURNED});
  } catch (const Error& error) {
    writeVerdict(verdict, FAILED + std::string(error.what()));
  } catch (...) {  // NOLINT(bugprone-empty-catch): that there is no verdict says it all
  }
  _exit(0);
}

}  // namespace

bool survives(const std::function<void()>& action, unsigned long fileBytes,
              unsigned int mostSeconds) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return true;
  }
  const pid_t copy = fork();
  if (copy == 0) {
    runCopy(action, fileBytes, mostSeconds, ends[1]);
  }
  close(ends[1]);
  // It comes through a pipe, since the caller may ignore or collect its children's ends.
  const std::string verdict = copy < 0 ? std::string{RETURNED} : readVerdict(ends[0]);
  close(ends[0]);
  if (copy > 0) {
    while (waitpid(copy, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  if (!verdict.empty() && verdict.front() == FAILED) {
    throw Error(verdict.substr(1));
  }
  return !verdict.empty();
}

}  // namespace quillon::netcdf
