// The law: any file at all is read, or refused with an Error that names it, in memory that is in
// proportion to what the file really holds, whatever it claims.

#include <object_model/TupleX.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/netcdf/File.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "Law.h"

namespace quillon::fuzz {
namespace {

// What the libraries below take for themselves, and what the sanitizers keep of freed memory.
constexpr long MOST_KILOBYTES_MORE = 384L << 10U;

constexpr unsigned long VALUES_IN_ORDER = 2000;
constexpr std::size_t WINDOW_BYTES = 4096;

/// A file in memory that has a path.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* bytes, std::size_t size)
      : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)),
        m_path("/proc/self/fd/" + std::to_string(m_descriptor)) {
    if (m_descriptor < 0 || ::write(m_descriptor, bytes, size) != static_cast<ssize_t>(size)) {
      reportBreach("no file in memory can be made");
    }
  }
  ~MemoryFile() { ::close(m_descriptor); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  const std::string& path() const { return m_path; }

 private:
  int m_descriptor;
  std::string m_path;
};

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
    if (std::string(error.what()).rfind("Cannot read '" + path + "': ", 0) != 0) {
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

void read(const std::string& path) {
  netcdf::OpenOptions options;
  options.windowBytes = WINDOW_BYTES;
  options.missingAsNaN = true;
  allowErrorNaming(path, [&] { readAll(path, netcdf::File(path, options).root()); });
}

long mostKilobytesSoFar() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quillon::fuzz;
  const long before = mostKilobytesSoFar();
  const MemoryFile file(bytes, size);
  read(file.path());
  if (mostKilobytesSoFar() - before > MOST_KILOBYTES_MORE) {
    reportBreach("a file of " + std::to_string(size) + " bytes made the process grow by " +
                 std::to_string(mostKilobytesSoFar() - before) + " kB");
  }
  return 0;
}
