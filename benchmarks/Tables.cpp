#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/tables/Plan.h>
#include <quillon/tables/Table.h>
#include <quillon/tables/Writers.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

#include "Case.h"

namespace benchmarks {
namespace {

using quillon::memory::Axis;
using quillon::memory::Dictionary;
using quillon::memory::DoubleArray;
using quillon::tables::Request;
using quillon::tables::Table;
using Names = std::vector<std::string>;

constexpr unsigned long COLUMNS = 10;

/// As many digits as measurements have.
std::vector<double> measurements(unsigned long count) {
  std::vector<double> values(count);
  for (unsigned long k = 0; k < count; ++k) {
    values[k] = std::round(1e4 * std::sin(static_cast<double>(k))) / 100;
  }
  return values;
}

Table tableOf(const Dictionary& dictionary, const Names& index) {
  Request request;
  request.index = index;
  return {dictionary, plan(dictionary, request)};
}

/// Reads all columns of values into buffers. The floor copies as many values.
class ReadTable final : public Operation {
 public:
  ReadTable(const std::vector<Axis>& axes, const Names& index) : m_index(index.size()) {
    const unsigned long count = std::accumulate(
        axes.begin(), axes.end(), 1UL,
        [](unsigned long product, const Axis& axis) { return product * axis.size(); });
    for (unsigned long k = 0; k < COLUMNS; ++k) {
      m_values.push_back(measurements(count));
      m_dictionary.add(
          DoubleArray::view("v" + std::to_string(k), axes, m_values.back().data(), count));
      m_cells.emplace_back(count);
    }
    m_table = std::make_unique<Table>(tableOf(m_dictionary, index));
  }

  void runLibrary() override {
    for (unsigned long k = 0; k < COLUMNS; ++k) {
      m_table->read(m_index + k, 0, m_cells[k].size(), m_cells[k].data());
    }
  }

  void runFloor() override {
    for (unsigned long k = 0; k < COLUMNS; ++k) {
      std::memcpy(m_cells[k].data(), m_values[k].data(), m_cells[k].size() * sizeof(double));
    }
  }

  void check() override {
    runLibrary();
    const double sum = std::accumulate(m_cells[3].begin(), m_cells[3].end(), 0.0);
    const double expected = std::accumulate(m_values[3].begin(), m_values[3].end(), 0.0);
    require(std::abs(sum - expected) < 1e-3, "the table has other values");
  }

 private:
  unsigned long m_index;
  Dictionary m_dictionary{"measurements"};
  std::vector<std::vector<double>> m_values;
  std::vector<std::vector<double>> m_cells;
  std::unique_ptr<Table> m_table;
};

/// Writes a table as CSV to nowhere. The floor writes the same numbers into one buffer, which it
/// uses again and again.
class WriteCsv final : public Operation {
 public:
  explicit WriteCsv(unsigned long rows) : m_values(measurements(rows)) {
    for (unsigned long k = 0; k + 1 < COLUMNS; ++k) {
      m_dictionary.add(
          DoubleArray::view("v" + std::to_string(k), {{"row", rows}}, m_values.data(), rows));
    }
    m_table = std::make_unique<Table>(tableOf(m_dictionary, {"row"}));
  }

  void runLibrary() override {
    m_written = 0;
    quillon::tables::writeCsv(*m_table,
                              [this](std::string_view piece) { m_written += piece.size(); });
  }

  void runFloor() override {
    m_digits = 0;
    for (unsigned long row = 0; row < m_values.size(); ++row) {
      char* at = m_buffer;
      at = std::to_chars(at, m_buffer + sizeof(m_buffer), row).ptr;
      for (unsigned long k = 0; k + 1 < COLUMNS; ++k) {
        at = std::to_chars(at, m_buffer + sizeof(m_buffer), m_values[row]).ptr;
      }
      m_digits += static_cast<unsigned long>(at - m_buffer);
    }
  }

  void check() override {
    runLibrary();
    runFloor();
    const unsigned long header = 3 + 3 * (COLUMNS - 1) + 1;
    require(m_written == m_digits + COLUMNS * m_values.size() + header,
            "the table has another text");
  }

 private:
  std::vector<double> m_values;
  Dictionary m_dictionary{"measurements"};
  std::unique_ptr<Table> m_table;
  char m_buffer[4096] = {};
  unsigned long m_written = 0;
  unsigned long m_digits = 0;
};

std::vector<Axis> grid(unsigned long size) {
  constexpr unsigned long MONTHS = 12;
  constexpr unsigned long LATITUDES = 90;
  return {{"lon", size / (MONTHS * LATITUDES)}, {"lat", LATITUDES}, {"time", MONTHS}};
}

}  // namespace

void addTableCases(Cases& cases) {
  constexpr unsigned long CELLS = 194'400;
  constexpr unsigned long ROWS = 3'900'000;
  const auto read = [](const Names& index) {
    return [=](unsigned long size) { return std::make_unique<ReadTable>(grid(size), index); };
  };
  cases.push_back({"Table/read/storage-order", "tall", CELLS, 4, read({"lon", "lat", "time"})});
  cases.push_back({"Table/read/other-order", "tall", CELLS, 8, read({"time", "lat", "lon"})});
  cases.push_back({"Table/read/mixed-order", "tall", CELLS, 8, read({"lat", "time", "lon"})});
  cases.push_back({"writeCsv", "tall", ROWS, 1.5,
                   [](unsigned long rows) { return std::make_unique<WriteCsv>(rows); }});
}

}  // namespace benchmarks
