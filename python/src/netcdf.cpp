// Files.

#include <pybind11/stl.h>
#include <quillon/memory/Entries.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Values.h>
#include <quillon/netcdf/File.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <utility>

#include "Errors.h"
#include "Module.h"
#include "Numpy.h"
#include "Ticks.h"

namespace quillon::python {
namespace {

using object_model::Array;

/// The locks of Python's other readers of these files, held by this thread; see quillon._locks.
class OtherReaders {
 public:
  static PyRef shutOut() {
    const py::gil_scoped_acquire gil;
    return passingOn([] { return keep(locks().attr("acquire")()); });
  }

  static void letIn(const PyRef& held) {
    const py::gil_scoped_acquire gil;
    locks().attr("release")(objectOf(held));
  }

 private:
  static py::module_ locks() { return py::module_::import("quillon._locks"); }
};

/// A file that its entries read from while it is open. Reads may run side by side as far as it is
/// concerned; closing it waits for them.
class OpenFile final : public Gate {
 public:
  OpenFile(std::string path, std::unique_ptr<netcdf::File> file)
      : m_path(std::move(path)), m_file(std::move(file)) {}

  void enter() override {
    m_lock.lock_shared();
    try {
      if (m_file == nullptr) {
        throw netcdf::Error("cannot read '" + m_path + "': the file is closed");
      }
      held().push_back(OtherReaders::shutOut());
    } catch (...) {
      m_lock.unlock_shared();
      throw;
    }
  }

  void leave() noexcept override {
    OtherReaders::letIn(held().back());
    held().pop_back();
    m_lock.unlock_shared();
  }

  void close() {
    const std::unique_lock<std::shared_mutex> lock(m_lock);
    if (m_file != nullptr) {
      const PyRef locks = OtherReaders::shutOut();
      m_file.reset();
      OtherReaders::letIn(locks);
    }
  }

  ~OpenFile() override {
    if (m_file != nullptr && Py_IsInitialized() != 0) {
      close();
    }
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

 private:
  /// What each passage of this thread holds.
  static std::vector<PyRef>& held() {
    thread_local std::vector<PyRef> stack;
    return stack;
  }

  std::string m_path;
  std::unique_ptr<netcdf::File> m_file;
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
  for (long& value : values) {
    value = value == memory::MISSING_TIME ? value : value * 1000;
  }
  const auto integers = std::make_shared<memory::IntArray>(
      array.getName(), array.getInformation()->axes(), std::move(values));
  ArrayPointer moments = ticksOf(array.getName(), integers, {"ns", 1, true}, gate);
  moments->setDescription(array.getDescription());
  for (const memory::Attribute& attribute : array.attributes()) {
    moments->setAttribute(attribute.name, attribute.value);
  }
  return moments;
}

/// The entries of a file behind a gate.
class FileEntries {
 public:
  FileEntries(std::shared_ptr<Gate> gate, bool decode)
      : m_gate(std::move(gate)), m_decode(decode) {}

  DictionaryHandle copy(const object_model::Dictionary& group) {
    auto result = std::make_shared<SharedDictionary>(group.getName(), group.getDescription());
    if (const auto* const known = dynamic_cast<const memory::HasAttributes*>(&group)) {
      for (const memory::Attribute& attribute : known->attributes()) {
        result->setAttribute(attribute.name, attribute.value);
      }
    }
    for (const auto& entry : memory::entriesOf(group)) {
      if (entry.data->asArray() != nullptr) {
        result->set({array(dynamic_cast<const memory::ArrayBase&>(*entry.data)), nullptr, {}});
      } else {
        result->set({nullptr, nullptr, copy(*entry.data->asDictionary())});
      }
    }
    result->isReadOnly = true;
    return result;
  }

 private:
  ArrayPointer array(const memory::ArrayBase& original) {
    const auto* const times = dynamic_cast<const memory::HasTimes*>(&original);
    ArrayPointer result;
    if (times != nullptr && m_decode) {
      result = nanosecondsOf(original, *times, m_gate);
    }
    if (result == nullptr) {
      // The gate keeps the original from being read when it is gone.
      const ConstArrayPointer borrowed(std::shared_ptr<void>(), &original);
      result = siblingOf(borrowed, original.getName(), m_gate);
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
        known = array(*found);
      }
      result.setCoordinates(k, known);
    }
  }

  std::shared_ptr<Gate> m_gate;
  bool m_decode;
  std::map<const memory::ArrayBase*, ArrayPointer> m_coordinates;
};

struct FileHandle {
  std::shared_ptr<OpenFile> file;
  DictionaryHandle root;
  std::string title;
  std::vector<std::pair<std::string, std::string>> skipped;
};

/// Opens the file and reads its outline, and its times.
FileHandle open(const std::string& path, bool decode) {
  const py::gil_scoped_release released;
  const PyRef locks = OtherReaders::shutOut();
  FileHandle handle;
  try {
    netcdf::OpenOptions options;
    options.missingAsNaN = decode;
    auto file = std::make_unique<netcdf::File>(path, options);
    handle.title = file->title();
    for (const netcdf::Skipped& entry : file->skipped()) {
      handle.skipped.emplace_back(entry.path, entry.reason);
    }
    netcdf::File& opened = *file;
    handle.file = std::make_shared<OpenFile>(path, std::move(file));
    handle.root = FileEntries(handle.file, decode).copy(opened.root());
  } catch (...) {
    OtherReaders::letIn(locks);
    throw;
  }
  OtherReaders::letIn(locks);
  return handle;
}

}  // namespace

void bindNetcdf(py::module_& module) {
  py::class_<FileHandle>(module, "File")
      .def_readonly("root", &FileHandle::root)
      .def_readonly("title", &FileHandle::title)
      .def_readonly("skipped", &FileHandle::skipped)
      .def("close", [](const FileHandle& handle) {
        const py::gil_scoped_release released;
        handle.file->close();
      });
  module.def("open_file", &open);
}

}  // namespace quillon::python
