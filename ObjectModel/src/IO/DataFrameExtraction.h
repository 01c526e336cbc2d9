#pragma once

#include <tabra/DataFrameView.h>

#include <algorithm>
#include <array>
#include <locale>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ClassicStream.h"

namespace object_model {

/// Writes the `T` at `cursor` as the stream's state has it and returns the cursor moved past it.
template <class Stream, class T>
void* writeToStream(Stream& stream, void* cursor) {
  T* const value = static_cast<T*>(cursor);
  stream << *value;
  return value + 1;
}

/// The first rows of a table, read column by column in one go each, to be written cell by cell.
///
/// A column of a type that cannot be shown has an empty buffer and empty cells, so that every later
/// column keeps its place; its read is issued all the same.
class FrameExtract {
 public:
  /// @param maxRows how many rows are shown at most; 0 for all.
  FrameExtract(const std::shared_ptr<tabra::DataFrameView>& frame, unsigned long maxRows) {
    const std::array<unsigned long, 2> shape = frame->shape();
    m_rows = shape[1];
    m_shownRows = maxRows == 0 || m_rows <= maxRows ? m_rows : maxRows;
    readColumns(*frame);
    // A table that has lost columns meanwhile has nothing to show for them.
    m_columns = std::min<unsigned long>(shape[0], m_types.size());
  }

  unsigned long columns() const { return m_columns; }
  unsigned long shownRows() const { return m_shownRows; }
  bool rowsLeftOut() const { return m_shownRows < m_rows; }

  /// Writes the next value of `column`, from the first row shown on.
  template <class Stream>
  void writeNext(unsigned long column, Stream& stream) {
    void*& cursor = m_cursors[column];
    switch (m_types[column]) {
      case tabra::DataTypeId::UInt64:
        cursor = writeToStream<Stream, unsigned long>(stream, cursor);
        break;
      case tabra::DataTypeId::Int64:
        cursor = writeToStream<Stream, long>(stream, cursor);
        break;
      case tabra::DataTypeId::Float64:
        cursor = writeToStream<Stream, double>(stream, cursor);
        break;
      default:
        stream << "";  // takes the field width
        break;
    }
  }

 private:
  static constexpr unsigned long VALUE_SIZE = 8;

  static bool isShown(tabra::DataTypeId type) {
    return type == tabra::DataTypeId::UInt64 || type == tabra::DataTypeId::Int64 ||
           type == tabra::DataTypeId::Float64;
  }

  void readColumns(const tabra::DataFrameView& frame) {
    const unsigned long columns = frame.shape()[0];
    m_buffers.resize(columns);
    m_cursors.resize(columns);
    for (unsigned long i = 0; i < columns; ++i) {
      std::vector<unsigned char>& buffer = m_buffers[i];
      m_types.push_back(frame.columnDataType(i).id());
      if (isShown(m_types.back())) {
        if (m_shownRows > buffer.max_size() / VALUE_SIZE) {
          throw std::length_error("Cannot hold " + std::to_string(m_shownRows) +
                                  " rows of a column");
        }
        buffer.resize(m_shownRows * VALUE_SIZE);
      }
      frame.read(i, 0, m_shownRows, buffer.data());
      m_cursors[i] = buffer.data();
    }
  }

  unsigned long m_columns;
  unsigned long m_rows;
  unsigned long m_shownRows;
  std::vector<std::vector<unsigned char>> m_buffers;
  std::vector<void*> m_cursors;
  std::vector<tabra::DataTypeId> m_types;
};

/// Refuses text that no memory can hold before any of it is written. A table can claim any number
/// of rows, and where it has no values to read, nothing else would stop them.
inline void reserveText(ClassicStream& stream, std::size_t length) { stream.reserve(length); }
inline void reserveText(std::ostringstream& /*stream*/, std::size_t length) {
  // Such a stream cannot reserve: only try whether the memory is there.
  std::string().reserve(length);
}

/// Does so for `rows` rows that each take `rowLength` characters or more.
template <class Stream>
void reserveRows(Stream& stream, unsigned long rows, std::size_t rowLength) {
  if (rows > std::string().max_size() / rowLength) {
    throw std::length_error("Cannot hold the text of " + std::to_string(rows) + " rows");
  }
  reserveText(stream, rows * rowLength);
}

/// Renders `frame` with `render`, a callable for both kinds of stream: with the fast one where the
/// global locale, which a stream takes up, is the classic one, and else with a standard stream.
template <class Render>
std::string renderUnderGlobalLocale(const std::shared_ptr<tabra::DataFrameView>& frame,
                                    unsigned long maxRows, const Render& render) {
  FrameExtract extract(frame, maxRows);
  // The locale counts as it is once the values are read: a table may set it while it is read.
  if (std::locale() == std::locale::classic()) {
    ClassicStream stream;
    render(extract, stream);
    return stream.takeText();
  }
  std::ostringstream stream;
  // By default a stream only takes note of an exception, such as that memory ran out, and would
  // leave out the rest of the text.
  stream.exceptions(std::ostringstream::badbit);
  render(extract, stream);
  return stream.str();
}

}  // namespace object_model
