#pragma once

#include <pybind11/numpy.h>
#include <quillon/tables/Table.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SharedDictionary.h"

namespace quillon::python {

/// A dictionary as it is now, with the dictionaries around it, which have its coordinates. Values
/// are shared; dictionaries in it are not there.
class Snapshot {
 public:
  /// @param asNumbers whether times are the numbers that they are stored as.
  Snapshot(const SharedDictionary& dictionary, bool asNumbers);

  const SharedDictionary& dictionary() const { return *m_levels.front(); }
  /// The array that a column of a table is made of.
  ConstArrayPointer find(const tables::ArraySource& source) const;

 private:
  std::vector<std::shared_ptr<SharedDictionary>> m_levels;  // each stands in the next one
};

/// A table as Python holds it. It keeps all that it is made of, as it was.
class TableHandle {
 public:
  TableHandle(const SharedDictionary& dictionary, const tables::Request& request);
  /// A table without index axes that is made of no dictionary.
  explicit TableHandle(tables::Table table) : m_shown(std::move(table)) {}

  const tables::Table& shown() const { return m_shown; }
  const tables::Plan& plan() const { return m_plan; }
  /// The unit of a column as `read` gives its values.
  std::string unitOf(unsigned long column) const;
  /// Rows of a column as numpy has them; of nullable columns as float64 with NaN, texts as empty
  /// ones. It lets go of the GIL. @throws tables::Error for integers that no float64 is then.
  py::array read(unsigned long column, unsigned long first, unsigned long count) const;

 private:
  bool isTime(unsigned long column) const;
  py::array readNullable(unsigned long column, unsigned long first, unsigned long count) const;
  std::string spelledDtype(unsigned long column) const;
  tables::Table makeTable(const std::shared_ptr<const Snapshot>& snapshot) const;

  std::shared_ptr<const Snapshot> m_snapshot;
  tables::Plan m_plan;
  tables::Table m_shown;
  // Where there are times: their columns as numbers, which have the dtype and the precision of
  // their arrays.
  std::optional<tables::Table> m_numbers;
};

}  // namespace quillon::python
