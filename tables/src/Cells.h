#pragma once

#include <quillon/tables/Cursor.h>

#include <memory>
#include <string_view>
#include <vector>

#include "Buffer.h"

namespace quillon::tables {

/// How cells are written.
struct CellStyle {
  int digits = 0;            ///< significant ones of fractions; 0 for the shortest text
  std::string_view missing;  ///< what stands for a missing cell
  bool isJson = false;       ///< times and infinities are strings
  void (*text)(std::string_view text, Buffer& buffer) = nullptr;  ///< writes a text
};

/// Writes the cells of one column.
class CellWriter {
 public:
  CellWriter() = default;
  CellWriter(const CellWriter&) = delete;
  CellWriter& operator=(const CellWriter&) = delete;
  virtual ~CellWriter() = default;

  /// Turns to the run that the cursor is at.
  virtual void turnTo(const Cursor& cursor) = 0;
  /// Appends a cell of the run.
  virtual void write(unsigned long row, Buffer& buffer) = 0;
};

/// A writer for each column of the table.
std::vector<std::unique_ptr<CellWriter>> cellWriters(const Table& table, const CellStyle& style);

/// Writes all bytes of `text`, for writers that escape them.
void appendAsItIs(std::string_view text, Buffer& buffer);

/// Writes `text` as it is but for bytes that are no UTF-8, for each of which U+FFFD stands.
void appendUtf8(std::string_view text, Buffer& buffer);

/// Goes through the rows of a table, with the writers turned to the run that each is in.
/// @param visit is called with the row's number in the run.
template <class Visit>
void forEachRow(const Table& table, unsigned long maxRows,
                const std::vector<std::unique_ptr<CellWriter>>& writers, const Visit& visit) {
  Cursor cursor(table, maxRows);
  while (cursor.next()) {
    for (const auto& writer : writers) {
      writer->turnTo(cursor);
    }
    for (unsigned long row = 0; row < cursor.rows(); ++row) {
      visit(row);
    }
  }
}

}  // namespace quillon::tables
