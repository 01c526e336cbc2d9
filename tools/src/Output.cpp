#include "Output.h"

#include <fcntl.h>
#include <quillon/memory/Wording.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Failure.h"

namespace quillon::tools {

using memory::inQuotes;

namespace {

Failure cannotWrite(const std::string& what, int error) {
  return Failure{"Cannot write " + what + ": " + std::generic_category().message(error)};
}

/// @return 0 or the error number.
int writeAll(int descriptor, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
    if (written > 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

int writeAndClose(int descriptor, const std::string& text) {
  const int writeError = writeAll(descriptor, text);
  // Some file systems report a full disk only now.
  const int closeError = ::close(descriptor) == 0 ? 0 : errno;
  return writeError != 0 ? writeError : closeError;
}

void writeInPlace(const std::string& text, const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) {
    throw cannotWrite(inQuotes(path), errno);
  }
  if (const int error = writeAndClose(descriptor, text); error != 0) {
    throw cannotWrite(inQuotes(path), error);
  }
}

mode_t modeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// A file without a known name yet beside its final place; removed again unless it gets there.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& target)
      : m_name((target.parent_path() / ".quillon-XXXXXX").string()),
        m_descriptor(::mkstemp(m_name.data())),
        m_error(m_descriptor < 0 ? errno : 0) {}
  ~TemporaryFile() {
    if (m_descriptor >= 0) {
      ::unlink(m_name.c_str());
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// @return 0 or the error number.
  int moveTo(const std::filesystem::path& target, const std::string& text, mode_t mode) {
    if (m_error != 0) {
      return m_error;
    }
    const int modeError = ::fchmod(m_descriptor, mode) == 0 ? 0 : errno;
    const int writeError = writeAndClose(m_descriptor, text);
    if (modeError != 0 || writeError != 0) {
      return modeError != 0 ? modeError : writeError;
    }
    if (std::rename(m_name.c_str(), target.c_str()) != 0) {
      return errno;
    }
    m_descriptor = -1;
    return 0;
  }

 private:
  std::string m_name;
  int m_descriptor;
  int m_error;
};

}  // namespace

void prepareOutput() {
  std::signal(SIGXFSZ, SIG_IGN);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) < 0) {
      // Takes the lowest free descriptor, which is this one. Writing to it fails, as it should.
      ::open("/dev/null", O_RDONLY);
    }
  }
}

void writeToStandardOutput(const std::string& text) {
  if (const int error = writeAll(STDOUT_FILENO, text); error != 0) {
    throw cannotWrite("to standard output", error);
  }
}

void writeToFile(const std::string& text, const std::string& path) {
  struct stat status = {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) {
    throw cannotWrite(inQuotes(path), errno);
  }
  if (exists && (S_ISDIR(status.st_mode) || ::access(path.c_str(), W_OK) != 0)) {
    throw cannotWrite(inQuotes(path), S_ISDIR(status.st_mode) ? EISDIR : errno);
  }
  if (exists && !S_ISREG(status.st_mode)) {
    writeInPlace(text, path);
    return;
  }
  std::error_code error;
  // The file behind a symbolic link is replaced, not the link.
  const std::filesystem::path target =
      exists ? std::filesystem::canonical(path, error) : std::filesystem::path(path);
  const mode_t mode = exists ? status.st_mode & 0777U : modeOfNewFiles();
  const int failed = error ? error.value() : TemporaryFile(target).moveTo(target, text, mode);
  if (failed != 0) {
    throw cannotWrite(inQuotes(path), failed);
  }
}

void requireOtherFile(const std::string& output, const std::string& input) {
  std::error_code error;
  if (std::filesystem::equivalent(output, input, error)) {
    throw Failure("--output names " + inQuotes(output) + ", the file that is read");
  }
}

}  // namespace quillon::tools
