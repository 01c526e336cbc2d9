#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/Dictionary.h>
#include <object_model/IO.h>
#include <object_model/InvalidCall.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <utility>

#include "ArrayProxy.h"
#include "ColumnFilling.h"
#include "ColumnNaming.h"
#include "ColumnType.h"
#include "GridIteration.h"

namespace object_model {
namespace {

using IndexNames = std::vector<std::string>;
using AxisSizes = std::map<std::string, unsigned long>;  // of the index axes, by name

constexpr unsigned char SPREAD_AXIS = 0;
constexpr unsigned char INDEX_AXIS = 1;

bool isIndexName(const IndexNames& indexNames, const std::string& axisName) {
  return std::find(indexNames.begin(), indexNames.end(), axisName) != indexNames.end();
}

/// The axes of one array, dimension 0 first. Copied before anything else is asked of the array, so
/// that one which changes meanwhile cannot lead a walk astray.
struct Axes {
  std::vector<unsigned long> extents;
  std::vector<std::string> names;
};

/// Replaces `axes`, whose memory serves again, by those of `array`. `onAxis` is called with the
/// number of each axis once its extent and name stand.
template <class OnAxis>
void readAxes(const Array& array, Axes& axes, OnAxis onAxis) {
  axes.extents.clear();
  axes.names.clear();
  const Tuple& shape = array.size();
  for (unsigned long k = 0; k < shape.size(); ++k) {
    axes.extents.push_back(shape[k]);
  }
  const ArrayInfo& info = *array.getInformation()->asArrayInfo();
  for (unsigned long k = 0; k < axes.extents.size(); ++k) {
    const AxisInfo* axis = info.getAxisInfo(k);
    axes.names.push_back(axis == nullptr ? "" : axis->getAxisName());
    onAxis(k);
  }
}

/// Refuses more columns than memory can hold before the first of them is made.
template <std::size_t N>
void reserveSpreadColumns(std::vector<Col>& columns, const std::array<unsigned long, N>& extents,
                          const std::array<unsigned char, N>& mask) {
  constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();
  unsigned long more = 1;
  for (std::size_t k = 0; k < N; ++k) {
    if (mask[k] == SPREAD_AXIS) {
      more = extents[k] > 0 && more > MOST / extents[k] ? MOST : more * extents[k];
    }
  }
  if (more > columns.max_size() - columns.size()) {
    throw std::length_error("The axes of an array span more columns than memory can hold");
  }
  // At least doubled, so that many small entries do not move the columns each time.
  if (more > columns.capacity() - columns.size()) {
    columns.reserve(columns.size() + std::max<std::size_t>(more, columns.size()));
  }
}

/// Appends a column for every coordinate combination of the entry's spread axes.
template <std::size_t N>
void appendSpreadColumns(std::vector<Col>& columns, const std::string& entryName,
                         tabra::DataType type, long entry, const Axes& axes,
                         const std::vector<unsigned char>& kinds) {
  std::array<unsigned long, N> extents;
  std::array<unsigned char, N> mask;
  std::copy_n(axes.extents.begin(), N, extents.begin());
  std::copy_n(kinds.begin(), N, mask.begin());
  reserveSpreadColumns(columns, extents, mask);
  const auto append = [&](const std::array<unsigned long, N>& position) {
    columns.push_back({formatedColName<N>(entryName, axes.names, position, mask), type, entry, {}});
    std::copy(position.begin(), position.end(), columns.back().position.begin());
  };
  iterate<N, N - 1>(extents, append, {}, mask);
}

/// The array that an entry is, or null. A dictionary that breaks its word may have a null entry.
Array* arrayOf(Data* entry) {
  return entry != nullptr && entry->isArray() ? entry->asArray() : nullptr;
}

/// Plans the columns of all array entries, and finds the sizes of the index axes.
std::vector<Col> planColumns(Dictionary& dictionary, const IndexNames& indexNames,
                             AxisSizes& axisSizes) {
  std::vector<Col> columns;
  Axes axes;
  std::vector<unsigned char> kinds;
  const auto classify = [&](unsigned long k) {
    const bool isIndex = isIndexName(indexNames, axes.names[k]);
    kinds.push_back(isIndex ? INDEX_AXIS : SPREAD_AXIS);
    if (isIndex &&
        axisSizes.emplace(axes.names[k], axes.extents[k]).first->second != axes.extents[k]) {
      throw std::runtime_error("Unconvertible Dictionary. Same axes must have the same size");
    }
  };
  // More entries than an int can number cannot be asked for.
  constexpr unsigned long MOST_ENTRIES = 1UL << 31U;
  static_assert(MOST_ENTRIES - 1 == std::numeric_limits<int>::max());
  const unsigned long count = std::min(dictionary.getNumOfData(), MOST_ENTRIES);
  for (unsigned long number = 0; number < count; ++number) {
    const int i = static_cast<int>(number);
    const Array* entry = arrayOf(dictionary.data(i));
    if (entry == nullptr) {
      continue;
    }
    const Array& array = *entry;
    kinds.clear();
    readAxes(array, axes, classify);
    const std::string name = dictionary.getDataName(i);
    const tabra::DataType type = toDataType(array.getElementType());
    switch (axes.extents.size()) {
      case 1:
        columns.push_back({name, type, i, {}});
        break;
      case 2:
        appendSpreadColumns<2>(columns, name, type, i, axes, kinds);
        break;
      case 3:
        appendSpreadColumns<3>(columns, name, type, i, axes, kinds);
        break;
      default:  // no column, though the axes and the element type were checked
        break;
    }
  }
  return columns;
}

/// Adds the index axes that no array carries, with size 0, and multiplies all sizes.
unsigned long countRows(const IndexNames& indexNames, AxisSizes& axisSizes) {
  unsigned long rows = 1;
  for (const std::string& name : indexNames) {
    if (axisSizes.emplace(name, 0).first->second == 0) {
      rows = 0;
    }
  }
  if (rows == 0) {
    return 0;
  }
  for (const auto& axis : axisSizes) {
    if (rows > std::numeric_limits<unsigned long>::max() / axis.second) {
      throw std::length_error("The index axes span more rows than 64 bits can count");
    }
    rows *= axis.second;
  }
  return rows;
}

/// Columns are removed as they were counted before the first removal: a deliberate sequence that
/// frames rely on.
void emptyFrame(tabra::DataFrameView& frame) {
  const std::array<unsigned long, 2> shape = frame.shape();
  for (unsigned long column = 0; column < shape[0]; ++column) {
    frame.removeColumn(column);
  }
  frame.removeRows(0, shape[1]);
}

void addIndexColumns(tabra::DataFrameView& frame, const IndexNames& indexNames,
                     const std::vector<unsigned long>& gridShape) {
  for (std::size_t i = 0; i < indexNames.size(); ++i) {
    frame.addColumn("Index [" + indexNames[i] + "]", tabra::DataType(tabra::DataTypeId::UInt64));
    if (indexNames.size() == 1) {
      createColNamesForArray<1>(&frame, gridShape, i, i);
    } else if (indexNames.size() == 2) {
      createColNamesForArray<2>(&frame, gridShape, i, i);
    } else if (indexNames.size() == 3) {
      createColNamesForArray<3>(&frame, gridShape, i, i);
    }
  }
}

/// How a column sees its array: index axes first, in the caller's order, then the array's others.
struct View {
  std::vector<unsigned long> extents;
  std::vector<unsigned long> sourceAxes;  // ArrayProxy::NO_AXIS for an index axis that it lacks
  std::vector<unsigned char> kinds;

  void append(unsigned long extent, unsigned long sourceAxis, unsigned char kind) {
    extents.push_back(extent);
    sourceAxes.push_back(sourceAxis);
    kinds.push_back(kind);
  }
};

/// `gridShape` has the extents of the index axes, which were agreed on when the columns were
/// planned.
View makeView(const Axes& axes, const IndexNames& indexNames,
              const std::vector<unsigned long>& gridShape) {
  View view;
  for (std::size_t i = 0; i < indexNames.size(); ++i) {
    const auto found = std::find(axes.names.begin(), axes.names.end(), indexNames[i]);
    view.append(gridShape[i],
                found == axes.names.end() ? ArrayProxy::NO_AXIS
                                          : static_cast<unsigned long>(found - axes.names.begin()),
                INDEX_AXIS);
  }
  for (std::size_t k = 0; k < axes.extents.size(); ++k) {
    if (!isIndexName(indexNames, axes.names[k])) {
      view.append(axes.extents[k], k, SPREAD_AXIS);
    }
  }
  return view;
}

/// Fills the data columns, one call a column.
class ColumnFiller {
 public:
  ColumnFiller(tabra::DataFrameView& frame, const IndexNames& indexNames,
               const std::vector<unsigned long>& gridShape)
      : m_frame(frame), m_indexNames(indexNames), m_gridShape(gridShape) {}

  void fill(Array& array, const Col& planned, unsigned long column) {
    m_frame.setUnit(column, array.getPhysicalUnit());
    lookAt(array);
    m_start.clear();
    for (const unsigned long axis : m_view.sourceAxes) {
      // NO_AXIS lies beyond every position, and so does an axis that the array has grown since the
      // column was planned.
      m_start.push_back(axis < planned.position.size() ? planned.position[axis] : 0);
    }
    switch (array.getElementType()) {
      case ElementType::Int:
        return fillWith<long>(column);
      case ElementType::Double:
        return fillWith<double>(column);
      case ElementType::UInt:
        return fillWith<unsigned long>(column);
      default:
        throw InvalidCall("Unsuported export");  // callers match on the misspelt text: keep it
    }
  }

 private:
  /// Asks for the array's axes at every column, but makes the view of it anew only where they
  /// differ from the last column's: the columns of a wide table mostly share an array.
  void lookAt(Array& array) {
    readAxes(array, m_axesNow, [](unsigned long) {});
    if (m_array == &array && m_axesNow.extents == m_axes.extents &&
        m_axesNow.names == m_axes.names) {
      return;
    }
    std::swap(m_axes, m_axesNow);
    m_view = makeView(m_axes, m_indexNames, m_gridShape);
    m_proxy.emplace(m_view.extents.data(), m_view.extents.size(), m_view.sourceAxes, &array);
    m_array = &array;
  }

  template <class T>
  void fillWith(unsigned long column) {
    switch (m_view.extents.size()) {
      case 1:
        return fillColumn<T, 1>(column);
      case 2:
        return fillColumn<T, 2>(column);
      case 3:
        return fillColumn<T, 3>(column);
      default:  // stays unfilled: grids have at most three dimensions
        return;
    }
  }

  template <class T, std::size_t M>
  void fillColumn(unsigned long column) {
    fillDataFrame<T, M>(&m_frame, *m_proxy, m_view.extents, m_view.kinds, column, m_start);
  }

  tabra::DataFrameView& m_frame;
  const IndexNames& m_indexNames;
  const std::vector<unsigned long>& m_gridShape;

  const Array* m_array = nullptr;  // the one that m_axes, m_view and m_proxy describe
  Axes m_axes;
  View m_view;
  std::optional<ArrayProxy> m_proxy;

  // Of the column at hand; their memory serves all columns.
  Axes m_axesNow;
  std::vector<unsigned long> m_start;
};

}  // namespace

void exportToDataFrame(Dictionary& dictionary, tabra::DataFrameView* frame,
                       const std::vector<std::string>& indexNames) {
  AxisSizes axisSizes;
  const std::vector<Col> columns = planColumns(dictionary, indexNames, axisSizes);
  const unsigned long rows = countRows(indexNames, axisSizes);
  std::vector<unsigned long> gridShape;
  gridShape.reserve(indexNames.size());
  for (const std::string& name : indexNames) {
    gridShape.push_back(axisSizes.at(name));
  }

  emptyFrame(*frame);
  frame->addRows(0, rows);
  addIndexColumns(*frame, indexNames, gridShape);
  for (const Col& column : columns) {
    frame->addColumn(column.name, column.type);
  }
  ColumnFiller filler(*frame, indexNames, gridShape);
  for (std::size_t j = 0; j < columns.size(); ++j) {
    Array* array = arrayOf(dictionary.data(static_cast<int>(columns[j].index)));
    if (array != nullptr) {
      filler.fill(*array, columns[j], indexNames.size() + j);
    }
  }
}

}  // namespace object_model
