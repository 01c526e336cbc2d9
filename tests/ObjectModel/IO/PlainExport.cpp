#include "PlainExport.h"

#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>

#include <algorithm>
#include <functional>
#include <map>
#include <stdexcept>

namespace test {
namespace {

using namespace object_model;
using Numbers = std::vector<unsigned long>;

void walk(std::size_t dimension, const Numbers& shape, const std::vector<bool>& fixed,
          Numbers position, const std::function<void(const Numbers&)>& visit) {
  if (dimension == 0) {
    visit(position);
    return;
  }
  const std::size_t k = dimension - 1;
  if (fixed[k]) {
    walk(k, shape, fixed, position, visit);
    return;
  }
  for (position[k] = 0; position[k] < shape[k]; ++position[k]) {
    walk(k, shape, fixed, position, visit);
  }
}

Numbers shapeOf(Array& array) {
  Numbers shape;
  for (unsigned long k = 0; k < array.size().size(); ++k) {
    shape.push_back(array.size()[k]);
  }
  return shape;
}

std::vector<std::string> axesOf(Array& array) {
  std::vector<std::string> names;
  for (unsigned long k = 0; k < array.size().size(); ++k) {
    names.push_back(array.getInformation()->asArrayInfo()->getAxisInfo(k)->getAxisName());
  }
  return names;
}

struct Column {
  std::string name;
  tabra::DataTypeId type;
  int entry;
  Numbers position;
};

tabra::DataTypeId typeOf(Array& array) {
  static const std::map<ElementType, tabra::DataTypeId> TYPES = {
      {ElementType::UInt, tabra::DataTypeId::UInt64},
      {ElementType::Int, tabra::DataTypeId::Int64},
      {ElementType::Double, tabra::DataTypeId::Float64}};
  const auto found = TYPES.find(array.getElementType());
  if (found == TYPES.end()) {
    throw std::runtime_error("Non convertible type");
  }
  return found->second;
}

void writeValue(tabra::DataFrameView& frame, Array& array, const TupleX& at, unsigned long column,
                unsigned long row) {
  if (array.getElementType() == ElementType::UInt) {
    const unsigned long value = array.getValueAsUInt(at);
    frame.write(column, row, 1, &value);
  } else if (array.getElementType() == ElementType::Int) {
    const long value = array.getValueAsInt(at);
    frame.write(column, row, 1, &value);
  } else {
    const double value = array.getValueAsDouble(at);
    frame.write(column, row, 1, &value);
  }
}

}  // namespace

void plainExport(Dictionary& dictionary, tabra::DataFrameView& frame,
                 const std::vector<std::string>& indexNames) {
  const auto isIndex = [&](const std::string& name) {
    return std::count(indexNames.begin(), indexNames.end(), name) > 0;
  };
  std::map<std::string, unsigned long> sizes;
  std::vector<Column> columns;
  for (int i = 0; i < static_cast<int>(dictionary.getNumOfData()); ++i) {
    if (!dictionary.data(i)->isArray()) {
      continue;
    }
    Array& array = *dictionary.data(i)->asArray();
    const Numbers shape = shapeOf(array);
    const std::vector<std::string> axes = axesOf(array);
    std::vector<bool> fixed;
    for (std::size_t k = 0; k < axes.size(); ++k) {
      fixed.push_back(isIndex(axes[k]));
      if (fixed[k] && sizes.count(axes[k]) > 0 && sizes[axes[k]] != shape[k]) {
        throw std::runtime_error("Unconvertible Dictionary. Same axes must have the same size");
      }
      if (fixed[k]) {
        sizes[axes[k]] = shape[k];
      }
    }
    const tabra::DataTypeId type = typeOf(array);
    const std::string name = dictionary.getDataName(i);
    if (shape.size() == 1) {
      columns.push_back({name, type, i, {0}});
    } else if (shape.size() == 2 || shape.size() == 3) {
      walk(shape.size(), shape, fixed, Numbers(shape.size()), [&](const Numbers& position) {
        std::string parts;
        for (std::size_t k = 0; k < shape.size(); ++k) {
          if (!fixed[k]) {
            parts += (parts.empty() ? "" : ", ") + axes[k] + "=" + std::to_string(position[k]);
          }
        }
        columns.push_back({parts.empty() ? name : name + "[" + parts + "]", type, i, position});
      });
    }
  }

  const std::array<unsigned long, 2> before = frame.shape();
  for (unsigned long j = 0; j < before[0]; ++j) {
    frame.removeColumn(j);
  }
  frame.removeRows(0, before[1]);

  Numbers gridShape;
  for (const std::string& name : indexNames) {
    gridShape.push_back(sizes[name]);
  }
  unsigned long rows = 1;
  for (const auto& size : sizes) {
    rows *= size.second;
  }
  frame.addRows(0, rows);
  for (std::size_t i = 0; i < indexNames.size(); ++i) {
    frame.addColumn("Index [" + indexNames[i] + "]", tabra::DataType(tabra::DataTypeId::UInt64));
    if (indexNames.size() <= 3) {
      unsigned long row = 0;
      walk(gridShape.size(), gridShape, std::vector<bool>(gridShape.size()),
           Numbers(gridShape.size()),
           [&](const Numbers& position) { frame.write(i, row++, 1, &position[i]); });
    }
  }
  for (const Column& column : columns) {
    frame.addColumn(column.name, tabra::DataType(column.type));
  }
  for (std::size_t j = 0; j < columns.size(); ++j) {
    Array& array = *dictionary.data(columns[j].entry)->asArray();
    const unsigned long target = indexNames.size() + j;
    frame.setUnit(target, array.getPhysicalUnit());
    const Numbers shape = shapeOf(array);
    const std::vector<std::string> axes = axesOf(array);
    const unsigned long spread = static_cast<unsigned long>(
        std::count_if(axes.begin(), axes.end(), [&](const auto& axis) { return !isIndex(axis); }));
    if (indexNames.size() + spread > 3) {
      continue;
    }
    unsigned long row = 0;
    walk(gridShape.size(), gridShape, std::vector<bool>(gridShape.size()),
         Numbers(gridShape.size()), [&](const Numbers& gridPosition) {
           TupleX at(shape.size());
           for (std::size_t k = 0; k < shape.size(); ++k) {
             at[k] = isIndex(axes[k]) ? 0 : columns[j].position[k];
           }
           for (std::size_t i = 0; i < indexNames.size(); ++i) {
             const auto axis = std::find(axes.begin(), axes.end(), indexNames[i]);
             if (axis != axes.end()) {
               at[static_cast<unsigned long>(axis - axes.begin())] = gridPosition[i];
             }
           }
           writeValue(frame, array, at, target, row++);
         });
  }
}

}  // namespace test
