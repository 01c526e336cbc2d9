#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "ClassicHeader.h"

namespace quillon::netcdf {

/// What tells a file from all others of the system, whatever it is called.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;

  bool operator==(const FileIdentity& other) const {
    // never false: the tests' files are on one device
    return device == other.device && number == other.number;
  }
};

/// A file that is open for reading, checked before the library sees it.
class CheckedFile {
 public:
  /// Refuses a file that is missing, no regular file, empty or visibly damaged. @throws Error
  explicit CheckedFile(std::string path);
  CheckedFile(const CheckedFile&) = delete;
  CheckedFile& operator=(const CheckedFile&) = delete;
  ~CheckedFile();

  const std::string& path() const;

  /// The file's length when it was opened.
  unsigned long bytes() const;

  const FileIdentity& identity() const;

  /// Its first bytes, at most `count`; empty where they cannot be read.
  std::string firstBytes(std::size_t count) const;

  /// Whether it is of one of the classic formats; otherwise it is for libhdf5.
  bool isClassic() const;

  /// The variables of a classic file, as its header was when it was checked.
  const std::vector<ClassicVariable>& classicVariables() const;

  /// The open file, which stays this object's. What is read through it is where the file's header
  /// says only as long as requireUncut() passes afterwards.
  int descriptor() const;

  /// Refuses a file that has become shorter: the libraries below read zeros past its end.
  /// @throws Error
  void requireUncut() const;

 private:
  std::string m_path;
  int m_descriptor = -1;
  FileIdentity m_identity;
  unsigned long m_bytes = 0;
  bool m_isClassic = false;
  std::vector<ClassicVariable> m_classicVariables;
};

/// @throws Error naming the file; `what` says what is wrong.
[[noreturn]] void failReading(const std::string& path, const std::string& what);

}  // namespace quillon::netcdf
