#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netcdf.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

namespace fs = std::filesystem;

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int VARIABLES = 4;
constexpr std::size_t VALUES = std::size_t{3} << 20U;  // of each, of 4 bytes
constexpr unsigned long ENOUGH_READ = 4UL << 20U;      // bytes: more than all but values take

void require(int status) {
  if (status != NC_NOERR) {
    throw std::runtime_error(nc_strerror(status));
  }
}

/// How a file is stored.
struct Storage {
  const char* name;
  int format;
  int chunked;
};

void PrintTo(const Storage& storage, std::ostream* stream) { *stream << storage.name; }

/// A file with values on the disk, so that there is something to cut off.
void makeFile(const std::string& path, const Storage& storage) {
  int file = 0;
  int dimension = 0;
  int variables[VARIABLES] = {};
  require(nc_create(path.c_str(), storage.format, &file));
  require(nc_def_dim(file, "x", VALUES, &dimension));
  const std::size_t chunk = VALUES / 16;
  for (int k = 0; k < VARIABLES; ++k) {
    const std::string name = "v" + std::to_string(k);
    require(nc_def_var(file, name.c_str(), NC_INT, 1, &dimension, &variables[k]));
    if (storage.format == NC_NETCDF4) {
      require(nc_def_var_chunking(file, variables[k], storage.chunked, &chunk));
    }
  }
  require(nc_enddef(file));
  const std::vector<int> values(VALUES, 0x51C0FFEE);
  for (const int variable : variables) {
    require(nc_put_var_int(file, variable, values.data()));
  }
  require(nc_close(file));
}

std::vector<std::string> childrenOf(const std::string& process) {
  std::vector<std::string> children;
  std::error_code ended;
  for (const auto& thread : fs::directory_iterator("/proc/" + process + "/task", ended)) {
    std::ifstream list(thread.path() / "children");
    for (std::string child; list >> child;) {
      children.push_back(child);
    }
  }
  return children;
}

/// How many bytes a process has read in all.
unsigned long bytesReadBy(const std::string& process) {
  std::ifstream counts("/proc/" + process + "/io");
  std::string name;
  unsigned long bytes = 0;
  counts >> name >> bytes;
  return bytes;
}

/// Cuts a file as soon as the tool, in the process that does the work for it, has read some of the
/// values.
class Cutter {
 public:
  explicit Cutter(std::string path) : m_path(std::move(path)), m_thread([this] { watch(); }) {}
  ~Cutter() {
    m_isOver = true;
    m_thread.join();
  }
  Cutter(const Cutter&) = delete;
  Cutter& operator=(const Cutter&) = delete;

 private:
  void watch() const {
    while (!m_isOver) {
      for (const std::string& tool : childrenOf("self")) {
        for (const std::string& worker : childrenOf(tool)) {
          if (bytesReadBy(worker) > ENOUGH_READ) {
            fs::resize_file(m_path, fs::file_size(m_path) / 8);
            return;
          }
        }
      }
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
  }

  std::string m_path;
  std::atomic<bool> m_isOver{false};
  std::thread m_thread;
};

class CutFileTest : public ::testing::TestWithParam<Storage> {
 protected:
  /// Runs the tool on a file that is cut while the tool reads it. FILE stands for its name.
  Outcome outcomeOf(std::vector<std::string> arguments) {
    makeFile(m_path, GetParam());
    m_bytes = fs::file_size(m_path);
    for (std::string& argument : arguments) {
      argument = argument == "FILE" ? m_path : argument;
    }
    const Cutter cutter(m_path);
    return runTool(arguments);
  }

  /// The reason, which can only be given by who found the file whole before.
  std::string reason() const {
    return "Cannot read '" + m_path + "': it was cut from " + std::to_string(m_bytes) + " to " +
           std::to_string(m_bytes / 8) + " bytes while it was open";
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("cut.nc");
  unsigned long m_bytes = 0;
};

TEST_P(CutFileTest, IsTroubleOfEachVariableThatIsNotReadYet) {
  const Outcome outcome = outcomeOf({"diff", "FILE", "FILE"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.out, EndsWith("/v3: not compared: " + reason() + "\n"));
  EXPECT_THAT(outcome.err, StartsWith("quillon: Not compared: "));
  EXPECT_THAT(outcome.err, HasSubstr(reason()));
}

TEST_P(CutFileTest, EndsTheLibrarysComparison) {
  const Outcome outcome = outcomeOf({"diff", "FILE", "FILE", "--contract"});
  EXPECT_EQ(outcome, failed(reason()));
}

TEST_P(CutFileTest, LeavesNoTableBehind) {
  const std::string table = m_scratch.path("table");
  const Outcome outcome = outcomeOf({"table", "FILE", "--max-rows", "0", "--output", table});
  EXPECT_EQ(outcome, failed(reason()));
  EXPECT_THAT(m_scratch.entries(), ::testing::ElementsAre("cut.nc"));
}

INSTANTIATE_TEST_SUITE_P(Storages, CutFileTest,
                         ::testing::Values(Storage{"Classic", NC_64BIT_OFFSET, 0},
                                           Storage{"InOnePiece", NC_NETCDF4, NC_CONTIGUOUS},
                                           Storage{"InChunks", NC_NETCDF4, NC_CHUNKED}),
                         [](const auto& storage) { return storage.param.name; });

}  // namespace
}  // namespace quillon::tools::test
