// The law: any file at all is read, or refused with an Error that names it, in memory that is in
// proportion to what the file really holds, whatever it claims.
//
// What stands in a netCDF-4 file is up to libhdf5, which may crash, loop or take much memory. Such
// a file is first read in a copy of the process; where that does not end well, there is no law.

#include <object_model/TupleX.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/netcdf/File.h>
#include <sanitizer/common_interface_defs.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "InputFile.h"
#include "Law.h"

namespace quillon::fuzz {
namespace {

// What the libraries below take for themselves, and what the sanitizers keep of freed memory.
constexpr long MOST_KILOBYTES_MORE = 384L << 10U;

constexpr unsigned long VALUES_IN_ORDER = 2000;
constexpr rlim_t MOST_SECONDS_IN_A_COPY = 1;

bool isCopy = false;  // of the process, which leaves breaches for the process to find
constexpr std::size_t WINDOW_BYTES = 4096;

void readValue(const memory::ArrayBase& array, const object_model::Tuple& index) {
  switch (array.getElementType()) {
    case object_model::ElementType::Int:
      array.getValueAsInt(index);
      break;
    case object_model::ElementType::UInt:
      array.getValueAsUInt(index);
      break;
    case object_model::ElementType::Double:
      array.getValueAsDouble(index);
      break;
    default:
      array.getValueAsString(index);
  }
}

/// Many values from the first one on, then the last: a netCDF-4 file may rightly claim more values
/// that were never written than can be read in a lifetime.
void readValues(const memory::ArrayBase& array) {
  const unsigned long count = array.numberOfElements();
  object_model::TupleX index(array.size().size());
  const auto readAt = [&](unsigned long element) {
    for (unsigned long k = 0; k < index.size(); ++k) {
      index[k] = element % array.size()[k];
      element /= array.size()[k];
    }
    readValue(array, index);
  };
  for (unsigned long element = 0; element < std::min(count, VALUES_IN_ORDER); ++element) {
    readAt(element);
  }
  if (count > 0) {
    readAt(count - 1);
  }
}

template <class Action>
void allowErrorNaming(const std::string& path, const Action& action) {
  try {
    action();
  } catch (const netcdf::Error& error) {
    if (!isCopy && std::string(error.what()).rfind("Cannot read '" + path + "': ", 0) != 0) {
      reportBreach(std::string("an error does not name the file: ") + error.what());
    }
  }
}

void readAll(const std::string& path, const memory::Dictionary& dictionary) {
  for (int k = 0; static_cast<unsigned long>(k) < dictionary.getNumOfData(); ++k) {
    const object_model::Data& entry = *dictionary.data(k);
    if (entry.isDictionary()) {
      readAll(path, dynamic_cast<const memory::Dictionary&>(entry));
    } else {
      allowErrorNaming(path, [&] { readValues(dynamic_cast<const memory::ArrayBase&>(entry)); });
    }
  }
}

/// @return how many bytes of values the file has given.
unsigned long read(const std::string& path) {
  unsigned long valueBytes = 0;
  netcdf::OpenOptions options;
  options.windowBytes = WINDOW_BYTES;
  options.onRead = [&](unsigned long bytes) { valueBytes += bytes; };
  allowErrorNaming(path, [&] { readAll(path, netcdf::File(path, options).root()); });
  return valueBytes;
}

/// The law would be kept by refusing every file as well.
void requireValuesOf(const char* soundFile) {
  std::ifstream in(soundFile, std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(in), {}};
  const std::vector<std::uint8_t> bytes(content.begin(), content.end());
  const InputFile file(bytes.data(), bytes.size());
  if (read(file.path()) == 0) {
    reportBreach(std::string("nothing is read of ") + soundFile);
  }
}

bool requireValuesOfSoundFiles() {
  requireValuesOf(QUILLON_FUZZ_CORPUS "/netcdf_classic/classic-records.nc");
  requireValuesOf(QUILLON_FUZZ_CORPUS "/netcdf_4/groups-and-strings.nc");
  return true;
}

long mostKilobytesSoFar() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

bool isClassic(const std::uint8_t* bytes, std::size_t size) {
  return size >= 3 && std::equal(bytes, bytes + 3, "CDF");
}

/// Lets a copy that ends early do so at once: its report takes longer than all of the reading, and
/// an input that is kept for it looks like a finding.
void endInSilence() {
  for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) {
    signal(number, SIG_DFL);
  }
  __sanitizer_set_death_callback([] { _exit(1); });
}

/// What happens in the copy. @return whether it used no more memory than it may.
bool readsInProportion(const std::string& path) {
  const rlimit time{MOST_SECONDS_IN_A_COPY, MOST_SECONDS_IN_A_COPY};
  const rlimit noDump{0, 0};
  setrlimit(RLIMIT_CPU, &time);
  setrlimit(RLIMIT_CORE, &noDump);
  const long before = mostKilobytesSoFar();
  isCopy = true;
  try {
    read(path);
  } catch (...) {  // for the process itself to find
  }
  return mostKilobytesSoFar() - before <= MOST_KILOBYTES_MORE;
}

/// Whether a copy of the process comes to the end of the file.
bool libraryReads(const std::string& path) {
  const pid_t copy = fork();
  if (copy < 0) {
    reportBreach("no copy of the process can be made");
  }
  if (copy == 0) {
    endInSilence();
    _exit(readsInProportion(path) ? 0 : 1);
  }
  int status = 0;
  waitpid(copy, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace
}  // namespace quillon::fuzz

// The libraries below leak when they give up on a damaged file. The name is the leak sanitizer's.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libnetcdf.so\nleak:libhdf5"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quillon::fuzz;
  [[maybe_unused]] static const bool readsSoundFiles = requireValuesOfSoundFiles();
  const long before = mostKilobytesSoFar();
  const InputFile file(bytes, size);
  if (!isClassic(bytes, size) && !libraryReads(file.path())) {
    return 0;
  }
  read(file.path());
  if (mostKilobytesSoFar() - before > MOST_KILOBYTES_MORE) {
    reportBreach("a file of " + std::to_string(size) + " bytes made the process grow by " +
                 std::to_string(mostKilobytesSoFar() - before) + " kB");
  }
  return 0;
}
