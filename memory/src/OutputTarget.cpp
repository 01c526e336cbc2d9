#include <quillon/memory/OutputTarget.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>

namespace quillon::memory {

namespace fs = std::filesystem;

namespace {

constexpr int MOST_LINKS = 40;  // as many as the system follows

/// The number of one of this process's descriptors; -1 when the name is that of something else.
int descriptorOf(const fs::path& directory, const std::string& name) {
  std::error_code ignored;
  if (directory != fs::canonical("/proc/self/fd", ignored)) {
    return -1;
  }
  int number = -1;
  const char* const end = name.data() + name.size();
  const auto [rest, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && rest == end ? number : -1;
}

}  // namespace

OutputTarget outputTargetOf(const std::string& path) {
  OutputTarget target;
  target.file = path;
  if (path.empty()) {
    target.error = std::make_error_code(std::errc::no_such_file_or_directory);
    return target;
  }
  for (int links = 0; links <= MOST_LINKS; ++links) {
    const fs::path directory = fs::canonical(fs::absolute(target.file).parent_path(), target.error);
    if (target.error) {
      return target;
    }
    target.file = directory / target.file.filename();
    target.descriptor = descriptorOf(directory, target.file.filename().string());
    std::error_code notThere;
    if (target.descriptor >= 0 || !fs::is_symlink(fs::symlink_status(target.file, notThere))) {
      return target;
    }
    target.file = directory / fs::read_symlink(target.file, target.error);
  }
  target.error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
  return target;
}

int errorOfReplacing(const std::string& path, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) {
    return EISDIR;
  }
  return ::access(path.c_str(), W_OK) == 0 ? 0 : errno;
}

}  // namespace quillon::memory
