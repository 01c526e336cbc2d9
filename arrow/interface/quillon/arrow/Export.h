/// @file
/// Tables as streams of the C data interface of Apache Arrow, for engines such as DuckDB and
/// polars.
///
/// | cells | format | missing |
/// |---|---|---|
/// | integers of 8 to 64 bits | `c`, `s`, `i`, `l`, `C`, `S`, `I`, `L` | null in nullable columns |
/// | `float`, `double` | `f`, `g` | NaN is null, unless `StreamOptions` say otherwise |
/// | `bool` | `b` | null in nullable columns |
/// | texts | `u`; bytes that are no UTF-8 become U+FFFD | null in nullable columns |
/// | times | `tsu:`, microseconds since 1970 without a zone | null |
/// | times of the calendars `Julian`, `NoLeap`, `Day360` | `u`, ISO 8601 | null |
///
/// Dates that Arrow's calendar, which is Gregorian always, does not have would not survive as
/// numbers; those of the standard calendar are the same instants in both. Each field whose column
/// has a unit has it in its metadata, under the key `units`.
///
/// Ownership: a stream, and each batch on its own, keeps what its table keeps; what the table
/// borrows must outlive them all. They may be released in any order, unread, and in any thread.
/// Cells that lie in memory in the order of the rows (see `tables::Table::cellsInPlace`) are not
/// copied, so they must not be changed while a batch is in use. Memory: one batch.
/// Threads: one at a time for each stream; batches by themselves.
/// Errors: nothing is thrown out of a stream. Its functions return an error number, `EIO` where
/// cells cannot be had, and `get_last_error` has the sentence until the stream is asked again; the
/// rows that failed are tried again then.
#pragma once

#include <quillon/arrow/Interface.h>
#include <quillon/tables/Table.h>

#include <functional>
#include <memory>
#include <string>

namespace quillon::arrow {

/// How a table becomes a stream.
struct StreamOptions {
  /// No batch has more rows; those that are read in blocks may have fewer. At least 1.
  unsigned long maxRows = 1UL << 16U;

  /// Whether NaN is null, as tables have it, or stays a number.
  bool nanIsNull = true;

  /// Words for what the table's arrays throw that is no exception of the standard library or of the
  /// object model. Called while it is handled; it may throw it again to tell what it is.
  std::function<std::string()> explain = {};
};

/// Makes a stream of all rows of `table`, in their order.
/// @param table is shared with the stream, see tables::Table.
/// @param stream what it held is overwritten, not released. It is the caller's to release.
/// @param options for all batches.
/// @throws std::invalid_argument for a `maxRows` of 0, before anything is written.
void exportTable(const tables::Table& table, ArrowArrayStream* stream,
                 const StreamOptions& options = {});

/// The same of all rows of a table of another kind, which the stream shares.
/// @throws tables::Error that names a column of a type that tables cannot read.
void exportView(std::shared_ptr<const tabra::DataFrameView> view, ArrowArrayStream* stream,
                const StreamOptions& options = {});
/// The same; the table is borrowed.
/// @throws tables::Error that names a column of a type that tables cannot read.
void exportView(const tabra::DataFrameView& view, ArrowArrayStream* stream,
                const StreamOptions& options = {});

/// What the stream's `get_schema` gives: a struct with a field for each column. What `schema` held
/// is overwritten, not released. It is the caller's to release.
void exportSchema(const tables::Table& table, ArrowSchema* schema);

}  // namespace quillon::arrow
