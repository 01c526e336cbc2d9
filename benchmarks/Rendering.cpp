#include <object_model/Array.h>
#include <object_model/IO.h>
#include <quillon/netcdf/File.h>

#include <array>
#include <charconv>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "Case.h"
#include "Position.h"
#include "UncheckedFrame.h"

namespace benchmarks {
namespace {

using FramePointer = std::shared_ptr<tabra::DataFrameView>;

constexpr std::array<const char*, 4> VARIABLES = {"SST", "AIRT", "WSPD", "SLP"};

/// The first `count` values of a variable, as they are stored, or all if there are fewer.
std::vector<double> firstValues(const object_model::Array& array, unsigned long count) {
  Position position(3);
  std::vector<double> values;
  const object_model::Tuple& shape = array.size();
  walk({{0, shape[0]}, {1, shape[1]}, {2, shape[2]}}, position, [&] {
    if (values.size() < count) {
      values.push_back(array.getValueAsDouble(position));
    }
  });
  return values;
}

/// A table of the climate file's values, which repeat along the rows, as do the variables along the
/// columns.
FramePointer climateFrame(unsigned long rows, unsigned long columns) {
  quillon::netcdf::OpenOptions asStored;  // values that take formatting throughout
  asStored.decode = false;
  const quillon::netcdf::File file(QUILLON_DATA_DIR "/north_atlantic_climate.nc", asStored);
  std::vector<std::vector<double>> values;
  for (const char* variable : VARIABLES) {
    values.push_back(firstValues(*file.root().data(variable)->asArray(), rows));
    const std::size_t given = values.back().size();
    for (std::size_t row = given; row < rows; ++row) {
      values.back().push_back(values.back()[row - given]);
    }
  }
  auto frame = std::make_shared<UncheckedFrame>();
  frame->addRows(0, rows);
  for (unsigned long k = 0; k < columns; ++k) {
    const std::size_t variable = k % VARIABLES.size();
    frame->addColumn(VARIABLES[variable], tabra::DataType(tabra::DataTypeId::Float64));
    frame->write(k, 0, rows, values[variable].data());
  }
  return frame;
}

/// A table of four columns that makes its values up: there is no need to hold them.
class MadeUpFrame final : public UncheckedFrame {
 public:
  explicit MadeUpFrame(unsigned long rows) : m_shape{VARIABLES.size(), rows} {
    for (const char* variable : VARIABLES) {
      addColumn(variable, tabra::DataType(tabra::DataTypeId::Float64));
    }
  }

  const std::array<unsigned long, 2>& shape() const override { return m_shape; }

  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            void* destination) const override {
    for (unsigned long k = 0; k < count; ++k) {
      const double value = static_cast<double>(column) + static_cast<double>(firstRow + k) / 8;
      std::memcpy(static_cast<char*>(destination) + k * sizeof(value), &value, sizeof(value));
    }
  }

 private:
  std::array<unsigned long, 2> m_shape;
};

/// All values, read in one go a column.
std::vector<std::vector<double>> readAll(const tabra::DataFrameView& frame) {
  const auto [columns, rows] = frame.shape();
  std::vector<std::vector<double>> values(columns, std::vector<double>(rows));
  for (unsigned long k = 0; k < columns; ++k) {
    frame.read(k, 0, rows, values[k].data());
  }
  return values;
}

// No value takes more characters in general notation with six digits: -1.79769e+308.
constexpr std::size_t LONGEST_VALUE = 13;

char* putValue(char* to, double value) {
  return std::to_chars(to, to + LONGEST_VALUE, value, std::chars_format::general, 6).ptr;
}

char* put(char* to, std::string_view text) {
  std::memcpy(to, text.data(), text.size());
  return to + text.size();
}

struct Text {
  static constexpr auto RENDER = &object_model::exportDataFrameToString;
  static constexpr std::size_t WIDTH = 15;  // of every column but the last

  /// For tables of numbers with short column names.
  static std::string byHand(const tabra::DataFrameView& frame) {
    const auto [columns, rows] = frame.shape();
    const std::vector<std::vector<double>> values = readAll(frame);
    std::string text((rows + 1) * (columns * WIDTH + 1), ' ');
    char* to = text.data();
    const auto endCell = [&, last = columns - 1](unsigned long column, char* begin, char* end) {
      if (column < last) {
        to = begin + WIDTH;
      } else {
        *end = '\n';
        to = end + 1;
      }
    };
    for (unsigned long k = 0; k < columns; ++k) {
      endCell(k, to, put(to, frame.columnName(k)));
    }
    for (unsigned long row = 0; row < rows; ++row) {
      for (unsigned long k = 0; k < columns; ++k) {
        endCell(k, to, putValue(to, values[k][row]));
      }
    }
    text.resize(static_cast<std::size_t>(to - text.data()));
    return text;
  }

  static std::string withRowsLeftOut(const std::string& text) { return text + "...\n"; }
};

struct Html {
  static constexpr auto RENDER = &object_model::exportDataFrameToHtml;
  static constexpr std::string_view BEFORE_HEAD = "<table>\n    <thead>\n        <tr>\n";
  static constexpr std::string_view BEFORE_BODY =
      "        </tr>\n    </thead>\n    <tbody>\n        <tr>\n";
  static constexpr std::string_view AFTER_BODY = "        </tr>\n    </tbody>\n</table>\n";
  static constexpr std::string_view ROW_BEGIN = "            <tr>";
  static constexpr std::string_view ROW_END = "            </tr>\n";
  static constexpr std::string_view CELL_BEGIN = "<th>";
  static constexpr std::string_view CELL_END = "</th>";

  /// For tables of numbers with short column names.
  static std::string byHand(const tabra::DataFrameView& frame) {
    const auto [columns, rows] = frame.shape();
    const std::vector<std::vector<double>> values = readAll(frame);
    constexpr std::size_t CELL = CELL_BEGIN.size() + LONGEST_VALUE + CELL_END.size();
    constexpr std::size_t ROW = ROW_BEGIN.size() + ROW_END.size();
    constexpr std::size_t REST = BEFORE_HEAD.size() + BEFORE_BODY.size() + AFTER_BODY.size();
    std::string text((rows + 1) * (columns * CELL + ROW) + REST, ' ');
    char* to = put(text.data(), BEFORE_HEAD);
    for (unsigned long k = 0; k < columns; ++k) {
      to = put(put(put(to, CELL_BEGIN), frame.columnName(k)), CELL_END);
    }
    to = put(to, BEFORE_BODY);
    for (unsigned long row = 0; row < rows; ++row) {
      to = put(to, ROW_BEGIN);
      for (unsigned long k = 0; k < columns; ++k) {
        to = put(putValue(put(to, CELL_BEGIN), values[k][row]), CELL_END);
      }
      to = put(to, ROW_END);
    }
    to = put(to, AFTER_BODY);
    text.resize(static_cast<std::size_t>(to - text.data()));
    return text;
  }

  static std::string withRowsLeftOut(const std::string& text) {
    const std::size_t end = text.size() - AFTER_BODY.size();
    std::string result = text.substr(0, end);
    for (std::size_t k = 0; k < VARIABLES.size(); ++k) {
      result += "<th>...</th>";
    }
    return result + text.substr(end);
  }
};

/// A whole table of real values.
template <class Format>
class WholeRendering final : public Operation {
 public:
  WholeRendering(unsigned long rows, unsigned long columns)
      : m_frame(climateFrame(rows, columns)) {}

  void runLibrary() override { m_byLibrary = Format::RENDER(m_frame, 0); }
  void runFloor() override { m_byHand = Format::byHand(*m_frame); }

  void check() override {
    runLibrary();
    runFloor();
    require(m_byLibrary == m_byHand, "the rendering differs from the one made by hand");
  }

 private:
  FramePointer m_frame;
  std::string m_byLibrary;
  std::string m_byHand;
};

/// The first rows of a long table; the floor is the same of a table that has no more.
template <class Format>
class Preview final : public Operation {
 public:
  explicit Preview(unsigned long rows) : m_long(std::make_shared<MadeUpFrame>(rows)) {}

  void runLibrary() override { m_byLibrary = Format::RENDER(m_long, SHOWN); }
  void runFloor() override { m_ofShort = Format::RENDER(m_short, SHOWN); }

  void check() override {
    runLibrary();
    runFloor();
    require(m_ofShort == Format::byHand(*m_short), "the rendering of a short table");
    require(m_byLibrary == Format::withRowsLeftOut(m_ofShort), "the preview of a long table");
  }

 private:
  static constexpr unsigned long SHOWN = 10;

  FramePointer m_long;
  FramePointer m_short = std::make_shared<MadeUpFrame>(SHOWN);
  std::string m_byLibrary;
  std::string m_ofShort;
};

template <class Format>
void addFormat(Cases& cases, const std::string& function) {
  constexpr unsigned long ROWS = 1'000'000;
  const auto climate = [](unsigned long rows) {
    return std::make_unique<WholeRendering<Format>>(rows, VARIABLES.size());
  };
  const auto tenRows = [](unsigned long cells) {
    return std::make_unique<WholeRendering<Format>>(10, cells / 10);
  };
  const auto preview = [](unsigned long rows) { return std::make_unique<Preview<Format>>(rows); };
  cases.push_back({function + "/climate", "tiny", 3, 1.5, climate});
  cases.push_back({function + "/climate", "tall", ROWS, 1.5, climate});
  cases.back().growth = true;
  cases.push_back({function + "/climate-10-rows", "wide", ROWS, 1.5, tenRows});
  cases.push_back({function + "/first-10-rows", "tall", 1'000'000'000, 1.2, preview});
}

}  // namespace

void addRenderingCases(Cases& cases) {
  addFormat<Text>(cases, "exportDataFrameToString");
  addFormat<Html>(cases, "exportDataFrameToHtml");
}

}  // namespace benchmarks
