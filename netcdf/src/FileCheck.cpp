#include "FileCheck.h"

#include <quillon/netcdf/File.h>

#include <filesystem>
#include <system_error>

#include "ClassicHeader.h"
#include "HeapDamage.h"

namespace quillon::netcdf {
namespace {

void requireRegularFile(const std::string& path) {
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

unsigned long sizeOf(const std::string& path) {
  std::error_code error;
  const unsigned long bytes = std::filesystem::file_size(path, error);
  if (error) {
    failReading(path, error.message());
  }
  if (bytes == 0) {
    failReading(path, "it is empty");
  }
  return bytes;
}

}  // namespace

FileFacts checkFile(const std::string& path) {
  requireRegularFile(path);
  const FileFacts facts{sizeOf(path), isClassicFile(path)};
  const std::string damage =
      facts.isClassic ? findClassicDamage(path, facts.bytes) : findHeapDamage(path, facts.bytes);
  if (!damage.empty()) {
    failReading(path, damage);
  }
  return facts;
}

void failReading(const std::string& path, const std::string& what) {
  throw Error("Cannot read '" + path + "': " + what);
}

}  // namespace quillon::netcdf
