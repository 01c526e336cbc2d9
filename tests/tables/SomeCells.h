#pragma once

#include <quillon/tables/ColumnSource.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon::tables {

/// Cells some of which have no value.
template <class T>
class SomeCells final : public ColumnSource {
 public:
  SomeCells(std::string name, ColumnType type, std::vector<T> cells, std::vector<bool> missing)
      : m_name(std::move(name)),
        m_type(type),
        m_cells(std::move(cells)),
        m_missing(std::move(missing)) {}

  void describe(Column& column) const override {
    column.name = m_name;
    column.type = m_type;
    column.unit = "m";
    column.calendar = memory::Calendar::ProlepticGregorian;
    column.isNullable = !m_missing.empty();
  }

  void read(unsigned long first, unsigned long count, void* destination) const override {
    std::copy_n(m_cells.begin() + static_cast<long>(first), count, static_cast<T*>(destination));
  }

  void readMissing(unsigned long first, unsigned long count, bool* destination) const override {
    std::copy_n(m_missing.begin() + static_cast<long>(first), count, destination);
  }

  memory::TimeForm timeForm() const override {
    if constexpr (std::is_same_v<T, long>) {
      return memory::timeFormOf(m_cells.data(), m_cells.size());
    }
    return memory::TimeForm::Date;
  }

 private:
  std::string m_name;
  ColumnType m_type;
  std::vector<T> m_cells;
  std::vector<bool> m_missing;
};

/// Three rows of every type that has no value for what is missing, and of one that has.
inline Table nullables() {
  std::vector<std::unique_ptr<ColumnSource>> columns;
  columns.push_back(std::make_unique<SomeCells<int>>(
      "i", ColumnType::Int32, std::vector<int>{1, 2, 3}, std::vector<bool>{false, true, false}));
  columns.push_back(std::make_unique<SomeCells<bool>>("b", ColumnType::Boolean,
                                                      std::vector<bool>{true, true, false},
                                                      std::vector<bool>{true, false, false}));
  columns.push_back(std::make_unique<SomeCells<std::string>>(
      "t", ColumnType::Text, std::vector<std::string>{"a", "b", "c"},
      std::vector<bool>{false, false, true}));
  columns.push_back(std::make_unique<SomeCells<double>>("d", ColumnType::Float64,
                                                        std::vector<double>{std::nan(""), 0.5, 7},
                                                        std::vector<bool>{false, false, true}));
  return {std::move(columns), 3};
}

}  // namespace quillon::tables
