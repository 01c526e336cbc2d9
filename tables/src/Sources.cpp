#include "Sources.h"

#include <object_model/Array.h>
#include <object_model/Tuple.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>
#include <quillon/tables/Error.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include "Coordinates.h"
#include "CopyBox.h"
#include "GridBoxes.h"

namespace quillon::tables {
namespace {

using memory::inQuotes;
using object_model::Array;

/// Blocks that are read from arrays which do not lie in memory have at most so many bytes.
constexpr unsigned long BLOCK_BYTES = 4UL << 20U;

/// How many times, read from first to last of their array, are looked at together. The first few
/// say all of most arrays, and each may stand far from the next in a file.
constexpr unsigned long FIRST_TIMES = 64;
constexpr unsigned long TIMES_AT_ONCE = 1UL << 16U;

ColumnType typeOf(const Array& array) {
  if (dynamic_cast<const memory::HasTimes*>(&array) != nullptr) {
    return ColumnType::Time;
  }
  if (const object_model::BulkValues* bulk = memory::bulkValuesOf(array)) {
    return static_cast<ColumnType>(bulk->storedType());
  }
  switch (array.getElementType()) {
    case object_model::ElementType::UInt:
      return ColumnType::UInt64;
    case object_model::ElementType::Int:
      return ColumnType::Int64;
    case object_model::ElementType::Boolean:
      return ColumnType::Boolean;
    case object_model::ElementType::String:
      return ColumnType::Text;
    default:
      return ColumnType::Float64;
  }
}

template <class T>
class ArraySourceOf final : public ColumnSource {
 public:
  ArraySourceOf(std::shared_ptr<const Array> array, std::vector<DimensionUse> dimensions, Grid grid,
                ColumnType type)
      : m_array(std::move(array)),
        m_dimensions(std::move(dimensions)),
        m_grid(std::move(grid)),
        m_type(type) {
    requireShape();
  }

  void describe(Column& column) const override {
    column.type = m_type;
    column.isNullable = m_type == ColumnType::Int64 && lowestIsMissing(*m_array);
    if (const memory::HasTimes* times = asTimes()) {
      column.calendar = times->calendar();
    } else {
      column.unit = m_array->getUnit();
    }
  }

  void read(unsigned long firstRow, unsigned long count, void* destination) const override {
    requireShape();
    T* const cells = static_cast<T*>(destination);
    const object_model::ValuesInPlace values = place();
    forEachBox(m_grid, firstRow, count, [&](const GridBox& box) {
      if (values.first != nullptr) {
        copyPlaced(values, box, cells + box.offset);
      } else {
        fetch(box.start, box.extent, packedSteps(box.extent), cells + box.offset);
      }
    });
  }

  void readMissing(unsigned long firstRow, unsigned long count, bool* destination) const override {
    if constexpr (std::is_same_v<T, long>) {
      const auto cells = std::make_unique<long[]>(count);
      read(firstRow, count, cells.get());
      std::transform(cells.get(), cells.get() + count, destination,
                     [](long cell) { return cell == memory::MISSING_TIME; });
    }
  }

  const void* cellsInPlace(unsigned long firstRow, unsigned long count) const override {
    requireShape();
    const object_model::ValuesInPlace values = place();
    const char* first = nullptr;
    bool arePacked = values.first != nullptr;
    forEachBox(m_grid, firstRow, count, [&](const GridBox& box) {
      if (arePacked) {
        const char* const origin = originOf(values, box);
        first = box.offset == 0 ? origin : first;
        arePacked = origin == first + box.offset * sizeof(T) &&
                    isPacked(stridesOf(box.extent, values.strides, packedSteps(box.extent)));
      }
    });
    return arePacked ? first : nullptr;
  }

  memory::TimeForm timeForm() const override {
    if constexpr (std::is_same_v<T, long>) {
      // never false: Table asks only columns of times
      if (const memory::HasTimes* times = asTimes()) {
        return formOf(*times);
      }
    }
    return memory::TimeForm::Date;  // never run: Table asks only columns of times
  }

  bool isInMemory() const override { return place().first != nullptr; }

  std::vector<unsigned long> chunks() const override {
    const object_model::BulkValues* bulk = memory::bulkValuesOf(*m_array);
    const unsigned long* extents = bulk == nullptr ? nullptr : bulk->chunkExtents();
    if (extents == nullptr) {
      return {};
    }
    std::vector<unsigned long> result(m_grid.size(), 1);
    for (std::size_t k = 0; k < m_dimensions.size(); ++k) {
      if (m_dimensions[k].axis != NO_AXIS) {
        result[m_dimensions[k].axis] = std::max(1UL, extents[k] / m_dimensions[k].step);
      }
    }
    return result;
  }

 private:
  const memory::HasTimes* asTimes() const {
    return m_type == ColumnType::Time ? dynamic_cast<const memory::HasTimes*>(m_array.get())
                                      : nullptr;
  }

  object_model::ValuesInPlace place() const {
    const object_model::BulkValues* bulk =
        m_type == ColumnType::Time ? nullptr : memory::bulkValuesOf(*m_array);
    return bulk == nullptr ? object_model::ValuesInPlace() : bulk->valuesInPlace();
  }

  /// An array of the caller's may change between two calls.
  void requireShape() const {
    const object_model::Tuple& shape = m_array->size();
    bool fits = shape.size() == m_dimensions.size();
    for (std::size_t k = 0; fits && k < m_dimensions.size(); ++k) {
      fits = isWithin(m_dimensions[k], shape[k]);
    }
    if (!fits) {
      throw Error("The array " + inQuotes(m_array->getName()) +
                  " has another shape than the table was planned with");
    }
  }

  bool isWithin(const DimensionUse& use, unsigned long size) const {
    if (use.step == 0 || (use.axis != NO_AXIS && use.axis >= m_grid.size())) {
      return false;
    }
    const unsigned long count = use.axis == NO_AXIS ? 1 : m_grid[use.axis];
    return count == 0 || (use.first < size && count - 1 <= (size - 1 - use.first) / use.step);
  }

  static std::vector<long> packedSteps(const std::vector<unsigned long>& extent) {
    std::vector<long> steps;
    long step = 1;
    for (const unsigned long count : extent) {
      steps.push_back(step);
      step *= static_cast<long>(count);
    }
    return steps;
  }

  /// How far apart neighbours along each index axis lie, `strides` apart along the dimensions.
  std::vector<Stride> stridesOf(const std::vector<unsigned long>& extent, const long* strides,
                                const std::vector<long>& steps) const {
    std::vector<Stride> result;
    for (std::size_t axis = 0; axis < extent.size(); ++axis) {
      result.push_back({extent[axis], 0, steps[axis]});
    }
    for (std::size_t k = 0; k < m_dimensions.size(); ++k) {
      if (m_dimensions[k].axis != NO_AXIS) {
        result[m_dimensions[k].axis].from += strides[k] * static_cast<long>(m_dimensions[k].step);
      }
    }
    return result;
  }

  /// Where the first value of a box lies.
  const char* originOf(const object_model::ValuesInPlace& values, const GridBox& box) const {
    const char* origin = static_cast<const char*>(values.first);
    for (std::size_t k = 0; k < m_dimensions.size(); ++k) {
      origin += static_cast<long>(startOf(k, box.start)) * values.strides[k];
    }
    return origin;
  }

  void copyPlaced(const object_model::ValuesInPlace& values, const GridBox& box, T* cells) const {
    copyBox(originOf(values, box), stridesOf(box.extent, values.strides, packedSteps(box.extent)),
            cells);
  }

  /// The first index of dimension `k` that the rows from `start` on read.
  unsigned long startOf(std::size_t k, const std::vector<unsigned long>& start) const {
    const DimensionUse& use = m_dimensions[k];
    return use.first + (use.axis == NO_AXIS ? 0 : use.step * start[use.axis]);
  }

  /// Reads the block of the array that covers the rows of a box, in parts where it is large.
  void fetch(const std::vector<unsigned long>& start, const std::vector<unsigned long>& extent,
             const std::vector<long>& steps, T* cells) const {
    memory::Block block = blockOf(start, extent);
    const std::size_t axis = axisToSplit(extent);
    // never false: a block of more than one value has an axis to split
    if (block.count * sizeof(T) > BLOCK_BYTES && axis != NO_AXIS) {
      fetchHalves(start, extent, axis, steps, cells);
      return;
    }
    std::vector<long> strides = packedSteps(block.extent);
    for (long& stride : strides) {
      stride *= static_cast<long>(sizeof(T));
    }
    const std::vector<Stride> copied = stridesOf(extent, strides.data(), steps);
    if (isPacked(copied)) {
      readBlock(block, cells);
      return;
    }
    const auto values = std::make_unique<T[]>(block.count);
    readBlock(block, values.get());
    copyBox(reinterpret_cast<const char*>(values.get()), copied, cells);
  }

  void fetchHalves(std::vector<unsigned long> start, std::vector<unsigned long> extent,
                   std::size_t axis, const std::vector<long>& steps, T* cells) const {
    const unsigned long half = extent[axis] / 2;
    const unsigned long rest = extent[axis] - half;
    extent[axis] = half;
    fetch(start, extent, steps, cells);
    start[axis] += half;
    extent[axis] = rest;
    fetch(start, extent, steps, cells + static_cast<long>(half) * steps[axis]);
  }

  memory::Block blockOf(const std::vector<unsigned long>& start,
                        const std::vector<unsigned long>& extent) const {
    memory::Block block;
    for (std::size_t k = 0; k < m_dimensions.size(); ++k) {
      const DimensionUse& use = m_dimensions[k];
      block.start.push_back(startOf(k, start));
      block.extent.push_back(use.axis == NO_AXIS ? 1 : (extent[use.axis] - 1) * use.step + 1);
      block.count *= block.extent.back();
    }
    return block;
  }

  /// The index axis of the slowest dimension that has more than one index; NO_AXIS for none.
  std::size_t axisToSplit(const std::vector<unsigned long>& extent) const {
    std::size_t axis = NO_AXIS;
    for (const DimensionUse& use : m_dimensions) {
      if (use.axis != NO_AXIS && extent[use.axis] > 1) {
        axis = use.axis;
      }
    }
    return axis;
  }

  /// Whether the block holds just the cells in their order.
  static bool isPacked(const std::vector<Stride>& strides) {
    long next = 1;
    for (const Stride& stride : strides) {
      if (stride.count > 1 &&
          (stride.to != next || stride.from != next * static_cast<long>(sizeof(T)))) {
        return false;
      }
      next *= static_cast<long>(stride.count);
    }
    return true;
  }

  void readBlock(const memory::Block& block, T* values) const {
    if constexpr (std::is_same_v<T, long>) {
      if (const memory::HasTimes* times = asTimes()) {
        times->readTimes(block.start.data(), block.extent.data(), values);
        return;
      }
    }
    memory::copyValues(*m_array, block, values);
  }

  memory::TimeForm formOf(const memory::HasTimes& times) const {
    memory::TimeForm form = memory::TimeForm::Date;
    const memory::BlockLayout first(*m_array, FIRST_TIMES);
    const memory::BlockLayout further(*m_array, TIMES_AT_ONCE);
    std::vector<long> values;
    for (unsigned long done = 0; done < first.size() && form == memory::TimeForm::Date;) {
      const memory::Block block = (done == 0 ? first : further).blockAt(done);
      values.resize(block.count);
      times.readTimes(block.start.data(), block.extent.data(), values.data());
      form = memory::timeFormOf(values.data(), values.size());
      done = block.first + block.count;
    }
    return form;
  }

  std::shared_ptr<const Array> m_array;
  std::vector<DimensionUse> m_dimensions;
  Grid m_grid;
  ColumnType m_type;
};

class Positions final : public ColumnSource {
 public:
  Positions(const DimensionUse& dimension, const Grid& grid) : m_dimension(dimension) {
    if (dimension.axis != NO_AXIS) {
      m_size = grid.at(dimension.axis);
      m_repeats = pointsOf({grid.begin(), grid.begin() + static_cast<long>(dimension.axis)});
    }
  }

  void describe(Column& column) const override { column.type = ColumnType::UInt64; }

  void read(unsigned long firstRow, unsigned long count, void* destination) const override {
    auto* cells = static_cast<unsigned long*>(destination);
    unsigned long row = firstRow;
    while (row < firstRow + count) {
      const unsigned long next = std::min(firstRow + count, (row / m_repeats + 1) * m_repeats);
      const unsigned long index = row / m_repeats % m_size;
      cells = std::fill_n(cells, next - row, m_dimension.first + index * m_dimension.step);
      row = next;
    }
  }

 private:
  DimensionUse m_dimension;
  unsigned long m_size = 1;
  unsigned long m_repeats = 1;  // how many rows in a row have the same position
};

class ViewColumn final : public ColumnSource {
 public:
  ViewColumn(std::shared_ptr<const tabra::DataFrameView> view, unsigned long column,
             ColumnType type)
      : m_view(std::move(view)), m_column(column), m_type(type) {}

  void describe(Column& column) const override {
    column.type = m_type;
    column.unit = m_view->columnUnit(m_column);
  }

  void read(unsigned long firstRow, unsigned long count, void* destination) const override {
    m_view->read(m_column, firstRow, count, destination);
  }

 private:
  std::shared_ptr<const tabra::DataFrameView> m_view;
  unsigned long m_column;
  ColumnType m_type;
};

}  // namespace

std::unique_ptr<ColumnSource> sourceOf(std::shared_ptr<const Array> array,
                                       const std::vector<DimensionUse>& dimensions,
                                       const Grid& grid) {
  const std::string misfit = misfitOf(*array);
  if (!misfit.empty()) {
    throw Error("No column can hold the array " + inQuotes(array->getName()) + ": " + misfit);
  }
  const ColumnType type = typeOf(*array);
  std::unique_ptr<ColumnSource> source;
  visitColumnType(type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    source = std::make_unique<ArraySourceOf<T>>(array, dimensions, grid, type);
  });
  return source;
}

std::unique_ptr<ColumnSource> positionsOf(const DimensionUse& dimension, const Grid& grid) {
  return std::make_unique<Positions>(dimension, grid);
}

std::unique_ptr<ColumnSource> columnOf(std::shared_ptr<const tabra::DataFrameView> view,
                                       unsigned long column) {
  ColumnType type = ColumnType::Float64;
  switch (view->columnDataType(column).id()) {
    case tabra::DataTypeId::UInt64:
      type = ColumnType::UInt64;
      break;
    case tabra::DataTypeId::Int64:
      type = ColumnType::Int64;
      break;
    case tabra::DataTypeId::Float64:
      break;
    default:
      throw Error("The column " + inQuotes(view->columnName(column)) +
                  " is of a type that tables cannot read");
  }
  return std::make_unique<ViewColumn>(std::move(view), column, type);
}

}  // namespace quillon::tables
