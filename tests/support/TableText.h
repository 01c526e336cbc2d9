#pragma once

#include <tabra/DataFrameView.h>

#include <sstream>
#include <string>
#include <vector>

namespace test {

/// A whole table as text, one line a column: `A (m) double: 1 2 3`. For assertions on all of it.
inline std::string tableText(const tabra::DataFrameView& frame) {
  const auto shape = frame.shape();
  std::ostringstream text;
  const auto cells = [&](unsigned long column, auto zero) {
    std::vector<decltype(zero)> values(shape[1]);
    frame.read(column, 0, shape[1], values.data());
    for (const auto& value : values) {
      text << ' ' << value;
    }
  };
  for (unsigned long column = 0; column < shape[0]; ++column) {
    text << frame.columnName(column) << " (" << frame.columnUnit(column) << ") ";
    switch (frame.columnDataType(column).id()) {
      case tabra::DataTypeId::UInt64:
        text << "uint:";
        cells(column, 0UL);
        break;
      case tabra::DataTypeId::Int64:
        text << "int:";
        cells(column, 0L);
        break;
      case tabra::DataTypeId::Float64:
        text << "double:";
        cells(column, 0.0);
        break;
      default:
        text << "other";
    }
    text << '\n';
  }
  text << shape[1] << " rows\n";
  return text.str();
}

}  // namespace test
