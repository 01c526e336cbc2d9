#include "Cells.h"

#include <quillon/memory/NumberText.h>
#include <quillon/memory/Utf8.h>

#include <cmath>
#include <string>
#include <type_traits>
#include <utility>

namespace quillon::tables {
namespace {

template <class T>
class CellsOf : public CellWriter {
 public:
  CellsOf(unsigned long column, const CellStyle& style) : m_style(style), m_column(column) {}

  void turnTo(const Cursor& cursor) final { m_cells = cursor.cells<T>(m_column); }

 protected:
  CellStyle m_style;
  const T* m_cells = nullptr;

 private:
  unsigned long m_column;
};

template <class T>
class NumberCells final : public CellsOf<T> {
 public:
  using CellsOf<T>::CellsOf;

  void write(unsigned long row, Buffer& buffer) override {
    const T value = this->m_cells[row];
    char* const room = buffer.room(memory::LONGEST_NUMBER);
    if constexpr (std::is_floating_point_v<T>) {
      if (!std::isfinite(value)) {
        writeSpecial(value, buffer);
        return;
      }
      if (this->m_style.digits > 0) {
        buffer.end(memory::writeInDigits(value, this->m_style.digits, room));
        return;
      }
    }
    buffer.end(memory::writeShortest(value, room));
  }

 private:
  void writeSpecial(T value, Buffer& buffer) const {
    if (std::isnan(value)) {
      buffer.append(this->m_style.missing);
    } else if (this->m_style.isJson) {
      buffer.append(value < 0 ? "\"-Infinity\"" : "\"Infinity\"");
    } else {
      buffer.append(value < 0 ? "-inf" : "inf");
    }
  }
};

class TextCells final : public CellsOf<std::string> {
 public:
  using CellsOf::CellsOf;

  void write(unsigned long row, Buffer& buffer) override { m_style.text(m_cells[row], buffer); }
};

class TimeCells final : public CellsOf<long> {
 public:
  TimeCells(unsigned long column, const CellStyle& style, memory::Calendar calendar,
            memory::TimeForm form)
      : CellsOf(column, style), m_calendar(calendar), m_form(form) {}

  void write(unsigned long row, Buffer& buffer) override {
    // A time often stands in many rows, one after the other.
    if (m_cells[row] != m_time) {
      m_time = m_cells[row];
      m_text = memory::timeText(m_time, m_calendar, m_form);
    }
    if (m_text.empty()) {
      buffer.append(m_style.missing);
    } else if (m_style.isJson) {
      buffer.append("\"" + m_text + "\"");
    } else {
      buffer.append(m_text);
    }
  }

 private:
  memory::Calendar m_calendar;
  memory::TimeForm m_form;
  long m_time = memory::MISSING_TIME;
  std::string m_text;
};

/// The cells of a nullable column, those that have a value by way of another writer.
class NullableCells final : public CellWriter {
 public:
  NullableCells(unsigned long column, const CellStyle& style, std::unique_ptr<CellWriter> values)
      : m_values(std::move(values)), m_nothing(style.missing), m_column(column) {}

  void turnTo(const Cursor& cursor) override {
    m_values->turnTo(cursor);
    m_missing = cursor.missing(m_column);
  }

  void write(unsigned long row, Buffer& buffer) override {
    if (m_missing[row]) {
      buffer.append(m_nothing);
    } else {
      m_values->write(row, buffer);
    }
  }

 private:
  std::unique_ptr<CellWriter> m_values;
  std::string_view m_nothing;
  const bool* m_missing = nullptr;
  unsigned long m_column;
};

std::unique_ptr<CellWriter> cellWriter(const Table& table, unsigned long column,
                                       const CellStyle& style) {
  const Column& described = table.columns()[column];
  if (described.type == ColumnType::Time) {
    return std::make_unique<TimeCells>(column, style, described.calendar, table.timeForm(column));
  }
  std::unique_ptr<CellWriter> writer;
  visitColumnType(described.type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (std::is_same_v<T, std::string>) {
      writer = std::make_unique<TextCells>(column, style);
    } else {
      writer = std::make_unique<NumberCells<T>>(column, style);
    }
  });
  return writer;
}

}  // namespace

std::vector<std::unique_ptr<CellWriter>> cellWriters(const Table& table, const CellStyle& style) {
  std::vector<std::unique_ptr<CellWriter>> writers;
  for (unsigned long k = 0; k < table.columns().size(); ++k) {
    writers.push_back(cellWriter(table, k, style));
    if (table.columns()[k].isNullable) {
      writers.back() = std::make_unique<NullableCells>(k, style, std::move(writers.back()));
    }
  }
  return writers;
}

void appendAsItIs(std::string_view text, Buffer& buffer) { buffer.append(text); }

void appendUtf8(std::string_view text, Buffer& buffer) {
  for (;;) {
    const std::size_t length = memory::utf8Length(text);
    buffer.append(text.substr(0, length));
    if (length == text.size()) {
      return;
    }
    buffer.append(memory::REPLACEMENT);
    text.remove_prefix(length + 1);
  }
}

Output into(std::string& text) {
  return [&text](std::string_view piece) { text.append(piece); };
}

}  // namespace quillon::tables
