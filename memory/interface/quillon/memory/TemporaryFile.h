/// @file
/// Files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace quillon::memory {

/// A file in the making, which is either moved to its place or leaves nothing behind.
///
/// Ownership: owns its descriptor and, until it is moved, the file. Threads: one at a time.
class TemporaryFile {
 public:
  /// Told the path of the file as soon as it has one, so that somebody else can remove it when this
  /// process cannot, and an empty text when there is nothing to remove any more.
  using OnName = std::function<void(const std::string& path)>;

  /// When the file gets a name of its own.
  enum class Naming {
    WhenMoved,  ///< as late as the file system can do that: a crash before leaves nothing
    AtOnce,     ///< at the start, for whoever opens it by its path()
  };

  /// Makes it in the directory of `target`, with the permissions of new files. See error().
  explicit TemporaryFile(std::filesystem::path target, OnName onName = {},
                         Naming naming = Naming::WhenMoved);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Why there is none, as an error number; 0 where there is one.
  [[nodiscard]] int error() const { return m_error; }

  /// To be written to; -1 when there is none.
  int descriptor() const { return m_descriptor; }

  /// Where it is as long as it is in the making; empty while it has no name.
  const std::string& path() const { return m_path; }

  /// Puts the file where it belongs, in place of what was there, and closes it.
  /// @return 0 or the error number.
  [[nodiscard]] int moveToTarget();

 private:
  bool openNameless(const std::string& directory);
  void openNamed();
  void setPath(std::string path);
  int giveName();
  void removeName();

  std::filesystem::path m_target;
  OnName m_onName;
  std::string m_path;
  int m_descriptor = -1;
  int m_error = 0;
};

}  // namespace quillon::memory
