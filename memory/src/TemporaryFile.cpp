#include <fcntl.h>
#include <quillon/memory/TemporaryFile.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <utility>

namespace quillon::memory {

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

TemporaryFile::TemporaryFile(std::filesystem::path target, OnName onName, Naming naming)
    : m_target(std::move(target)), m_onName(std::move(onName)) {
  if (naming == Naming::AtOnce || !openNameless(m_target.parent_path().string())) {
    openNamed();
  }
}

TemporaryFile::~TemporaryFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
  removeName();
}

bool TemporaryFile::openNameless(const std::string& directory) {
  m_descriptor = ::open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, NEW_FILES);
  // never false: the system of the tests has /proc
  if (m_descriptor >= 0 && ::access(linkTo(m_descriptor).c_str(), F_OK) == 0) {
    return true;
  }
  // never true: the system of the tests has /proc
  if (m_descriptor >= 0) {
    closeFile(m_descriptor);  // never run: for systems without /proc, where it could get no name
  }
  return false;
}

void TemporaryFile::openNamed() {
  setPath(newName(m_target));
  m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILES);
  if (m_descriptor < 0) {
    m_error = errno;
    setPath({});
  }
}

void TemporaryFile::setPath(std::string path) {
  m_path = std::move(path);
  if (m_onName) {
    m_onName(m_path);
  }
}

int TemporaryFile::giveName() {
  setPath(newName(m_target));
  return ::linkat(AT_FDCWD, linkTo(m_descriptor).c_str(), AT_FDCWD, m_path.c_str(),
                  AT_SYMLINK_FOLLOW) == 0
             ? 0
             : errno;
}

void TemporaryFile::removeName() {
  if (!m_path.empty()) {
    ::unlink(m_path.c_str());
    setPath({});
  }
}

int TemporaryFile::moveToTarget() {
  const int nameError = m_path.empty() ? giveName() : 0;
  // Some file systems report a full disk only now.
  const int closeError = closeFile(m_descriptor);
  if (nameError != 0 || closeError != 0) {
    return nameError != 0 ? nameError : closeError;
  }
  // No link can replace a file, a new name can.
  if (std::rename(m_path.c_str(), m_target.c_str()) != 0) {
    return errno;
  }
  setPath({});
  return 0;
}

}  // namespace quillon::memory
