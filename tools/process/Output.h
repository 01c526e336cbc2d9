#pragma once

#include <quillon/memory/TemporaryFile.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::tools {

/// To be called once, before anything is opened. Makes sure that the descriptors 0 to 2 are taken,
/// so that no file that is opened later becomes standard output or standard error by accident, and
/// that a limit on the size of files and a pipe without a reader show as a failed write, not as the
/// signal that ends a process.
void prepareOutput();

/// Where a verb's result goes, piece by piece. A regular file appears whole or not at all, and
/// keeps its previous content unless commit() is reached. Standard output, whichever way it is
/// named, other open descriptors, devices and pipes are continued as they are.
///
/// Small pieces cost a system call each. A pipe whose reader has left is no failure: nobody wants
/// the rest.
class Output {
 public:
  /// @param path the file; standard output when there is none.
  /// @throws Failure that names the file and the reason, as do all functions.
  explicit Output(const std::optional<std::string>& path);
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Appends all of `piece`.
  void write(std::string_view piece);

  /// Where pieces go, for whoever asks whether that is a terminal.
  int descriptor() const { return m_descriptor; }

  /// Whether there is anybody left to read what is written.
  bool isWanted() const { return m_isWanted; }

  /// Ends the writing: what was written is there, whole.
  void commit();

 private:
  void openFile(const std::string& path);
  void check(int error) const;

  std::string m_name;     ///< as sentences call it
  int m_descriptor = -1;  ///< where pieces go
  int m_device = -1;      ///< that descriptor, where it is to be closed
  std::unique_ptr<memory::TemporaryFile> m_temporary;  ///< or what it belongs to
  bool m_isWanted = true;
};

/// Writes `text` to the file at `path`, or to standard output, and commits it.
void writeOutput(std::string_view text, const std::optional<std::string>& path = {});

/// @throws Failure when `output` is the file `input` itself.
void requireOtherFile(const std::string& output, const std::string& input);

}  // namespace quillon::tools
