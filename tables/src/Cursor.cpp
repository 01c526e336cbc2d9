#include <quillon/tables/Cursor.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillon::tables {

/// A buffer for the cells of one column.
class Cursor::Cells {
 public:
  virtual ~Cells() = default;
  virtual void read(const Table& table, unsigned long column, unsigned long first,
                    unsigned long count) = 0;
  virtual bool isMissing(unsigned long row) const = 0;

  void readMissing(const Table& table, unsigned long column, unsigned long first,
                   unsigned long count) {
    if (!table.columns()[column].isNullable) {
      return;
    }
    if (count > m_missingSize) {
      m_missing = std::make_unique<bool[]>(count);
      m_missingSize = count;
    }
    table.readMissing(column, first, count, m_missing.get());
  }

  const bool* missing() const { return m_missing.get(); }

  template <class T>
  class Of;

 private:
  std::unique_ptr<bool[]> m_missing;
  unsigned long m_missingSize = 0;
};

template <class T>
class Cursor::Cells::Of final : public Cells {
 public:
  explicit Of(ColumnType type) : m_type(type) {}

  void read(const Table& table, unsigned long column, unsigned long first,
            unsigned long count) override {
    if (count > m_size) {
      m_values = std::make_unique<T[]>(count);
      m_size = count;
    }
    table.read(column, first, count, m_values.get());
  }

  bool isMissing(unsigned long row) const override {
    return tables::isMissing(m_values[row], m_type);
  }

  const T* values() const { return m_values.get(); }

 private:
  ColumnType m_type;
  unsigned long m_size = 0;
  std::unique_ptr<T[]> m_values;  // std::vector<bool> has no buffer of bool
};

Cursor::Cursor(Table table, unsigned long mostRows)
    : m_table(std::move(table)),
      m_end(mostRows == 0 ? m_table.rows() : std::min(mostRows, m_table.rows())) {
  for (const Column& column : m_table.columns()) {
    visitColumnType(column.type, [&](auto tag) {
      m_cells.push_back(std::make_unique<Cells::Of<typename decltype(tag)::Type>>(column.type));
    });
  }
}

Cursor::~Cursor() = default;

bool Cursor::next() {
  m_first += m_rows;
  m_rows = std::min(m_table.runFrom(m_first), m_end - m_first);
  for (unsigned long k = 0; m_rows > 0 && k < m_cells.size(); ++k) {
    m_cells[k]->read(m_table, k, m_first, m_rows);
    m_cells[k]->readMissing(m_table, k, m_first, m_rows);
  }
  if (m_rows > 0 && m_table.m_tell) {
    m_table.m_tell(m_rows);
  }
  return m_rows > 0;
}

template <class T>
const T* Cursor::cells(unsigned long column) const {
  const auto* cells = dynamic_cast<const Cells::Of<T>*>(m_cells.at(column).get());
  if (cells == nullptr) {
    throw std::invalid_argument("The column is of another type than its cells were asked for");
  }
  return cells->values();
}

bool Cursor::isMissing(unsigned long column, unsigned long row) const {
  const bool* const missing = this->missing(column);
  return missing == nullptr ? m_cells[column]->isMissing(row) : missing[row];
}

const bool* Cursor::missing(unsigned long column) const { return m_cells.at(column)->missing(); }

template const signed char* Cursor::cells(unsigned long column) const;
template const short* Cursor::cells(unsigned long column) const;
template const int* Cursor::cells(unsigned long column) const;
template const long* Cursor::cells(unsigned long column) const;
template const unsigned char* Cursor::cells(unsigned long column) const;
template const unsigned short* Cursor::cells(unsigned long column) const;
template const unsigned int* Cursor::cells(unsigned long column) const;
template const unsigned long* Cursor::cells(unsigned long column) const;
template const float* Cursor::cells(unsigned long column) const;
template const double* Cursor::cells(unsigned long column) const;
template const bool* Cursor::cells(unsigned long column) const;
template const std::string* Cursor::cells(unsigned long column) const;

}  // namespace quillon::tables
