#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tabra {
namespace {

using Cell = unsigned long;  // all column types take 8 bytes a cell

struct Column {
  Column(std::string columnName, DataType columnType, unsigned long rows)
      : name(std::move(columnName)), type(columnType), cells(rows) {}

  std::string name;
  std::string unit;
  DataType type;
  std::vector<Cell> cells;
  bool removed = false;  // until the run of removals ends
};

std::string counted(unsigned long count, const std::string& unit) {
  return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

[[noreturn]] void rejectColumn(const std::string& operation, unsigned long column,
                               unsigned long columns) {
  throw std::out_of_range(operation + ": column " + std::to_string(column) +
                          " is outside the table, which has " + counted(columns, "column"));
}

[[noreturn]] void rejectRows(const std::string& operation, const std::string& what,
                             unsigned long rows) {
  throw std::out_of_range(operation + ": " + what + " is outside the table, which has " +
                          counted(rows, "row"));
}

void insertZeros(Column& column, unsigned long firstRow, unsigned long count) {
  column.cells.insert(column.cells.begin() + static_cast<std::ptrdiff_t>(firstRow), count, Cell{0});
}

void eraseCells(Column& column, unsigned long firstRow, unsigned long count) noexcept {
  const auto first = column.cells.begin() + static_cast<std::ptrdiff_t>(firstRow);
  column.cells.erase(first, first + static_cast<std::ptrdiff_t>(count));
}

}  // namespace

struct MemoryDataFrame::Content {
  std::vector<Column> columns;
  std::array<unsigned long, 2> shape = {0, 0};

  // Columns are renumbered when the run of removals ends, which any operation may do, a const one
  // included; const operations may run concurrently.
  std::atomic<bool> inRemovalRun = false;
  std::mutex renumbering;

  void endRemovalRun() {
    if (!inRemovalRun.load(std::memory_order_acquire)) {
      return;
    }
    const std::lock_guard<std::mutex> lock(renumbering);
    if (!inRemovalRun.load(std::memory_order_relaxed)) {
      return;  // never true, never run: unless another thread was faster
    }
    columns.erase(std::remove_if(columns.begin(), columns.end(),
                                 [](const Column& column) { return column.removed; }),
                  columns.end());
    inRemovalRun.store(false, std::memory_order_release);
  }

  Column& settledColumn(const char* operation, unsigned long column) {
    endRemovalRun();
    if (column >= columns.size()) {
      rejectColumn(operation, column, columns.size());
    }
    return columns[column];
  }

  void requireRows(const char* operation, unsigned long firstRow, unsigned long count) const {
    const unsigned long rows = shape[1];
    if (firstRow > rows || count > rows - firstRow) {
      rejectRows(operation,
                 "the run of " + counted(count, "row") + " from row " + std::to_string(firstRow),
                 rows);
    }
  }
};

MemoryDataFrame::MemoryDataFrame() : m_content(std::make_unique<Content>()) {}

MemoryDataFrame::~MemoryDataFrame() = default;

const std::array<unsigned long, 2>& MemoryDataFrame::shape() const {
  m_content->endRemovalRun();
  return m_content->shape;
}

const std::string& MemoryDataFrame::columnName(unsigned long column) const {
  return m_content->settledColumn("columnName", column).name;
}

const std::string& MemoryDataFrame::columnUnit(unsigned long column) const {
  return m_content->settledColumn("columnUnit", column).unit;
}

void MemoryDataFrame::setColumnUnit(unsigned long column, const std::string& unit) {
  m_content->settledColumn("setColumnUnit", column).unit = unit;
}

DataType MemoryDataFrame::columnDataType(unsigned long column) const {
  return m_content->settledColumn("columnDataType", column).type;
}

void MemoryDataFrame::read(unsigned long column, unsigned long firstRow, unsigned long count,
                           void* destination) const {
  const Column& source = m_content->settledColumn("read", column);
  m_content->requireRows("read", firstRow, count);
  if (destination != nullptr && count > 0) {
    std::memcpy(destination, source.cells.data() + firstRow, count * sizeof(Cell));
  }
}

void MemoryDataFrame::write(unsigned long column, unsigned long firstRow, unsigned long count,
                            const void* source) {
  Column& destination = m_content->settledColumn("write", column);
  m_content->requireRows("write", firstRow, count);
  if (source != nullptr && count > 0) {
    std::memcpy(destination.cells.data() + firstRow, source, count * sizeof(Cell));
  }
}

void MemoryDataFrame::addColumn(const std::string& name, DataType type) {
  m_content->endRemovalRun();
  m_content->columns.emplace_back(name, type, m_content->shape[1]);
  ++m_content->shape[0];
}

void MemoryDataFrame::addRows(unsigned long firstRow, unsigned long count) {
  m_content->endRemovalRun();
  unsigned long& rows = m_content->shape[1];
  if (firstRow > rows) {
    rejectRows("addRows", "row " + std::to_string(firstRow), rows);
  }
  // Checked here, since a table without columns has no vector that would refuse.
  if (count > std::vector<Cell>().max_size() - rows) {
    throw std::length_error("addRows: a table of " + counted(rows, "row") + " cannot grow by " +
                            std::to_string(count));
  }
  std::vector<Column>& columns = m_content->columns;
  std::size_t grown = 0;
  try {
    for (; grown < columns.size(); ++grown) {
      insertZeros(columns[grown], firstRow, count);
    }
  } catch (...) {
    while (grown > 0) {
      eraseCells(columns[--grown], firstRow, count);
    }
    throw;
  }
  rows += count;
}

void MemoryDataFrame::removeColumn(unsigned long column) {
  Content& content = *m_content;
  if (column >= content.columns.size()) {
    rejectColumn("removeColumn", column, content.columns.size());
  }
  if (content.columns[column].removed) {
    throw std::out_of_range("removeColumn: column " + std::to_string(column) +
                            " was already removed in this run of removals");
  }
  content.columns[column].removed = true;
  content.inRemovalRun.store(true, std::memory_order_release);
  --content.shape[0];
}

void MemoryDataFrame::removeRows(unsigned long firstRow, unsigned long count) {
  m_content->endRemovalRun();
  m_content->requireRows("removeRows", firstRow, count);
  for (Column& column : m_content->columns) {
    eraseCells(column, firstRow, count);
  }
  m_content->shape[1] -= count;
}

}  // namespace tabra
