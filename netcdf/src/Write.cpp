#include <quillon/memory/OutputTarget.h>
#include <quillon/memory/TemporaryFile.h>
#include <quillon/netcdf/Write.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "LibraryPath.h"
#include "WriteFile.h"
#include "WritePlan.h"
#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

using memory::TemporaryFile;

constexpr int MOST_DEFLATE = 9;

void requireNoError(int error) {
  if (error != 0) {
    throw Refusal(std::generic_category().message(error));
  }
}

// never false: only a failing disk lets its callers' calls fail
int errorOf(int result) { return result == 0 ? 0 : errno; }

void requireLevel(int deflate) {
  if (deflate < 0 || deflate > MOST_DEFLATE) {
    throw Refusal("the level of compression must be 0 to 9, not " + std::to_string(deflate));
  }
}

/// The file that is to be written, behind all links.
struct Target {
  std::filesystem::path file;
  mode_t permissions = 0;
  bool exists = false;
};

void requireReplaceable(const std::string& path, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) {
    throw Refusal("it is a directory");
  }
  if (!S_ISREG(status.st_mode)) {
    throw Refusal("it is not a regular file");
  }
  requireNoError(memory::errorOfReplacing(path, status));
}

void requirePath(const std::string& path) {
  if (path.empty()) {
    throw Refusal("there is no file of no name");
  }
  if (path.find('\0') != std::string::npos) {
    throw Refusal("its name goes on behind a null character, which no file's does");
  }
  const std::string fault = faultOfPath(path);
  if (!fault.empty()) {
    throw Refusal(fault);
  }
}

Target targetOf(const std::string& path) {
  requirePath(path);
  const memory::OutputTarget target = memory::outputTargetOf(path);
  if (target.descriptor >= 0) {
    throw Refusal("it is not a regular file");
  }
  struct stat status = {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  requireNoError(exists || errno == ENOENT ? 0 : errno);
  if (exists) {
    requireReplaceable(path, status);
  }
  requireNoError(target.error.value());
  return {target.file, status.st_mode & 0777U, exists};
}

void writeTo(const Target& target, const Plan& plan, const WriteOptions& options) {
  TemporaryFile temporary(target.file, {}, TemporaryFile::Naming::AtOnce);
  requireNoError(temporary.error());
  NewFile file(libraryPath(temporary.path()), temporary.descriptor(), plan);
  file.define(options);
  file.putValues();
  file.close();
  requireNoError(target.exists ? errorOf(::fchmod(temporary.descriptor(), target.permissions)) : 0);
  requireNoError(errorOf(::fsync(temporary.descriptor())));
  requireNoError(temporary.moveToTarget());
}

}  // namespace

void write(const object_model::Dictionary& dictionary, const std::string& path,
           const WriteOptions& options) {
  try {
    requireLevel(options.deflate);
    const Target target = targetOf(path);
    writeTo(target, planOf(dictionary), options);
  } catch (const Refusal& refusal) {
    const std::string name = path.substr(0, path.find('\0'));
    throw Error("Cannot write '" + name + "': " + refusal.what());
  }
}

}  // namespace quillon::netcdf
