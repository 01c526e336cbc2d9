#pragma once

#include <quillon/arrow/Interface.h>
#include <quillon/tables/Table.h>

#include <string_view>

namespace quillon::arrow {

/// How the cells of a column of some format are read.
struct ImportedType {
  tables::ColumnType type;
  int64_t buffers;      ///< how many an array has at least
  unsigned long width;  ///< of a cell where it lies as the table has it, in bytes; 0 where not
  /// Copies `count` cells from number `first` on, in the table's type. What it gives for nulls is
  /// of no meaning.
  void (*read)(const ArrowArray& array, unsigned long first, unsigned long count,
               void* destination);
  /// Whether the table's type holds a cell; null where it holds all.
  bool (*holds)(const ArrowArray& array, unsigned long number);
};

/// The type of a format; null for one that no column can hold.
const ImportedType* importedType(std::string_view format);

/// Whether a cell, counted without the array's offset, is null.
bool isNull(const ArrowArray& array, unsigned long number);

}  // namespace quillon::arrow
