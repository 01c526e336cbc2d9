#include "FileCheck.h"

#include <fcntl.h>
#include <quillon/netcdf/File.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "ClassicHeader.h"

namespace quillon::netcdf {
namespace {

void requireRegularFile(const std::string& path) {
  const std::size_t null = path.find('\0');
  if (null != std::string::npos) {
    failReading(path.substr(0, null),
                "its name goes on behind a null character, which no file's does");
  }
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    failReading(path, "there is no such file");
  }
  if (status.type() == std::filesystem::file_type::none) {
    failReading(path, error.message());
  }
  if (std::filesystem::is_directory(status)) {
    failReading(path, "it is a directory");
  }
  if (!std::filesystem::is_regular_file(status)) {
    failReading(path, "it is not a regular file");
  }
}

[[noreturn]] void failBySystem(const std::string& path) {
  failReading(path, std::generic_category().message(errno));
}

int openForReading(const std::string& path) {
  requireRegularFile(path);
  // What has become a pipe meanwhile is not waited for.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    failBySystem(path);
  }
  return descriptor;
}

struct stat factsOf(int descriptor, const std::string& path) {
  struct stat facts {};
  if (fstat(descriptor, &facts) != 0) {  // never true: the descriptor is open
    failBySystem(path);                  // never run: the descriptor is open
  }
  return facts;
}

/// @return the variables of a classic file.
std::vector<ClassicVariable> requireSound(int descriptor, unsigned long bytes,
                                          const std::string& path) {
  if (bytes == 0) {
    failReading(path, "it is empty");
  }
  std::vector<ClassicVariable> variables;
  const std::string damage = findClassicDamage(descriptor, bytes, &variables);
  if (!damage.empty()) {
    failReading(path, damage);
  }
  return variables;
}

}  // namespace

CheckedFile::CheckedFile(std::string path)
    : m_path(std::move(path)), m_descriptor(openForReading(m_path)) {
  try {
    const struct stat facts = factsOf(m_descriptor, m_path);
    m_bytes = static_cast<unsigned long>(facts.st_size);
    m_identity = {facts.st_dev, facts.st_ino};
    m_classicVariables = requireSound(m_descriptor, m_bytes, m_path);
    m_isClassic = isClassicFile(m_descriptor);
  } catch (...) {
    close(m_descriptor);
    throw;
  }
}

CheckedFile::~CheckedFile() { close(m_descriptor); }

const std::string& CheckedFile::path() const { return m_path; }
unsigned long CheckedFile::bytes() const { return m_bytes; }
const FileIdentity& CheckedFile::identity() const { return m_identity; }
std::string CheckedFile::firstBytes(std::size_t count) const {
  std::string bytes(count, '\0');
  const ssize_t read = pread(m_descriptor, bytes.data(), count, 0);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(read, 0)));
  return bytes;
}

bool CheckedFile::isClassic() const { return m_isClassic; }
const std::vector<ClassicVariable>& CheckedFile::classicVariables() const {
  return m_classicVariables;
}
int CheckedFile::descriptor() const { return m_descriptor; }

void CheckedFile::requireUncut() const {
  const auto bytes = static_cast<unsigned long>(factsOf(m_descriptor, m_path).st_size);
  if (bytes < m_bytes) {
    failReading(m_path, "it was cut from " + std::to_string(m_bytes) + " to " +
                            std::to_string(bytes) + " bytes while it was open");
  }
}

void failReading(const std::string& path, const std::string& what) {
  throw Error("Cannot read '" + path + "': " + what);
}

}  // namespace quillon::netcdf
