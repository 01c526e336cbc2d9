#include "ImportedColumn.h"

#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "FieldMetadata.h"

namespace quillon::arrow {
namespace {

/// Some cells of a batch's child.
struct Part {
  const ArrowArray& array;
  unsigned long first;  // counted in the child's buffers
  unsigned long count;
  unsigned long offset;  // how many cells come before it
};

bool mayHaveNulls(const ArrowArray& array) {
  return array.null_count != 0 && array.buffers[0] != nullptr;
}

/// What a table has for a null. No value of integers stands for one: their columns are nullable.
template <class T>
T nothing() {
  if constexpr (std::is_floating_point_v<T>) {
    return std::numeric_limits<T>::quiet_NaN();
  } else if constexpr (std::is_same_v<T, long>) {
    return memory::MISSING_TIME;
  } else {
    return T();
  }
}

template <class T>
void replaceNulls(const Part& part, T* cells) {
  for (unsigned long k = 0; k < part.count; ++k) {
    if (isNull(part.array, part.first + k)) {
      cells[k] = nothing<T>();
    }
  }
}

}  // namespace

ImportedColumn::ImportedColumn(const ArrowSchema& field, const ImportedType& type,
                               std::shared_ptr<const Batches> batches, std::size_t number)
    : m_name(field.name == nullptr ? "" : field.name),
      m_unit(metadataAt(field.metadata, UNITS)),
      m_type(type),
      m_batches(std::move(batches)),
      m_number(number) {
  forEachPart(0, m_batches->rows(), [&](const Part& part) {
    for (unsigned long k = 0; k < part.count && isToBeLookedAt(part.array); ++k) {
      const bool isNone = isNull(part.array, part.first + k);
      m_isNullable = m_isNullable || (isNone && !tables::tellsMissing(m_type.type));
      if (m_type.holds != nullptr && !isNone && !m_type.holds(part.array, part.first + k)) {
        throw tables::Error("The column " + memory::inQuotes(m_name) +
                            " has times that 64 bits of microseconds since 1970 do not hold");
      }
    }
  });
}

/// Calls `visit` with the parts of the batches that have these rows.
template <class Visit>
void ImportedColumn::forEachPart(unsigned long firstRow, unsigned long count,
                                 const Visit& visit) const {
  const std::vector<unsigned long>& ends = m_batches->ends;
  auto at =
      static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), firstRow) - ends.begin());
  for (unsigned long done = 0; done < count; ++at) {
    const ArrowArray& batch = *m_batches->arrays[at].get();
    const ArrowArray& child = *batch.children[m_number];
    const unsigned long begin = ends[at] - static_cast<unsigned long>(batch.length);
    const unsigned long row = firstRow + done;
    const unsigned long rows = std::min(ends[at] - row, count - done);
    visit(Part{child, static_cast<unsigned long>(batch.offset + child.offset) + row - begin, rows,
               done});
    done += rows;
  }
}

bool ImportedColumn::isToBeLookedAt(const ArrowArray& array) const {
  return m_type.holds != nullptr || mayHaveNulls(array);
}

void ImportedColumn::describe(tables::Column& column) const {
  column.name = m_name;
  column.unit = m_unit;
  column.type = m_type.type;
  column.calendar = memory::Calendar::ProlepticGregorian;
  column.isNullable = m_isNullable;
}

void ImportedColumn::read(unsigned long firstRow, unsigned long count, void* destination) const {
  tables::visitColumnType(m_type.type, [&](auto tag) {
    auto* const cells = static_cast<typename decltype(tag)::Type*>(destination);
    forEachPart(firstRow, count, [&](const Part& part) {
      m_type.read(part.array, part.first, part.count, cells + part.offset);
      if (mayHaveNulls(part.array)) {
        replaceNulls(part, cells + part.offset);
      }
    });
  });
}

void ImportedColumn::readMissing(unsigned long firstRow, unsigned long count,
                                 bool* destination) const {
  forEachPart(firstRow, count, [&](const Part& part) {
    for (unsigned long k = 0; k < part.count; ++k) {
      destination[part.offset + k] = isNull(part.array, part.first + k);
    }
  });
}

const void* ImportedColumn::cellsInPlace(unsigned long firstRow, unsigned long count) const {
  const void* place = nullptr;
  forEachPart(firstRow, count, [&](const Part& part) {
    const bool isWhole = part.count == count && m_type.width > 0 && !mayHaveNulls(part.array);
    const char* const cells =
        isWhole ? static_cast<const char*>(part.array.buffers[1]) + part.first * m_type.width
                : nullptr;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): whether it is aligned
    const bool isAligned = isWhole && reinterpret_cast<uintptr_t>(cells) % m_type.width == 0;
    place = isAligned ? cells : nullptr;
  });
  return place;
}

memory::TimeForm ImportedColumn::timeForm() const {
  memory::TimeForm form = memory::TimeForm::Date;
  std::vector<long> times;
  forEachPart(0, m_batches->rows(), [&](const Part& part) {
    if (form == memory::TimeForm::Date) {
      times.resize(part.count);
      m_type.read(part.array, part.first, part.count, times.data());
      replaceNulls(part, times.data());
      form = memory::timeFormOf(times.data(), times.size());
    }
  });
  return form;
}

}  // namespace quillon::arrow
