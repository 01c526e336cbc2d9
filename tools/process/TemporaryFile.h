#pragma once

#include <filesystem>
#include <string>

namespace quillon::tools {

/// A file in the making, which is either moved to its place or leaves nothing behind. Where the
/// file system can do that, it has no name until then; else it is noted as temporary, so that
/// somebody removes it when this process cannot.
class TemporaryFile {
 public:
  /// Makes it in the directory of `target`, with the permissions of new files. See error().
  explicit TemporaryFile(std::filesystem::path target);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Why there is none; 0 where there is one.
  int error() const { return m_error; }

  /// To be written to; -1 when there is none.
  int descriptor() const { return m_descriptor; }

  /// Puts the file where it belongs, in place of what was there, and closes it.
  /// @return 0 or the error number.
  int moveToTarget();

 private:
  void open();
  int giveName();
  void removeName();

  std::filesystem::path m_target;
  std::string m_name;
  int m_descriptor = -1;
  int m_error = 0;
};

}  // namespace quillon::tools
