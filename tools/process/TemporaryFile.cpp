#include "TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <utility>

#include "WorkNotes.h"

namespace quillon::tools {

namespace {

constexpr mode_t NEW_FILES = 0666;  // less what the umask takes

std::string newName(const std::filesystem::path& target) {
  std::random_device random;
  const std::string name = ".quillon-" + std::to_string(random()) + "-" + std::to_string(random());
  return (target.parent_path() / name).string();
}

std::string linkTo(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

int closeFile(int& descriptor) { return ::close(std::exchange(descriptor, -1)) == 0 ? 0 : errno; }

}  // namespace

TemporaryFile::TemporaryFile(std::filesystem::path target) : m_target(std::move(target)) { open(); }

TemporaryFile::~TemporaryFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
  removeName();
}

void TemporaryFile::open() {
  const std::string directory = m_target.parent_path().string();
  m_descriptor = ::open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, NEW_FILES);
  if (m_descriptor >= 0 && ::access(linkTo(m_descriptor).c_str(), F_OK) == 0) {
    return;
  }
  if (m_descriptor >= 0) {
    closeFile(m_descriptor);  // without /proc it could never get a name
  }
  m_name = newName(m_target);
  noteTemporaryFile(m_name);
  m_descriptor = ::open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILES);
  if (m_descriptor < 0) {
    m_error = errno;
    m_name.clear();
    noteTemporaryFile({});
  }
}

int TemporaryFile::giveName() {
  m_name = newName(m_target);
  noteTemporaryFile(m_name);
  return ::linkat(AT_FDCWD, linkTo(m_descriptor).c_str(), AT_FDCWD, m_name.c_str(),
                  AT_SYMLINK_FOLLOW) == 0
             ? 0
             : errno;
}

void TemporaryFile::removeName() {
  if (!m_name.empty()) {
    ::unlink(m_name.c_str());
    noteTemporaryFile({});
  }
}

int TemporaryFile::moveToTarget() {
  const int nameError = m_name.empty() ? giveName() : 0;
  // Some file systems report a full disk only now.
  const int closeError = closeFile(m_descriptor);
  if (nameError != 0 || closeError != 0) {
    return nameError != 0 ? nameError : closeError;
  }
  // No link can replace a file, a new name can.
  if (std::rename(m_name.c_str(), m_target.c_str()) != 0) {
    return errno;
  }
  m_name.clear();
  noteTemporaryFile({});
  return 0;
}

}  // namespace quillon::tools
