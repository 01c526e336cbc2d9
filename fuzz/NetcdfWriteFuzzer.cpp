// The law: a dictionary is written and reads back the same, or is refused with an Error that names
// the file and leaves nothing.

#include <quillon/memory/TimeArray.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/netcdf/Write.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Input.h"
#include "KeptMemory.h"
#include "Law.h"
#include "netcdf/ReadBack.h"
#include "support/ScratchDirectory.h"

namespace quillon::fuzz {
namespace {

using memory::Axis;
using memory::Dictionary;

// Attributes that readers act on, and what names are made of, are for other tests.
const std::vector<std::string> NAMES = {"a", "b", "x", "y", "a b", "\xC3\xA4", "_1"};

/// Mostly a name that every file takes.
std::string nameOf(Input& input) {
  return input.oneIn(32) ? input.text(12) : NAMES[input.below(NAMES.size())];
}

/// The sizes of a group's axes: mostly one for each name.
using Sizes = std::map<std::string, unsigned long>;

std::vector<Axis> axesOf(Input& input, Sizes& sizes) {
  std::vector<Axis> axes;
  for (unsigned long k = input.below(4); k > 0; --k) {
    std::string name = nameOf(input);
    name = name.empty() ? "x" : name;  // one without a name has one in the file
    const unsigned long size = input.below(4);
    const unsigned long agreed = sizes.emplace(name, size).first->second;
    axes.emplace_back(name, input.oneIn(64) ? size : agreed);
  }
  return axes;
}

template <class T>
T valueOf(Input& input) {
  if constexpr (std::is_same_v<T, std::string>) {
    return input.text(8);
  } else if constexpr (std::is_same_v<T, bool>) {
    return input.oneIn(2);
  } else {
    return input.bits<T>();
  }
}

template <class T>
std::vector<T> valuesOf(Input& input, unsigned long count) {
  std::vector<T> values;
  for (; count > 0; --count) {
    values.push_back(valueOf<T>(input));
  }
  return values;
}

memory::AttributeValue attributeOf(Input& input) {
  const unsigned long count = input.below(4);
  switch (input.below(5)) {
    case 0:
      return input.text(8);
    case 1:
      return valuesOf<short>(input, count);
    case 2:
      return valuesOf<unsigned long>(input, count);
    case 3:
      return valuesOf<float>(input, count);
    default:
      return valuesOf<std::string>(input, 2 + count);
  }
}

template <class Object>
void addRemarks(Input& input, Object& object) {
  for (unsigned long k = input.below(3); k > 0; --k) {
    object.setAttribute(nameOf(input), attributeOf(input));
  }
}

template <class T>
void addArray(Input& input, const std::string& name, std::vector<Axis> axes, Dictionary& to) {
  const unsigned long count = netcdf::countOf(axes);
  memory::TypedArray<T> array(name, std::move(axes), valuesOf<T>(input, count));
  addRemarks(input, array);
  to.add(std::move(array));
}

void addTimes(Input& input, const std::string& name, std::vector<Axis> axes, Dictionary& to) {
  const unsigned long count = netcdf::countOf(axes);
  to.add(memory::TimeArray(name, std::move(axes), valuesOf<long>(input, count),
                           static_cast<memory::Calendar>(input.below(5))));
}

void addAnyArray(Input& input, const std::string& name, std::vector<Axis> axes, Dictionary& to) {
  using Add = void (*)(Input&, const std::string&, std::vector<Axis>, Dictionary&);
  const std::vector<Add> kinds = {addArray<double>,        addArray<float>,
                                  addArray<short>,         addArray<std::string>,
                                  addArray<long>,          addArray<unsigned char>,
                                  addArray<unsigned long>, addArray<unsigned short>,
                                  addArray<bool>,          addTimes};
  kinds[input.below(kinds.size())](input, name, std::move(axes), to);
}

/// Only numbers and texts can be had back: such an array is to be refused.
void addRefused(const std::string& name, Dictionary& to) {
  to.add(memory::ComplexArray(name, {}, {{1, 2}}));
}

Dictionary dictionaryOf(Input& input, const std::string& name, int depth) {
  Dictionary dictionary(name, input.oneIn(4) ? "title" : "");
  addRemarks(input, dictionary);
  Sizes sizes;
  for (unsigned long k = input.below(6); k > 0; --k) {
    const std::string entry = nameOf(input);
    if (dictionary.contains(entry)) {
      continue;
    }
    if (depth > 0 && input.oneIn(4)) {
      dictionary.add(dictionaryOf(input, entry, depth - 1));
    } else if (input.oneIn(64)) {
      addRefused(entry, dictionary);
    } else {
      addAnyArray(input, entry, axesOf(input, sizes), dictionary);
    }
  }
  return dictionary;
}

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
  const Dictionary dictionary = dictionaryOf(input, "root", 2);
  if (writes(dictionary, path, options)) {
    requireEqual(netcdf::differencesReadBack(dictionary, path), std::string());
  } else if (!directory.entries().empty()) {
    reportBreach("something is left of a file that cannot be written");
  }
  return 0;
}
