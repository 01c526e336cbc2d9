#include <object_model/IO.h>

#include <iomanip>

#include "ClassicStream.h"
#include "ColumnWidth.h"
#include "DataFrameExtraction.h"

namespace object_model {
namespace {

void padNext(std::ostringstream& stream, int width) { stream << std::left << std::setw(width); }

void padNext(ClassicStream& stream, int width) { stream.padNext(static_cast<std::size_t>(width)); }

template <class Stream>
void renderText(const tabra::DataFrameView& frame, FrameExtract& extract, Stream& stream) {
  const unsigned long columns = extract.columns();
  if (columns > 0) {
    reserveRows(stream, extract.shownRows(), 1);
  }
  std::vector<int> widths;
  const auto padUnlessLast = [&](unsigned long column) {
    if (column + 1 < columns) {
      padNext(stream, widths[column]);
    }
  };
  for (unsigned long i = 0; i < columns; ++i) {
    const std::string& name = frame.columnName(i);
    widths.push_back(columnWidth(name.size()));
    padUnlessLast(i);
    stream << name << (i + 1 < columns ? "" : "\n");
  }
  // Without columns there are no lines, however many rows there are.
  for (unsigned long row = 0; columns > 0 && row < extract.shownRows(); ++row) {
    for (unsigned long i = 0; i < columns; ++i) {
      padUnlessLast(i);
      extract.writeNext(i, stream);
    }
    stream << "\n";
  }
  if (extract.rowsLeftOut()) {
    stream << "...\n";
  }
}

}  // namespace

std::string exportDataFrameToString(std::shared_ptr<tabra::DataFrameView> frame,
                                    unsigned long maxRows) {
  return renderUnderGlobalLocale(
      frame, maxRows, [&](auto& extract, auto& stream) { renderText(*frame, extract, stream); });
}

}  // namespace object_model
