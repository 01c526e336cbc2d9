#include <object_model/IO.h>

#include <algorithm>
#include <iomanip>
#include <limits>
#include <stdexcept>

#include "ClassicStream.h"
#include "DataFrameExtraction.h"

namespace object_model {
namespace {

int widthOf(const std::string& columnName) {
  constexpr std::size_t LEAST_WIDTH = 15;
  constexpr std::size_t GAP = 2;
  const std::size_t width = std::max(columnName.size() + GAP, LEAST_WIDTH);
  if (width > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::length_error("A column name of " + std::to_string(columnName.size()) +
                            " characters is too long to be aligned");
  }
  return static_cast<int>(width);
}

void padNext(std::ostringstream& stream, int width) { stream << std::left << std::setw(width); }

void padNext(ClassicStream& stream, int width) { stream.padNext(static_cast<std::size_t>(width)); }

template <class Stream>
void renderText(const tabra::DataFrameView& frame, FrameExtract<Stream>& extract, Stream& stream) {
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
    widths.push_back(widthOf(name));
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
