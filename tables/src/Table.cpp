#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>
#include <quillon/tables/Table.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <type_traits>

#include "Coordinates.h"
#include "GridBoxes.h"
#include "Sources.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;

/// Together the columns have at most so many cells in a run: few enough for the processor's cache
/// where all lie in memory, many where blocks are read.
constexpr unsigned long CELLS_IN_MEMORY = 1UL << 16U;
constexpr unsigned long CELLS_READ = 1UL << 20U;
constexpr unsigned long FEWEST_ROWS = 64;

template <class T>
std::shared_ptr<const T> borrowed(const T& object) {
  return {std::shared_ptr<void>(), &object};
}

template <class T>
bool isReadAs(ColumnType type) {
  bool same = false;
  visitColumnType(type, [&](auto tag) { same = std::is_same_v<typename decltype(tag)::Type, T>; });
  return same;
}

}  // namespace

bool isNumber(ColumnType type) { return type <= ColumnType::Float64; }

struct Table::State {
  std::shared_ptr<const void> owner;
  std::vector<Column> columns;
  std::vector<std::unique_ptr<ColumnSource>> sources;
  std::vector<std::string> notes;
  unsigned long rows = 0;
  memory::BlockLayout runs{{0}, 1};

  void add(Column column, std::unique_ptr<ColumnSource> source) {
    source->describe(column);
    columns.push_back(std::move(column));
    sources.push_back(std::move(source));
  }

  void divide(const Grid& grid) {
    const bool inMemory = std::all_of(sources.begin(), sources.end(),
                                      [](const auto& source) { return source->isInMemory(); });
    const unsigned long cells = inMemory ? CELLS_IN_MEMORY : CELLS_READ;
    std::vector<unsigned long> chunks;
    for (std::size_t k = 0; k < sources.size() && chunks.empty(); ++k) {
      chunks = sources[k]->chunks();
    }
    const unsigned long most =
        std::max(FEWEST_ROWS, cells / std::max<std::size_t>(1, sources.size()));
    runs = memory::BlockLayout(grid, most, chunks.empty() ? nullptr : chunks.data());
  }
};

Table::Table(std::shared_ptr<const object_model::Dictionary> dictionary, const Plan& plan) {
  auto state = std::make_shared<State>();
  Grid grid;
  for (const IndexAxis& axis : plan.axes) {
    grid.push_back(axis.size);
  }
  for (const PlannedColumn& planned : plan.columns) {
    Column column;
    column.name = planned.name;
    column.isIndex = planned.isIndex;
    state->add(std::move(column), planned.source ? sourceOf(findArray(*dictionary, *planned.source),
                                                            planned.dimensions, grid)
                                                 : positionsOf(planned.dimensions.at(0), grid));
  }
  state->notes = plan.notes;
  state->rows = pointsOf(grid);
  state->divide(grid);
  state->owner = std::move(dictionary);
  m_state = std::move(state);
}

Table::Table(const object_model::Dictionary& dictionary, const Plan& plan)
    : Table(borrowed(dictionary), plan) {}

Table::Table(std::shared_ptr<const tabra::DataFrameView> view) {
  auto state = std::make_shared<State>();
  const std::array<unsigned long, 2> shape = view->shape();
  for (unsigned long k = 0; k < shape[0]; ++k) {
    Column column;
    column.name = view->columnName(k);
    state->add(std::move(column), columnOf(view, k));
  }
  state->rows = shape[1];
  state->divide({shape[1]});
  state->owner = std::move(view);
  m_state = std::move(state);
}

Table::Table(const tabra::DataFrameView& view) : Table(borrowed(view)) {}

const std::vector<Column>& Table::columns() const { return m_state->columns; }

unsigned long Table::rows() const { return m_state->rows; }

const std::vector<std::string>& Table::notes() const { return m_state->notes; }

Table::Table(std::vector<std::unique_ptr<ColumnSource>> columns, unsigned long rows) {
  auto state = std::make_shared<State>();
  std::set<std::string> names;
  for (std::unique_ptr<ColumnSource>& source : columns) {
    state->add({}, std::move(source));
    if (!names.insert(state->columns.back().name).second) {
      throw Error("Two columns are called " + inQuotes(state->columns.back().name));
    }
  }
  state->rows = rows;
  state->divide({rows});
  m_state = std::move(state);
}

void Table::require(unsigned long column, unsigned long firstRow, unsigned long count) const {
  if (column >= m_state->columns.size()) {
    throw std::out_of_range("The table has " + memory::counted(m_state->columns.size(), "column") +
                            " and none of number " + std::to_string(column));
  }
  if (firstRow > rows() || count > rows() - firstRow) {
    throw std::out_of_range("The table has " + memory::counted(rows(), "row") + ", not " +
                            std::to_string(count) + " from row " + std::to_string(firstRow) +
                            " on");
  }
}

template <class T>
void Table::read(unsigned long column, unsigned long firstRow, unsigned long count,
                 T* destination) const {
  require(column, firstRow, count);
  if (!isReadAs<T>(m_state->columns[column].type)) {
    throw std::invalid_argument("The column " + inQuotes(m_state->columns[column].name) +
                                " is of another type than it was read as");
  }
  if (count > 0) {
    m_state->sources[column]->read(firstRow, count, destination);
  }
}

void Table::readMissing(unsigned long column, unsigned long firstRow, unsigned long count,
                        bool* destination) const {
  require(column, firstRow, count);
  const Column& described = m_state->columns[column];
  std::fill_n(destination, count, false);
  if (count > 0 && described.isNullable) {
    m_state->sources[column]->readMissing(firstRow, count, destination);
  }
  if (count > 0 && tellsMissing(described.type)) {
    visitColumnType(described.type, [&](auto tag) {
      using T = typename decltype(tag)::Type;
      const auto cells = std::make_unique<T[]>(count);
      read(column, firstRow, count, cells.get());
      for (unsigned long k = 0; k < count; ++k) {
        destination[k] = destination[k] || isMissing(cells[k], described.type);
      }
    });
  }
}

const void* Table::cellsInPlace(unsigned long column, unsigned long firstRow,
                                unsigned long count) const {
  require(column, firstRow, count);
  return count == 0 ? nullptr : m_state->sources[column]->cellsInPlace(firstRow, count);
}

unsigned long Table::runFrom(unsigned long row) const {
  if (row >= rows()) {
    return 0;
  }
  const memory::Block block = m_state->runs.blockAt(row);
  return block.first + block.count - row;
}

Table Table::reporting(std::function<void(unsigned long rows)> tell) const {
  Table result = *this;
  result.m_tell = std::move(tell);
  return result;
}

memory::TimeForm Table::timeForm(unsigned long column) const {
  require(column, 0, 0);
  if (m_state->columns[column].type != ColumnType::Time) {
    throw std::invalid_argument("The column " + inQuotes(m_state->columns[column].name) +
                                " holds no times");
  }
  return m_state->sources[column]->timeForm();
}

// NOLINTBEGIN(bugprone-macro-parentheses): a type in parentheses is none
#define QUILLON_READ(T)                                                                        \
  template void Table::read(unsigned long column, unsigned long firstRow, unsigned long count, \
                            T* destination) const
// NOLINTEND(bugprone-macro-parentheses)

QUILLON_READ(signed char);
QUILLON_READ(short);
QUILLON_READ(int);
QUILLON_READ(long);
QUILLON_READ(unsigned char);
QUILLON_READ(unsigned short);
QUILLON_READ(unsigned int);
QUILLON_READ(unsigned long);
QUILLON_READ(float);
QUILLON_READ(double);
QUILLON_READ(bool);
QUILLON_READ(std::string);

#undef QUILLON_READ

}  // namespace quillon::tables
