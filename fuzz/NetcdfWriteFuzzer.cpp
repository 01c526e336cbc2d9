// The law: a dictionary is written and reads back the same, or is refused with an Error that names
// the file and leaves nothing.

#include <quillon/memory/TypedArray.h>
#include <quillon/netcdf/Write.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "AnyDictionary.h"
#include "Input.h"
#include "KeptMemory.h"
#include "Law.h"
#include "netcdf/ReadBack.h"
#include "support/ScratchDirectory.h"

namespace quillon::fuzz {
namespace {

using memory::Axis;
using memory::Dictionary;

/// @return whether it was written.
bool writes(const Dictionary& dictionary, const std::string& path,
            const netcdf::WriteOptions& options) {
  try {
    netcdf::write(dictionary, path, options);
    return true;
  } catch (const netcdf::Error& error) {
    if (std::string(error.what()).rfind("Cannot write '" + path + "': ", 0) != 0) {
      reportBreach(std::string("an error does not name the file: ") + error.what());
    }
    return false;
  }
}

/// The law would be kept by refusing everything as well.
bool requireWritesOfSoundDictionary() {
  const test::ScratchDirectory directory;
  Dictionary dictionary("sound");
  dictionary.add(memory::IntArray("a", {Axis("x", 2)}, {1, 2}));
  if (!writes(dictionary, directory.path("a.nc"), {})) {
    reportBreach("nothing is written");
  }
  return true;
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quillon;
  using namespace quillon::fuzz;
  [[maybe_unused]] static const bool keepsMemory = keepMemoryOfFiles();
  [[maybe_unused]] static const bool writesSound = requireWritesOfSoundDictionary();
  Input input(bytes, size);
  const test::ScratchDirectory directory;
  const std::string path = directory.path("a.nc");
  const netcdf::WriteOptions options{static_cast<int>(input.below(3)), input.oneIn(2)};
  const Dictionary dictionary = AnyDictionary(input).make("root", 2);
  if (writes(dictionary, path, options)) {
    requireEqual(netcdf::differencesReadBack(dictionary, path), std::string());
  } else if (!directory.entries().empty()) {
    reportBreach("something is left of a file that cannot be written");
  }
  return 0;
}
