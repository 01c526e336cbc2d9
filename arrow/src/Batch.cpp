#include "Batch.h"

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "Buffers.h"
#include "Parts.h"
#include "Schema.h"

namespace quillon::arrow {
namespace {

using tables::Column;
using tables::ColumnType;

/// Makes the batch's child for one column.
class ColumnBatch {
 public:
  ColumnBatch(const tables::Table& table, unsigned long column, Rows rows, bool nanIsNull)
      : m_table(table), m_column(column), m_rows(rows), m_nanIsNull(nanIsNull) {}

  Owned<ArrowArray> make() {
    m_parts->buffers.push_back(nullptr);  // for which rows are valid
    tables::visitColumnType(described().type,
                            [&](auto tag) { add<typename decltype(tag)::Type>(); });
    const auto buffers = static_cast<int64_t>(m_parts->buffers.size());
    const void** const addresses = m_parts->buffers.data();
    Owned<ArrowArray> array = structureOf(std::move(m_parts));
    array->length = static_cast<int64_t>(m_rows.count);
    array->null_count = static_cast<int64_t>(m_nulls);
    array->n_buffers = buffers;
    array->buffers = addresses;
    return array;
  }

 private:
  const Column& described() const { return m_table.columns()[m_column]; }

  template <class T>
  void add() {
    if constexpr (std::is_same_v<T, std::string>) {
      const auto texts = std::make_unique<std::string[]>(m_rows.count);
      m_table.read(m_column, m_rows.first, m_rows.count, texts.get());
      addValidity([](unsigned long) { return false; });
      addTexts([&](unsigned long row) -> const std::string& { return texts[row]; });
    } else if constexpr (std::is_same_v<T, bool>) {
      const std::shared_ptr<const bool> cells = this->cells<bool>();
      addValidity([](unsigned long) { return false; });
      addBuffer(bitsOf(m_rows.count, [&](unsigned long row) { return cells.get()[row]; }));
    } else {
      addNumbers(cells<T>());
    }
  }

  /// The cells where they lie, with what keeps them there, or a copy.
  template <class T>
  std::shared_ptr<const T> cells() const {
    if (const void* const place = m_table.cellsInPlace(m_column, m_rows.first, m_rows.count)) {
      return {std::make_shared<const tables::Table>(m_table), static_cast<const T*>(place)};
    }
    std::shared_ptr<T> copy = bufferOf<T>(m_rows.count);
    m_table.read(m_column, m_rows.first, m_rows.count, copy.get());
    return copy;
  }

  template <class T>
  void addNumbers(std::shared_ptr<const T> cells) {
    const T* const values = cells.get();
    const ColumnType type = described().type;
    const bool isTold = m_nanIsNull || type == ColumnType::Time;
    addValidity([&](unsigned long row) { return isTold && tables::isMissing(values[row], type); });
    if (isText(described())) {
      addTexts([&](unsigned long row) {
        return memory::timeText(static_cast<long>(values[row]), described().calendar,
                                memory::TimeForm::DateAndTime);
      });
    } else {
      addBuffer(std::move(cells));
    }
  }

  /// Which rows are valid, unless all are: not those that are missing by their value or, in
  /// nullable columns, without one.
  template <class IsMissing>
  void addValidity(const IsMissing& isMissing) {
    if (described().isNullable) {
      const auto missing = std::make_unique<bool[]>(m_rows.count);
      m_table.readMissing(m_column, m_rows.first, m_rows.count, missing.get());
      addBits([&](unsigned long row) { return missing[row]; });
    } else {
      addBits(isMissing);
    }
  }

  template <class IsMissing>
  void addBits(const IsMissing& isMissing) {
    for (unsigned long row = 0; row < m_rows.count; ++row) {
      m_nulls += isMissing(row) ? 1UL : 0UL;
    }
    if (m_nulls > 0) {
      addBuffer(bitsOf(m_rows.count, [&](unsigned long row) { return !isMissing(row); }));
      std::swap(m_parts->buffers.front(), m_parts->buffers.back());
      m_parts->buffers.pop_back();
    }
  }

  template <class TextAt>
  void addTexts(const TextAt& textAt) {
    TextBuffers texts(m_rows.count, described().name);
    for (unsigned long row = 0; row < m_rows.count; ++row) {
      texts.add(textAt(row));
    }
    addBuffer(texts.offsets());
    addBuffer(texts.characters());
  }

  template <class T>
  void addBuffer(std::shared_ptr<const T> buffer) {
    m_parts->buffers.push_back(buffer.get());
    m_parts->kept.push_back(std::move(buffer));
  }
  template <class T>
  void addBuffer(std::shared_ptr<T> buffer) {
    addBuffer(std::shared_ptr<const T>(std::move(buffer)));
  }

  const tables::Table& m_table;
  unsigned long m_column;
  Rows m_rows;
  bool m_nanIsNull;
  unsigned long m_nulls = 0;
  std::unique_ptr<Parts<ArrowArray>> m_parts = std::make_unique<Parts<ArrowArray>>();
};

}  // namespace

Owned<ArrowArray> batchOf(const tables::Table& table, Rows rows, bool nanIsNull) {
  auto parts = std::make_unique<Parts<ArrowArray>>();
  for (unsigned long column = 0; column < table.columns().size(); ++column) {
    parts->children.push_back(ColumnBatch(table, column, rows, nanIsNull).make());
  }
  parts->buffers.push_back(nullptr);  // all rows are valid
  const void** const addresses = parts->buffers.data();
  Owned<ArrowArray> batch = structureOf(std::move(parts));
  batch->length = static_cast<int64_t>(rows.count);
  batch->n_buffers = 1;
  batch->buffers = addresses;
  return batch;
}

}  // namespace quillon::arrow
