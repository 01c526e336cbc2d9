#include <object_model/IO.h>

#include <string_view>

#include "DataFrameExtraction.h"

namespace object_model {
namespace {

// The markup, piece by piece. Its layout is unusual and callers compare it whole: every cell is a
// header cell, the body's rows are nested in one further row, cells are not indented, and the last
// cell of the head shares its line with the end of its row.
constexpr std::string_view BEFORE_HEAD_CELLS =
    "<table>\n"
    "    <thead>\n"
    "        <tr>\n";
constexpr std::string_view BETWEEN_HEAD_AND_BODY =
    "        </tr>\n"
    "    </thead>\n"
    "    <tbody>\n"
    "        <tr>\n";
constexpr std::string_view ROW_BEGIN = "            <tr>";
constexpr std::string_view ROW_END = "            </tr>\n";
constexpr std::string_view AFTER_BODY =
    "        </tr>\n"
    "    </tbody>\n"
    "</table>\n";
constexpr std::string_view CELL_BEGIN = "<th>";
constexpr std::string_view CELL_END = "</th>";
constexpr std::string_view ROWS_LEFT_OUT = "...";

template <class Stream>
void renderHtml(const tabra::DataFrameView& frame, FrameExtract& extract, Stream& stream) {
  reserveRows(stream, extract.shownRows(), ROW_BEGIN.size() + ROW_END.size());
  stream << BEFORE_HEAD_CELLS;
  for (unsigned long i = 0; i < extract.columns(); ++i) {
    stream << CELL_BEGIN << frame.columnName(i) << CELL_END;
  }
  stream << BETWEEN_HEAD_AND_BODY;
  for (unsigned long row = 0; row < extract.shownRows(); ++row) {
    stream << ROW_BEGIN;
    for (unsigned long i = 0; i < extract.columns(); ++i) {
      stream << CELL_BEGIN;
      extract.writeNext(i, stream);
      stream << CELL_END;
    }
    stream << ROW_END;
  }
  if (extract.rowsLeftOut()) {
    for (unsigned long i = 0; i < extract.columns(); ++i) {
      stream << CELL_BEGIN << ROWS_LEFT_OUT << CELL_END;
    }
  }
  stream << AFTER_BODY;
}

}  // namespace

std::string exportDataFrameToHtml(std::shared_ptr<tabra::DataFrameView> frame,
                                  unsigned long maxRows) {
  return renderUnderGlobalLocale(
      frame, maxRows, [&](auto& extract, auto& stream) { renderHtml(*frame, extract, stream); });
}

}  // namespace object_model
