// The law: whatever the dictionary holds and whichever axes are asked for as its index, neither the
// caller nor the table can tell the library's export from the plain one: the same error, the same
// calls on the table in the same order, the same table.

#include <object_model/IO.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "Input.h"
#include "Law.h"
#include "ObjectModel/IO/ExportOutcome.h"
#include "ObjectModel/IO/PlainExport.h"

namespace quillon::fuzz {
namespace {

constexpr unsigned long AXIS_NAMES = 4;

/// Makes dictionaries and lists of axes of an input. Axis names are few, so that they meet, and the
/// arrays mostly agree on an axis's size.
class Request {
 public:
  explicit Request(Input input) : m_input(std::move(input)) {
    for (unsigned long& size : m_sizes) {
      size = m_input.below(5);
    }
  }

  std::vector<std::string> indexNames() {
    std::vector<std::string> names(m_input.below(6));
    std::generate(names.begin(), names.end(), [this] { return axisName(m_input.below(5)); });
    return names;
  }

  memory::Dictionary dictionary() {
    memory::Dictionary dictionary("d");
    const unsigned long count = m_input.below(6);
    for (unsigned long i = 0; i < count; ++i) {
      const std::string name = m_input.text(3) + std::to_string(i);
      addEntry(dictionary, name);
    }
    return dictionary;
  }

 private:
  // The last is in no array.
  static std::string axisName(unsigned long axis) { return std::string(1, "abcd="[axis]); }

  std::vector<memory::Axis> axes() {
    std::vector<memory::Axis> axes;
    for (unsigned long rest = m_input.below(5); rest > 0; --rest) {
      const unsigned long axis = m_input.below(AXIS_NAMES);
      const unsigned long surplus = m_input.oneIn(32) ? 1 : 0;
      axes.emplace_back(axisName(axis), m_sizes[axis] + surplus);
    }
    return axes;
  }

  template <class T>
  void addArray(memory::Dictionary& to, const std::string& name) {
    const std::vector<memory::Axis> axes = this->axes();
    unsigned long count = 1;
    for (const memory::Axis& axis : axes) {
      count *= axis.size();
    }
    std::vector<T> values(count);
    if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
      static const std::vector<T> odd = {T(0),
                                         T(1),
                                         T(-1),
                                         std::numeric_limits<T>::max(),
                                         std::numeric_limits<T>::lowest(),
                                         std::numeric_limits<T>::quiet_NaN()};
      std::generate(values.begin(), values.end(), [this] { return m_input.oneOf(odd); });
    }
    auto& array = to.add(memory::TypedArray<T>(name, axes, std::move(values)));
    array.setUnit(m_input.text(3));
    array.setPhysicalUnit(m_input.text(3));
  }

  void addEntry(memory::Dictionary& to, const std::string& name) {
    switch (m_input.below(32)) {
      case 0:
        to.add(memory::Dictionary(name));
        break;
      case 1:
        addArray<std::string>(to, name);
        break;
      case 2:
        addArray<bool>(to, name);
        break;
      case 3:
        addArray<std::complex<double>>(to, name);
        break;
      default:
        addNumbers(to, name);
    }
  }

  void addNumbers(memory::Dictionary& to, const std::string& name) {
    switch (m_input.below(3)) {
      case 0:
        addArray<unsigned long>(to, name);
        break;
      case 1:
        addArray<long>(to, name);
        break;
      default:
        addArray<double>(to, name);
    }
  }

  Input m_input;
  unsigned long m_sizes[AXIS_NAMES] = {};
};

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::Request request(quillon::fuzz::Input(bytes, size));
  const std::vector<std::string> indexNames = request.indexNames();
  quillon::memory::Dictionary dictionary = request.dictionary();
  const auto library = [&](auto& frame) {
    object_model::exportToDataFrame(dictionary, &frame, indexNames);
  };
  const auto plain = [&](auto& frame) { test::plainExport(dictionary, frame, indexNames); };
  quillon::fuzz::requireEqual(test::exportOutcome(library), test::exportOutcome(plain));
  return 0;
}
