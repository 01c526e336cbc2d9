#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace quillon::test {

/// A directory of its own for one test, removed with all that is in it.
class ScratchDirectory {
 public:
  ScratchDirectory() : m_path(std::filesystem::temp_directory_path() / "quillon-XXXXXX") {
    if (::mkdtemp(m_path.data()) == nullptr) {
      throw std::runtime_error("no scratch directory");
    }
  }
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  /// Of what is called `name` in it; of the directory itself without one.
  std::string path(const std::string& name = {}) const {
    return (std::filesystem::path(m_path) / name).string();
  }

  /// The names of all files in the directory, sorted.
  std::vector<std::string> entries() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string m_path;
};

}  // namespace quillon::test
