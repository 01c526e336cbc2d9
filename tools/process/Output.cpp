#include "Output.h"

#include <fcntl.h>
#include <poll.h>
#include <quillon/memory/OutputTarget.h>
#include <quillon/memory/Wording.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

#include "Failure.h"
#include "WorkNotes.h"

namespace quillon::tools {

using memory::inQuotes;
using memory::OutputTarget;
using memory::TemporaryFile;

namespace {

/// Waits until a descriptor that takes nothing just now takes more.
void waitToWrite(int descriptor) {
  pollfd waiting{descriptor, POLLOUT, 0};
  ::poll(&waiting, 1, -1);
}

/// @return 0 or the error number.
int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
      noteProgress();
    } else if (errno == EAGAIN) {
      waitToWrite(descriptor);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace

void prepareOutput() {
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) < 0) {
      // Takes the lowest free descriptor, which is this one. Writing to it fails, as it should.
      ::open("/dev/null", O_RDONLY);
    }
  }
}

Output::Output(const std::optional<std::string>& path)
    : m_name(path ? inQuotes(*path) : "to standard output"), m_descriptor(STDOUT_FILENO) {
  if (path) {
    openFile(*path);
  }
}

Output::~Output() {
  if (m_device >= 0) {
    ::close(m_device);
  }
}

void Output::openFile(const std::string& path) {
  const OutputTarget target = memory::outputTargetOf(path);
  m_descriptor = target.descriptor;
  if (target.descriptor >= 0) {
    return;
  }
  struct stat status = {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  check(exists || errno == ENOENT ? 0 : errno);
  check(exists ? memory::errorOfReplacing(path, status) : 0);
  if (exists && !S_ISREG(status.st_mode)) {
    m_device = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    check(m_device < 0 ? errno : 0);
    m_descriptor = m_device;
    return;
  }
  check(target.error.value());
  m_temporary = std::make_unique<TemporaryFile>(target.file, noteTemporaryFile);
  check(m_temporary->error());
  m_descriptor = m_temporary->descriptor();
  check(exists && ::fchmod(m_descriptor, status.st_mode & 0777U) != 0 ? errno : 0);
}

void Output::check(int error) const {
  if (error != 0) {
    throw Failure("Cannot write " + m_name + ": " + std::generic_category().message(error));
  }
}

void Output::write(std::string_view piece) {
  const int error = m_isWanted ? writeAll(m_descriptor, piece) : 0;
  m_isWanted = m_isWanted && error != EPIPE;
  check(error == EPIPE ? 0 : error);
}

void Output::commit() {
  if (m_temporary) {
    check(m_temporary->moveToTarget());
  }
}

void writeOutput(std::string_view text, const std::optional<std::string>& path) {
  Output output(path);
  output.write(text);
  output.commit();
}

void requireOtherFile(const std::string& output, const std::string& input) {
  std::error_code error;
  if (std::filesystem::equivalent(output, input, error)) {
    throw Failure("--output names " + inQuotes(output) + ", the file that is read");
  }
}

}  // namespace quillon::tools
