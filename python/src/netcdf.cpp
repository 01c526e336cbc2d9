// Files.

#include <pybind11/stl.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/TimeUnits.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Values.h>
#include <quillon/netcdf/File.h>
#include <quillon/netcdf/Write.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <map>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <sstream>
#include <utility>

#include "Errors.h"
#include "Module.h"
#include "Numpy.h"
#include "OtherReaders.h"
#include "Ticks.h"

namespace quillon::python {
namespace {

using object_model::Array;

/// A file that its entries read from while it is open. Reads may run side by side as far as it is
/// concerned; closing it waits for them.
class OpenFile final : public Gate {
 public:
  OpenFile(std::string path, std::unique_ptr<netcdf::File> file)
      : m_path(std::move(path)), m_file(std::move(file)) {}

  // Always the others first: whoever waits for them may have to wait for the GIL, too, which nobody
  // needs who has the lock of this file.
  void enter() override {
    auto others = std::make_unique<OthersOut>();
    m_lock.lock_shared();
    if (m_file == nullptr) {
      m_lock.unlock_shared();
      throw netcdf::Error("Cannot read '" + m_path + "': the file is closed");
    }
    passages().push_back(std::move(others));
  }

  void leave() noexcept override {
    m_lock.unlock_shared();
    passages().pop_back();
  }

  /// What the file says about a group. Whoever asks stands in the gate.
  netcdf::GroupFacts facts(const std::string& group) const { return m_file->facts(group); }

  /// Keeps what entries read from, while the file is open.
  void own(std::shared_ptr<const void> part) { m_parts.push_back(std::move(part)); }

  void close() {
    const OthersOut others;
    const std::unique_lock<std::shared_mutex> lock(m_lock);
    m_parts.clear();
    m_file.reset();
  }

  ~OpenFile() override {
    if (m_file != nullptr && Py_IsInitialized() != 0) {
      close();
    }
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

 private:
  /// Those of this thread.
  static std::vector<std::unique_ptr<OthersOut>>& passages() {
    thread_local std::vector<std::unique_ptr<OthersOut>> stack;
    return stack;
  }

  std::string m_path;
  std::unique_ptr<netcdf::File> m_file;
  std::vector<std::shared_ptr<const void>> m_parts;
  std::shared_mutex m_lock;
};

/// Whatever numpy's datetime64[ns] can hold of a calendar that numpy has.
constexpr long MOST_MICROSECONDS = std::numeric_limits<long>::max() / 1000 - 1;
/// 1582-10-15, from which on the standard calendar is numpy's.
constexpr long GREGORIAN = -12219292800000000L;

bool fits(long time, memory::Calendar calendar) {
  return time == memory::MISSING_TIME ||
         (std::abs(time) <= MOST_MICROSECONDS &&
          (calendar == memory::Calendar::ProlepticGregorian || time >= GREGORIAN));
}

/// Where numbers begin that are nanoseconds, in microseconds since 1970; nothing for other numbers.
std::optional<long> originOfNanoseconds(const Array& array, memory::Calendar calendar) {
  const auto units = memory::TimeUnits::parse(array.getUnit(), calendar);
  if (array.getElementType() != object_model::ElementType::Int || !units ||
      units->timeOf(1000L) - units->timeOf(0L) != 1) {
    return {};
  }
  return units->timeOf(0L);
}

/// Makes nanoseconds of the times of an array, which are in microseconds. Those that are stored as
/// nanoseconds stay exact.
void refine(const Array& array, memory::Calendar calendar, const std::vector<unsigned long>& start,
            const std::vector<unsigned long>& extent, std::vector<long>& times) {
  std::vector<long> exact;
  const std::optional<long> origin = originOfNanoseconds(array, calendar);
  if (origin) {
    exact.resize(times.size());
    memory::copyValues(array, start.data(), extent.data(), exact.data());
  }
  for (long& number : exact) {
    number += *origin * 1000;
  }
  for (std::size_t k = 0; k < times.size(); ++k) {
    if (times[k] != memory::MISSING_TIME) {
      times[k] = exact.empty() ? times[k] * 1000 : exact[k];
    }
  }
}

/// The times as nanoseconds, or null where numpy does not have them all.
ArrayPointer nanosecondsOf(const memory::ArrayBase& array, const memory::HasTimes& times,
                           const std::shared_ptr<Gate>& gate) {
  const memory::Calendar calendar = times.calendar();
  if (calendar != memory::Calendar::Standard && calendar != memory::Calendar::ProlepticGregorian) {
    return nullptr;
  }
  const std::vector<unsigned long> extent = reversed(shapeOf(array));
  const std::vector<unsigned long> start(extent.size(), 0);
  std::vector<long> values(array.numberOfElements());
  times.readTimes(start.data(), extent.data(), values.data());
  if (!std::all_of(values.begin(), values.end(), [&](long time) { return fits(time, calendar); })) {
    return nullptr;
  }
  refine(array, calendar, start, extent, values);
  const auto integers = std::make_shared<memory::IntArray>(
      array.getName(), array.getInformation()->axes(), std::move(values));
  ArrayPointer moments = ticksOf(array.getName(), integers, {"ns", 1, true}, gate);
  moments->setDescription(array.getDescription());
  for (const memory::Attribute& attribute : array.attributes()) {
    moments->setAttribute(attribute.name, attribute.value);
  }
  return moments;
}

/// Takes the attribute "coordinates" of the array away: the names of entries that are coordinates.
std::vector<std::string> takeCoordinateNames(memory::ArrayBase& array) {
  std::vector<std::string> names;
  for (const memory::Attribute& attribute : array.attributes()) {
    const auto* const text = std::get_if<std::string>(&attribute.value);
    if (attribute.name == "coordinates" && text != nullptr) {
      std::istringstream words(*text);
      names.assign(std::istream_iterator<std::string>(words), {});
      array.removeAttribute(attribute.name);
    }
  }
  return names;
}

/// The entries of a file behind a gate.
class FileEntries {
 public:
  FileEntries(std::shared_ptr<OpenFile> file, bool decode)
      : m_file(std::move(file)), m_decode(decode) {}

  DictionaryHandle copy(const object_model::Dictionary& group) {
    auto result = std::make_shared<SharedDictionary>(group.getName(), group.getDescription());
    if (const auto* const known = dynamic_cast<const memory::HasAttributes*>(&group)) {
      for (const memory::Attribute& attribute : known->attributes()) {
        result->setAttribute(attribute.name, attribute.value);
      }
    }
    for (const auto& entry : memory::entriesOf(group)) {
      if (entry.data->asArray() != nullptr) {
        result->set(
            {variable(dynamic_cast<const memory::ArrayBase&>(*entry.data), *result), {}, {}});
      } else {
        result->set({nullptr, nullptr, copy(*entry.data->asDictionary())});
      }
    }
    keepKnown(*result);
    result->isReadOnly = true;
    return result;
  }

 private:
  /// An array of a group, which is told of the coordinates that the array names.
  ArrayPointer variable(const memory::ArrayBase& original, SharedDictionary& group) {
    ArrayPointer result = array(original);
    if (m_decode) {
      for (std::string& name : takeCoordinateNames(*result)) {
        group.coordinates.insert(std::move(name));
      }
    }
    return result;
  }

  static void keepKnown(SharedDictionary& group) {
    std::set<std::string> known;
    for (const std::string& name : group.coordinates) {
      if (group.contains(name)) {
        known.insert(name);
      }
    }
    group.coordinates = std::move(known);
  }

  ArrayPointer array(const memory::ArrayBase& original) {
    const auto* const times = dynamic_cast<const memory::HasTimes*>(&original);
    ArrayPointer result;
    if (times != nullptr && m_decode) {
      result = nanosecondsOf(original, *times, m_file);
    }
    if (result == nullptr) {
      // The gate keeps the original from being read when it is gone.
      const ConstArrayPointer borrowed(std::shared_ptr<void>(), &original);
      result = siblingOf(borrowed, original.getName(), m_file);
      // Who makes dates of the numbers has to know it, as from a file.
      if (times != nullptr && m_decode && times->calendar() != memory::Calendar::Standard) {
        result->setAttribute("calendar", memory::nameOf(times->calendar()));
      }
    }
    setCoordinates(original, *result);
    return result;
  }

  /// Those of the original, behind the gate as well. Several arrays share theirs.
  void setCoordinates(const memory::ArrayBase& original, memory::ArrayBase& result) {
    for (unsigned long k = 0; k < original.size().size(); ++k) {
      const auto found =
          std::dynamic_pointer_cast<const memory::ArrayBase>(original.coordinates(k));
      if (found == nullptr) {
        continue;
      }
      ArrayPointer& known = m_coordinates[found.get()];
      if (known == nullptr) {
        m_file->own(found);
        known = array(*found);
      }
      result.setCoordinates(k, known);
    }
  }

  std::shared_ptr<OpenFile> m_file;
  bool m_decode;
  std::map<const memory::ArrayBase*, ArrayPointer> m_coordinates;
};

netcdf::OpenOptions optionsOf(bool decode) {
  netcdf::OpenOptions options;
  options.decode = decode;
  return options;
}

struct FileHandle {
  std::shared_ptr<OpenFile> file;
  DictionaryHandle root;
  std::string title;
  std::vector<std::pair<std::string, std::string>> skipped;
};

/// Opens the file and reads its outline, and its times.
FileHandle open(const std::string& path, bool decode) {
  const py::gil_scoped_release released;
  FileHandle handle;
  const OthersOut others;
  auto file = std::make_unique<netcdf::File>(path, optionsOf(decode));
  handle.title = file->title();
  for (const netcdf::Skipped& entry : file->skipped()) {
    handle.skipped.emplace_back(entry.path, entry.reason);
  }
  netcdf::File& opened = *file;
  handle.file = std::make_shared<OpenFile>(path, std::move(file));
  handle.root = FileEntries(handle.file, decode).copy(opened.root());
  return handle;
}

/// The extents of the chunks of each variable of a group, the slowest dimension first; none for one
/// that is stored in one piece.
std::map<std::string, std::vector<unsigned long>> chunksOf(const FileHandle& handle,
                                                           const std::string& group) {
  const py::gil_scoped_release released;
  const Passage passage(handle.file);
  std::map<std::string, std::vector<unsigned long>> chunks;
  for (const netcdf::VariableFacts& some : handle.file->facts(group).variables) {
    chunks[some.path.substr(some.path.rfind('/') + 1)] = some.chunks;
  }
  return chunks;
}

void save(const SharedDictionary& dictionary, const std::string& path, int deflate) {
  const py::gil_scoped_release released;
  const OthersOut others;
  netcdf::WriteOptions options;
  options.deflate = deflate;
  netcdf::write(dictionary, path, options);
}

}  // namespace

void bindNetcdf(py::module_& module) {
  py::class_<FileHandle>(module, "File")
      .def_readonly("root", &FileHandle::root)
      .def_readonly("title", &FileHandle::title)
      .def_readonly("skipped", &FileHandle::skipped)
      .def("chunks", &chunksOf)
      .def("close", [](const FileHandle& handle) {
        const py::gil_scoped_release released;
        handle.file->close();
      });
  module.def("open_file", &open);
  module.def("save_file", &save);
}

}  // namespace quillon::python
