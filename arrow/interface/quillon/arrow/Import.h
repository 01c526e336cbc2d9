/// @file
/// Streams of the C data interface of Apache Arrow as tables.
///
/// | format | cells |
/// |---|---|
/// | `c`, `s`, `i`, `l`, `C`, `S`, `I`, `L`, `f`, `g` | numbers of that type |
/// | `b` | `bool` |
/// | `u`, `U`, `vu` | texts |
/// | `tss:`, `tsm:`, `tsu:`, `tsn:`, with any zone | times in UTC, nanoseconds rounded down |
/// | `tdD`, `tdm` | times at midnight; milliseconds as they are |
///
/// Times are microseconds since 1970. Nulls are NaN in columns of floats and `memory::MISSING_TIME`
/// in those of times. Other columns that have nulls are nullable, see `tables::Column::isNullable`.
/// A column's unit is the field's metadata under the key `units`.
#pragma once

#include <quillon/arrow/Interface.h>
#include <quillon/tables/Table.h>

namespace quillon::arrow {

/// The table that a stream has. A stream can be read only once, so all of its batches are taken
/// into memory; their cells are not copied before they are read.
///
/// Ownership: the table keeps the batches; they are released with its last copy, in whichever
/// thread that is.
/// @param stream is taken over and released in any case.
/// @throws tables::Error for a stream that fails, with its words; for columns of other formats, of
///   dictionaries and of what is nested, which are named with their format; for times that
///   microseconds do not hold; for two columns of one name; and for what is no stream of columns.
[[nodiscard]] tables::Table importTable(ArrowArrayStream* stream);

}  // namespace quillon::arrow
