// The law: a table is planned or refused with a sentence; its cells do not depend on how many are
// read at once; and what its CSV has in each place is the text of that cell.

#include <quillon/memory/Dictionary.h>
#include <quillon/memory/NumberText.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Utf8.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Plan.h>
#include <quillon/tables/Writers.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <type_traits>

#include "Input.h"
#include "Law.h"

namespace quillon::fuzz {
namespace {

using Records = std::vector<std::vector<std::string>>;

/// Makes dictionaries and requests of an input. Axis names are few, so that they meet, and the
/// arrays mostly agree on an axis's size.
class Wanted {
 public:
  explicit Wanted(Input input) : m_input(std::move(input)) {
    for (unsigned long& size : m_sizes) {
      size = m_input.below(5);
    }
  }

  memory::Dictionary dictionary() {
    memory::Dictionary dictionary("d");
    for (unsigned long rest = m_input.below(6); rest > 0; --rest) {
      const std::string name = m_input.below(3) == 0 ? axisName(m_input.below(AXIS_NAMES))
                                                     : m_input.text(3) + std::to_string(rest);
      if (!dictionary.contains(name)) {
        addEntry(dictionary, name);
      }
    }
    return dictionary;
  }

  tables::Request request() {
    tables::Request request;
    if (m_input.below(2) == 0) {
      request.index.emplace();
      for (unsigned long rest = m_input.below(4); rest > 0; --rest) {
        request.index->push_back(axisName(m_input.below(AXIS_NAMES + 1)));
      }
    }
    return request;
  }

  unsigned long rowsAtOnce() { return 1 + m_input.below(4); }

 private:
  static constexpr unsigned long AXIS_NAMES = 4;

  // The last is in no array.
  static std::string axisName(unsigned long axis) { return std::string(1, "abcd="[axis]); }

  std::vector<memory::Axis> axes() {
    std::vector<memory::Axis> axes;
    for (unsigned long rest = m_input.below(4); rest > 0; --rest) {
      const unsigned long axis = m_input.below(AXIS_NAMES);
      axes.emplace_back(axisName(axis), m_sizes[axis] + (m_input.oneIn(32) ? 1 : 0));
    }
    return axes;
  }

  template <class T>
  T value() {
    if constexpr (std::is_same_v<T, std::string>) {
      return m_input.text(6);
    } else if constexpr (std::is_same_v<T, bool>) {
      return m_input.below(2) == 1;
    } else {
      static const std::vector<T> odd = {T(0),
                                         T(1),
                                         T(-1),
                                         std::numeric_limits<T>::max(),
                                         std::numeric_limits<T>::lowest(),
                                         std::numeric_limits<T>::quiet_NaN()};
      return m_input.oneOf(odd);
    }
  }

  template <class T>
  void addArray(memory::Dictionary& to, const std::string& name) {
    const std::vector<memory::Axis> axes = this->axes();
    unsigned long count = 1;
    for (const memory::Axis& axis : axes) {
      count *= axis.size();
    }
    std::vector<T> values;
    std::generate_n(std::back_inserter(values), count, [this] { return value<T>(); });
    to.add(memory::TypedArray<T>(name, axes, std::move(values))).setUnit(m_input.text(3));
  }

  void addEntry(memory::Dictionary& to, const std::string& name) {
    switch (m_input.below(7)) {
      case 0:
        to.add(memory::Dictionary(name));
        break;
      case 1:
        return addArray<std::string>(to, name);
      case 2:
        return addArray<bool>(to, name);
      case 3:
        return addArray<float>(to, name);
      case 4:
        return addArray<unsigned long>(to, name);
      case 5:
        return addArray<long>(to, name);
      default:
        return addArray<double>(to, name);
    }
  }

  Input m_input;
  unsigned long m_sizes[AXIS_NAMES] = {};
};

/// Bytes that are no UTF-8 replaced, as formats have to have it.
std::string inUtf8(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = memory::firstCharacter(text).length;
    result += length == 0 ? memory::REPLACEMENT : text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

template <class T>
std::string cellText(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return inUtf8(value);
  } else if constexpr (std::is_same_v<T, bool>) {
    return value ? "true" : "false";
  } else if constexpr (std::is_floating_point_v<T>) {
    return std::isnan(value) ? "" : memory::shortestText(value);
  } else {
    return memory::shortestText(value);
  }
}

/// The cells of a column as texts, so many read at once.
std::vector<std::string> cellsOf(const tables::Table& table, unsigned long column,
                                 unsigned long rowsAtOnce) {
  std::vector<std::string> texts;
  tables::visitColumnType(table.columns()[column].type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    const auto cells = std::make_unique<T[]>(rowsAtOnce);
    for (unsigned long row = 0; row < table.rows(); row += rowsAtOnce) {
      const unsigned long count = std::min(rowsAtOnce, table.rows() - row);
      table.read(column, row, count, cells.get());
      std::transform(cells.get(), cells.get() + count, std::back_inserter(texts), cellText<T>);
    }
  });
  return texts;
}

/// The fields of CSV, which has them in quotes where they hold commas, quotes or line ends.
Records recordsOf(const std::string& csv) {
  Records records = {{""}};
  bool isQuoted = false;
  for (std::size_t k = 0; k < csv.size(); ++k) {
    const bool isLast = k + 1 == csv.size();
    if (csv[k] == '"' && isQuoted && !isLast && csv[k + 1] == '"') {
      records.back().back() += csv[k++];
    } else if (csv[k] == '"') {
      isQuoted = !isQuoted;
    } else if (csv[k] == ',' && !isQuoted) {
      records.back().emplace_back();
    } else if (csv[k] == '\n' && !isQuoted) {
      records.push_back({""});
    } else {
      records.back().back() += csv[k];
    }
  }
  records.pop_back();  // behind the last line end
  return records;
}

void check(Wanted wanted) {
  const memory::Dictionary dictionary = wanted.dictionary();
  tables::Plan planned;
  try {
    planned = plan(dictionary, wanted.request());
  } catch (const tables::Error&) {
    return;
  }
  const tables::Table table(dictionary, planned);
  std::string csv;
  tables::writeCsv(table, [&csv](std::string_view piece) { csv += piece; });
  const Records records = recordsOf(csv);
  requireEqual<std::size_t>(records.size(), table.rows() + 1);
  const unsigned long rowsAtOnce = wanted.rowsAtOnce();
  for (unsigned long column = 0; column < table.columns().size(); ++column) {
    requireEqual(records.front().at(column), inUtf8(table.columns()[column].name));
    const std::vector<std::string> cells = cellsOf(table, column, std::max(table.rows(), 1UL));
    if (cellsOf(table, column, rowsAtOnce) != cells) {
      reportBreach("the cells depend on how many are read at once");
    }
    for (unsigned long row = 0; row < table.rows(); ++row) {
      requireEqual(records[row + 1].at(column), cells[row]);
    }
  }
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::check(quillon::fuzz::Wanted(quillon::fuzz::Input(bytes, size)));
  return 0;
}
