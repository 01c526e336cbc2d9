// The law: under any global locale both renderings give the text that inserting names and values
// into a standard stream gives, and make the same calls on the table in the same order.

#include <object_model/IO.h>

#include <algorithm>
#include <functional>
#include <iomanip>
#include <limits>
#include <locale>
#include <memory>
#include <sstream>
#include <utility>

#include "Input.h"
#include "Law.h"
#include "support/RecordingDataFrame.h"

namespace quillon::fuzz {
namespace {

using Cells = std::vector<std::function<void(std::ostream&)>>;  // of one column

template <class T>
Cells cellsOf(const std::vector<T>& values) {
  Cells cells;
  for (const T& value : values) {
    cells.emplace_back([value](std::ostream& out) { out << value; });
  }
  return cells;
}

template <class T>
Cells readAs(const tabra::DataFrameView& frame, unsigned long column, unsigned long rows) {
  std::vector<T> values(rows);
  frame.read(column, 0, rows, values.data());
  return cellsOf(values);
}

/// The first rows of a table, by column.
struct Shown {
  Shown(const tabra::DataFrameView& frame, unsigned long maxRows) {
    const auto shape = frame.shape();
    isCut = maxRows != 0 && maxRows < shape[1];
    rows = isCut ? maxRows : shape[1];
    const unsigned long count = frame.shape()[0];
    for (unsigned long i = 0; i < count; ++i) {
      switch (frame.columnDataType(i).id()) {
        case tabra::DataTypeId::UInt64:
          columns.push_back(readAs<unsigned long>(frame, i, rows));
          break;
        case tabra::DataTypeId::Int64:
          columns.push_back(readAs<long>(frame, i, rows));
          break;
        case tabra::DataTypeId::Float64:
          columns.push_back(readAs<double>(frame, i, rows));
          break;
        default:
          frame.read(i, 0, rows, nullptr);
          columns.push_back(cellsOf(std::vector<std::string>(rows)));
      }
    }
  }

  unsigned long rows;
  bool isCut;
  std::vector<Cells> columns;
};

std::string plainText(const tabra::DataFrameView& frame, unsigned long maxRows) {
  const Shown shown(frame, maxRows);
  const std::size_t count = shown.columns.size();
  std::ostringstream out;
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = frame.columnName(i);
    widths.push_back(std::max<std::size_t>(name.size() + 2, 15));
    if (i + 1 == count) {
      out << name << "\n";
    } else {
      out << std::left << std::setw(static_cast<int>(widths[i])) << name;
    }
  }
  for (unsigned long row = 0; row < shown.rows; ++row) {
    for (std::size_t i = 0; i < count; ++i) {
      if (i + 1 < count) {
        out << std::left << std::setw(static_cast<int>(widths[i]));
      }
      shown.columns[i][row](out);
      out << (i + 1 < count ? "" : "\n");
    }
  }
  out << (shown.isCut ? "...\n" : "");
  return out.str();
}

std::string plainHtml(const tabra::DataFrameView& frame, unsigned long maxRows) {
  const Shown shown(frame, maxRows);
  std::ostringstream out;
  out << "<table>\n    <thead>\n        <tr>\n";
  for (std::size_t i = 0; i < shown.columns.size(); ++i) {
    out << "<th>" << frame.columnName(i) << "</th>";
  }
  out << "        </tr>\n    </thead>\n    <tbody>\n        <tr>\n";
  for (unsigned long row = 0; row < shown.rows; ++row) {
    out << "            <tr>";
    for (const Cells& cells : shown.columns) {
      out << "<th>";
      cells[row](out);
      out << "</th>";
    }
    out << "            </tr>\n";
  }
  for (std::size_t i = 0; shown.isCut && i < shown.columns.size(); ++i) {
    out << "<th>...</th>";
  }
  out << "        </tr>\n    </tbody>\n</table>\n";
  return out.str();
}

class Numbers : public std::numpunct<char> {
 public:
  explicit Numbers(Input& input)
      : m_point(static_cast<char>(input.byte())),
        m_separator(static_cast<char>(input.byte())),
        m_grouping(input.text(4)) {}

 private:
  char do_decimal_point() const override { return m_point; }
  char do_thousands_sep() const override { return m_separator; }
  std::string do_grouping() const override { return m_grouping; }

  char m_point;
  char m_separator;
  std::string m_grouping;
};

/// A global locale of its own for as long as it lives.
class GlobalLocale {
 public:
  explicit GlobalLocale(const std::locale& locale) : m_before(std::locale::global(locale)) {}
  ~GlobalLocale() { std::locale::global(m_before); }
  GlobalLocale(const GlobalLocale&) = delete;
  GlobalLocale& operator=(const GlobalLocale&) = delete;

 private:
  std::locale m_before;
};

std::locale readLocale(Input& input) {
  return input.oneIn(2) ? std::locale(std::locale::classic(), new Numbers(input))
                        : std::locale::classic();
}

template <class T>
void addColumn(Input& input, test::RecordingDataFrame& frame, tabra::DataTypeId type,
               const std::vector<T>& palette) {
  tabra::MemoryDataFrame& table = frame.frame();
  const unsigned long column = table.shape()[0];
  std::vector<T> values(table.shape()[1]);
  std::generate(values.begin(), values.end(), [&] { return input.oneOf(palette); });
  table.addColumn(input.text(input.oneIn(4) ? 24 : 4), tabra::DataType(type));
  table.write(column, 0, values.size(), values.data());
}

void addColumn(Input& input, test::RecordingDataFrame& frame) {
  switch (input.below(8)) {
    case 0:
      return frame.frame().addColumn(input.text(4),
                                     tabra::DataType(static_cast<tabra::DataTypeId>(input.byte())));
    case 1:
    case 2:
      return addColumn<unsigned long>(
          input, frame, tabra::DataTypeId::UInt64,
          {0, 1, 999, 1000, 1234567, 123456789012345, 1234567890123456, 18446744073709551615UL});
    case 3:
    case 4:
      return addColumn<long>(input, frame, tabra::DataTypeId::Int64,
                             {0, -1, 1000, -1000, -12345678901234, -123456789012345,
                              std::numeric_limits<long>::min()});
    default:
      return addColumn<double>(
          input, frame, tabra::DataTypeId::Float64,
          {0.0, -0.0, 0.5, 100000.0, 999999.5, 1234567.0, 0.0001, 0.00001, -1e300, 5e-324,
           std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()});
  }
}

/// The text that `render()` gives, and the calls on the frame, which `log` notes.
template <class Render>
std::string outcomeOf(test::CallLog& log, const Render& render) {
  log.reset();
  std::string outcome = render();
  for (const std::string& call : log.calls()) {
    outcome += call + "\n";
  }
  return outcome;
}

void render(Input input) {
  const std::locale locale = readLocale(input);
  const unsigned long maxRows = input.below(8);
  test::CallLog log;
  const auto frame = std::make_shared<test::RecordingDataFrame>(log);
  frame->frame().addRows(0, input.below(12));
  for (unsigned long columns = input.below(6); columns > 0; --columns) {
    addColumn(input, *frame);
  }
  const GlobalLocale global(locale);
  requireEqual(
      outcomeOf(log, [&] { return object_model::exportDataFrameToString(frame, maxRows); }),
      outcomeOf(log, [&] { return plainText(*frame, maxRows); }));
  requireEqual(outcomeOf(log, [&] { return object_model::exportDataFrameToHtml(frame, maxRows); }),
               outcomeOf(log, [&] { return plainHtml(*frame, maxRows); }));
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::render(quillon::fuzz::Input(bytes, size));
  return 0;
}
