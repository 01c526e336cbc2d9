#pragma once

#include <tabra/DataFrameView.h>

#include <algorithm>
#include <functional>
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

/// Writes an empty cell, which still takes the field width, and leaves the cursor where it is.
template <class Stream>
void* writeEmptyCell(Stream& stream, void* cursor) {
  stream << "";
  return cursor;
}

/// Reads the first `rowCount` rows of every column in one go each, and binds one cell writer to
/// each column. The cursors point to the first value of each column's buffer.
///
/// A column of a type that cannot be shown has an empty buffer and a writer of empty cells, so that
/// every later column keeps its place; its read is issued all the same.
template <class Stream>
void extractDataOfDataFrame(const std::shared_ptr<tabra::DataFrameView>& frame,
                            std::vector<std::vector<unsigned char>>& buffers,
                            std::vector<void*>& cursors,
                            std::vector<std::function<void*(Stream&, void*)>>& writers,
                            unsigned long rowCount) {
  constexpr unsigned long VALUE_SIZE = 8;
  const unsigned long columns = frame->shape()[0];
  buffers.resize(columns);
  cursors.resize(columns);
  writers.clear();
  const auto bind = [&](unsigned long column, void* (*writer)(Stream&, void*)) {
    std::vector<unsigned char>& buffer = buffers[column];
    if (rowCount > buffer.max_size() / VALUE_SIZE) {
      throw std::length_error("Cannot hold " + std::to_string(rowCount) + " rows of a column");
    }
    buffer.resize(rowCount * VALUE_SIZE);
    writers.emplace_back(writer);
  };
  for (unsigned long i = 0; i < columns; ++i) {
    switch (frame->columnDataType(i).id()) {
      case tabra::DataTypeId::UInt64:
        bind(i, &writeToStream<Stream, unsigned long>);
        break;
      case tabra::DataTypeId::Int64:
        bind(i, &writeToStream<Stream, long>);
        break;
      case tabra::DataTypeId::Float64:
        bind(i, &writeToStream<Stream, double>);
        break;
      default:
        writers.emplace_back(&writeEmptyCell<Stream>);
        break;
    }
    frame->read(i, 0, rowCount, buffers[i].data());
    cursors[i] = buffers[i].data();
  }
}

/// The rows of a table that a rendering shows, and what is needed to write them cell by cell.
template <class Stream>
class FrameExtract {
 public:
  FrameExtract(const std::shared_ptr<tabra::DataFrameView>& frame, unsigned long maxRows) {
    const std::array<unsigned long, 2> shape = frame->shape();
    m_columns = shape[0];
    m_rows = shape[1];
    m_shownRows = maxRows == 0 || m_rows <= maxRows ? m_rows : maxRows;
    extractDataOfDataFrame(frame, m_buffers, m_cursors, m_writers, m_shownRows);
    // A table that has lost columns meanwhile has nothing to show for them.
    m_columns = std::min<unsigned long>(m_columns, m_writers.size());
  }

  unsigned long columns() const { return m_columns; }
  unsigned long shownRows() const { return m_shownRows; }
  bool rowsLeftOut() const { return m_shownRows < m_rows; }

  /// Writes the next value of `column`, from the first row shown on.
  void writeNext(unsigned long column, Stream& stream) {
    m_cursors[column] = m_writers[column](stream, m_cursors[column]);
  }

 private:
  unsigned long m_columns;
  unsigned long m_rows;
  unsigned long m_shownRows;
  std::vector<std::vector<unsigned char>> m_buffers;
  std::vector<void*> m_cursors;
  std::vector<std::function<void*(Stream&, void*)>> m_writers;
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
  if (std::locale() == std::locale::classic()) {
    FrameExtract<ClassicStream> extract(frame, maxRows);
    ClassicStream stream;
    render(extract, stream);
    return stream.takeText();
  }
  FrameExtract<std::ostringstream> extract(frame, maxRows);
  std::ostringstream stream;
  // By default a stream only takes note of an exception, such as that memory ran out, and would
  // leave out the rest of the text.
  stream.exceptions(std::ostringstream::badbit);
  render(extract, stream);
  return stream.str();
}

}  // namespace object_model
