/// @file
/// Columns of one length, read in runs of rows.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Time.h>
#include <quillon/tables/Plan.h>
#include <tabra/DataFrameView.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon::tables {

/// What the cells of a column are. The numbers and truth values have the values of
/// `object_model::StoredType`.
enum class ColumnType : int {
  Int8 = 0,      ///< `signed char`
  Int16 = 1,     ///< `short`
  Int32 = 2,     ///< `int`
  Int64 = 3,     ///< `long`
  UInt8 = 4,     ///< `unsigned char`
  UInt16 = 5,    ///< `unsigned short`
  UInt32 = 6,    ///< `unsigned int`
  UInt64 = 7,    ///< `unsigned long`
  Float32 = 8,   ///< `float`; NaN is missing
  Float64 = 9,   ///< `double`; NaN is missing
  Boolean = 12,  ///< `bool`
  Text = 13,     ///< `std::string`, UTF-8
  Time = 14,     ///< `long`: microseconds since 1970-01-01T00:00:00 of the column's calendar;
                 ///< `memory::MISSING_TIME` is missing
};

/// The C++ types of cells. A `Time` is read as a `long`.
using CellTypes = memory::TypeList<signed char, short, int, long, unsigned char, unsigned short,
                                   unsigned int, unsigned long, float, double, bool, std::string>;

/// Whether the values of such cells can say that they are missing.
[[nodiscard]] constexpr bool tellsMissing(ColumnType type) {
  return type == ColumnType::Time || type == ColumnType::Float32 || type == ColumnType::Float64;
}

/// Whether the value of a cell of such a column says that it is missing.
template <class T>
[[nodiscard]] bool isMissing(const T& cell, ColumnType type) {
  if constexpr (std::is_floating_point_v<T>) {
    return std::isnan(cell);
  } else if constexpr (std::is_same_v<T, long>) {
    return type == ColumnType::Time && cell == memory::MISSING_TIME;
  } else {
    return false;
  }
}

/// What is known of a column.
struct Column {
  std::string name;                                        ///< unique in its table
  std::string unit;                                        ///< empty where it has none
  ColumnType type = ColumnType::Float64;                   ///< of its cells
  memory::Calendar calendar = memory::Calendar::Standard;  ///< of times
  bool isIndex = false;  ///< whether it tells the points of an index axis
  /// Whether cells may be missing whose value does not say so; see Table::readMissing().
  bool isNullable = false;
};

class ColumnSource;

/// Columns of one length, each with a name, a unit and a type. Nothing is computed before it is
/// read, and never more than the rows that are asked for; arrays in memory are read where they lie,
/// others in blocks.
///
/// Ownership: a table keeps what it was made of where it is given a `shared_ptr`, and borrows it
/// where it is given a reference, which must then outlive the table and its copies. Copies share
/// everything; they are cheap. Threads: const operations may run concurrently where those of the
/// arrays may.
class Table {
 public:
  /// The table that `plan` describes, over the dictionary that was planned with.
  /// @throws Error when an array is not there any more or has another shape.
  Table(std::shared_ptr<const object_model::Dictionary> dictionary, const Plan& plan);
  /// @copydoc Table
  Table(const object_model::Dictionary& dictionary, const Plan& plan);

  /// The table `view`, whose columns must be of the types that `tabra::DataTypeId` lists.
  /// @throws Error that names a column of another type.
  explicit Table(std::shared_ptr<const tabra::DataFrameView> view);
  /// @copydoc Table
  explicit Table(const tabra::DataFrameView& view);

  /// A table of `rows` rows whose columns are read from `columns`, in their order; see
  /// `<quillon/tables/ColumnSource.h>`.
  /// @throws Error that names two columns of one name.
  Table(std::vector<std::unique_ptr<ColumnSource>> columns, unsigned long rows);

  /// The columns in their order, index columns among them.
  const std::vector<Column>& columns() const;
  /// How many rows every column has.
  unsigned long rows() const;
  /// A sentence for each array that is not in the table, with the reason.
  const std::vector<std::string>& notes() const;

  /// Copies `count` cells of a column, from the row `firstRow` on, to `destination`. `T` is one of
  /// `CellTypes`, the one that the column's type stands for.
  /// @throws std::out_of_range for a column or rows that are not there.
  /// @throws std::invalid_argument for another `T`; Error when an array has changed its shape.
  ///   What the arrays throw passes through.
  template <class T>
  void read(unsigned long column, unsigned long firstRow, unsigned long count,
            T* destination) const;

  /// Copies which of `count` cells are missing, from the row `firstRow` on: what the column's type
  /// calls missing and, of nullable columns, the cells that have no value. What read() gives for
  /// these is of no meaning. Reads the cells where their values tell.
  /// @throws what read() does.
  void readMissing(unsigned long column, unsigned long firstRow, unsigned long count,
                   bool* destination) const;

  /// Where `count` cells of a column, from the row `firstRow` on, lie one after the other in
  /// memory, in the C++ type of the column; null where they have to be read, and where there are
  /// none. It holds as long as the table or a copy lives and its arrays do not change.
  /// @throws std::out_of_range for a column or rows that are not there; Error when an array has
  ///   changed its shape.
  [[nodiscard]] const void* cellsInPlace(unsigned long column, unsigned long firstRow,
                                         unsigned long count) const;

  /// How many rows are best read at once from `row` on: they end where a block of the arrays does.
  /// At least 1 and of limited memory for all columns together, unless `row` is the end: then 0.
  [[nodiscard]] unsigned long runFrom(unsigned long row) const;

  /// The same table, for whose runs `tell` is called with how many rows were read by each step of a
  /// `Cursor`, and so by each writer. What it throws passes through.
  [[nodiscard]] Table reporting(std::function<void(unsigned long rows)> tell) const;

  /// How the times of a column are best written: all in the form that its array needs, whichever
  /// part of it the table has. Reads all of them. @throws std::invalid_argument for other columns.
  memory::TimeForm timeForm(unsigned long column) const;

 private:
  struct State;
  void require(unsigned long column, unsigned long firstRow, unsigned long count) const;

  friend class Cursor;

  std::shared_ptr<const State> m_state;
  std::function<void(unsigned long)> m_tell;
};

/// Calls `visit(memory::TypeTag<T>())` with the C++ type of the column's cells.
template <class Visit>
void visitColumnType(ColumnType type, Visit&& visit) {
  if (type == ColumnType::Text) {
    visit(memory::TypeTag<std::string>());
  } else if (type == ColumnType::Time) {
    visit(memory::TypeTag<long>());
  } else {
    memory::visitType(static_cast<object_model::StoredType>(type), std::forward<Visit>(visit),
                      memory::TypeList<signed char, short, int, long, unsigned char, unsigned short,
                                       unsigned int, unsigned long, float, double, bool>());
  }
}

/// Whether the column's type is one of the numbers.
[[nodiscard]] bool isNumber(ColumnType type);

}  // namespace quillon::tables
