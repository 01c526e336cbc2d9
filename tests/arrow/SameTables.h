#pragma once

#include <quillon/tables/Table.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace quillon::arrow {

/// The first difference of two tables in names, types, rows, what is missing and the other cells;
/// empty for none. Units are not compared.
inline std::string differenceOf(const tables::Table& a, const tables::Table& b) {
  if (a.rows() != b.rows() || a.columns().size() != b.columns().size()) {
    return "another shape";
  }
  const unsigned long rows = a.rows();
  for (unsigned long k = 0; k < a.columns().size(); ++k) {
    const std::string column = "column " + a.columns()[k].name;
    if (a.columns()[k].name != b.columns()[k].name || a.columns()[k].type != b.columns()[k].type) {
      return column + ": another name or type";
    }
    const auto missing = std::make_unique<bool[]>(2 * rows);
    a.readMissing(k, 0, rows, missing.get());
    b.readMissing(k, 0, rows, missing.get() + rows);
    std::string difference;
    tables::visitColumnType(a.columns()[k].type, [&](auto tag) {
      using T = typename decltype(tag)::Type;
      const auto cells = std::make_unique<T[]>(2 * rows);
      a.read(k, 0, rows, cells.get());
      b.read(k, 0, rows, cells.get() + rows);
      for (unsigned long row = 0; row < rows && difference.empty(); ++row) {
        const bool areSame = missing[row] ? missing[rows + row]
                                          : !missing[rows + row] && cells[row] == cells[rows + row];
        difference = areSame ? "" : column + ": another cell in row " + std::to_string(row);
      }
    });
    if (!difference.empty()) {
      return difference;
    }
  }
  return {};
}

}  // namespace quillon::arrow
