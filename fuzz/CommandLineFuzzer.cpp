// The law: any command line ends with status 0 or 1 or, in trouble, with status 2 after a sentence
// on standard error and nothing on standard output. All that the tool says on standard error stands
// in lines that begin with its name and are fit for a terminal.
//
// The input is a command line, one argument a line.

#include <fcntl.h>
#include <quillon/memory/Wording.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "Law.h"

namespace quillon::fuzz {
namespace {

namespace fs = std::filesystem;

/// A new directory with the two files that the tool is to read, in which the process is for as long
/// as the object lives. Arguments without a slash do not lead out of it.
class Workplace {
 public:
  Workplace()
      : m_before(open(".", O_RDONLY | O_CLOEXEC | O_DIRECTORY)),
        m_directory(fs::temp_directory_path() / "quillon-fuzz-XXXXXX") {
    if (m_before < 0 || mkdtemp(m_directory.data()) == nullptr) {
      reportBreach("no directory for the tool can be made");
    }
    fs::current_path(m_directory);
    fs::copy_file(QUILLON_FUZZ_CORPUS "/netcdf_classic/classic-records.nc", "a.nc");
    fs::copy_file(QUILLON_FUZZ_CORPUS "/netcdf_classic/64-bit-data.nc", "b.nc");
  }
  ~Workplace() {
    if (fchdir(m_before) != 0) {
      reportBreach("there is no way back");
    }
    close(m_before);
    fs::remove_all(m_directory);
  }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

 private:
  int m_before;
  std::string m_directory;
};

/// Keeps standard output for itself for good; the fuzzer speaks on standard error.
class StandardOutput {
 public:
  StandardOutput() : m_kept(memfd_create("output", MFD_CLOEXEC)) {
    if (dup2(m_kept, STDOUT_FILENO) < 0) {
      reportBreach("standard output cannot be kept");
    }
  }
  ~StandardOutput() { close(m_kept); }
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  /// How many bytes were written since the last call.
  off_t take() const { return lseek(m_kept, 0, SEEK_CUR) - lseek(m_kept, 0, SEEK_SET); }

 private:
  int m_kept;
};

/// Keeps what is written to `std::cerr` for as long as the object lives.
class StandardError {
 public:
  StandardError() : m_before(std::cerr.rdbuf(m_kept.rdbuf())) {}
  ~StandardError() { std::cerr.rdbuf(m_before); }
  StandardError(const StandardError&) = delete;
  StandardError& operator=(const StandardError&) = delete;

  std::string text() const { return m_kept.str(); }

 private:
  std::ostringstream m_kept;
  std::streambuf* m_before;
};

struct Outcome {
  int status;
  bool hasOutput;
  std::string error;
};

Outcome run(const std::vector<std::string>& arguments) {
  static const StandardOutput output;
  std::vector<const char*> words{"quillon"};
  for (const std::string& argument : arguments) {
    words.push_back(argument.c_str());
  }
  const Workplace workplace;
  const StandardError error;
  const int status = tools::runCommandLine(static_cast<int>(words.size()), words.data());
  return {status, output.take() > 0, error.text()};
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// Whether nothing in the line would be escaped but the backslashes, which escapes are made of.
bool isFitForTerminal(std::string line) {
  line.erase(std::remove(line.begin(), line.end(), '\\'), line.end());
  return memory::escaped(line) == line;
}

void requireLawful(const Outcome& outcome) {
  const auto require = [&](bool holds, const std::string& rule) {
    if (!holds) {
      reportBreach(rule + ": status " + std::to_string(outcome.status) + ", " + outcome.error);
    }
  };
  require(outcome.status >= 0 && outcome.status <= 2, "the status is 0, 1 or 2");
  const std::vector<std::string> lines = linesOf(outcome.error);
  for (const std::string& line : lines) {
    require(line.rfind("quillon: ", 0) == 0 && line.size() > 9, "the tool says who speaks");
    require(isFitForTerminal(line), "a line is fit for a terminal");
  }
  if (outcome.status == 2) {
    require(!lines.empty() && outcome.error.back() == '\n', "trouble is put in words");
    require(!outcome.hasOutput, "trouble goes without output");
  }
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::string text(bytes, bytes + size);
  std::replace(text.begin(), text.end(), '/', '|');
  quillon::fuzz::requireLawful(quillon::fuzz::run(quillon::fuzz::linesOf(text)));
  return 0;
}
