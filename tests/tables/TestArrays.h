#pragma once

#include <object_model/BulkValues.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/memory/Values.h>
#include <quillon/tables/Table.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon::tables {

/// Hours since 1970-01-01 as times, which count how many of them were read.
class Hours final : public memory::ArrayBase, public memory::HasTimes {
 public:
  Hours(const std::string& name, std::vector<memory::Axis> axes, std::vector<double> hours,
        memory::Calendar calendar = memory::Calendar::Standard)
      : ArrayBase(name, object_model::ElementType::Double, axes),
        m_hours("hours", std::move(axes), std::move(hours)),
        m_calendar(calendar) {
    setUnit("hours since 1970-01-01");
  }

  double getValueAsDouble(const object_model::Tuple& index) const override {
    return m_hours.value(index);
  }

  memory::Calendar calendar() const override { return m_calendar; }

  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override {
    unsigned long count = 1;
    for (unsigned long k = 0; k < size().size(); ++k) {
      count *= extent[k];
    }
    m_read += count;
    std::vector<double> hours(count);
    memory::copyValues(m_hours, start, extent, hours.data());
    for (const double hour : hours) {
      *destination++ = hour != hour ? memory::MISSING_TIME : static_cast<long>(hour * 3600e6);
    }
  }

  unsigned long read() const { return m_read; }

 private:
  memory::DoubleArray m_hours;
  memory::Calendar m_calendar;
  mutable unsigned long m_read = 0;
};

/// Numbers that can be read in blocks only, as those of a file, and know what blocks were read.
template <class T>
class Stored final : public memory::ArrayBase, public object_model::BulkValues {
 public:
  Stored(const std::string& name, std::vector<memory::Axis> axes,
         std::vector<typename memory::StoredTraits<T>::Element> values)
      : ArrayBase(name, memory::ElementTraits<typename memory::StoredTraits<T>::Element>::TYPE,
                  axes),
        m_values("values", std::move(axes), std::move(values)) {}

  object_model::StoredType storedType() const override { return memory::StoredTraits<T>::TYPE; }

  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    unsigned long count = 1;
    for (unsigned long k = 0; k < size().size(); ++k) {
      count *= extent[k];
    }
    largestBlock = std::max(largestBlock, count);
    ++blocks;
    std::vector<typename memory::StoredTraits<T>::Element> values(count);
    memory::copyValues(m_values, start, extent, values.data());
    std::transform(values.begin(), values.end(), static_cast<T*>(destination),
                   [](auto value) { return static_cast<T>(value); });
  }

  const unsigned long* chunkExtents() const override {
    return chunks.empty() ? nullptr : chunks.data();
  }

  std::vector<unsigned long> chunks;  ///< one extent for each dimension; empty for none
  mutable unsigned long largestBlock = 0;
  mutable unsigned long blocks = 0;

 private:
  memory::TypedArray<typename memory::StoredTraits<T>::Element> m_values;
};

/// Doubles without bulk values, with coordinates along their dimensions.
class Labelled final : public memory::ArrayBase {
 public:
  Labelled(const std::string& name, std::vector<memory::Axis> axes, std::vector<double> values,
           const std::vector<std::shared_ptr<const object_model::Array>>& coordinates)
      : ArrayBase(name, object_model::ElementType::Double, axes),
        m_values("values", std::move(axes), std::move(values)) {
    for (unsigned long k = 0; k < coordinates.size(); ++k) {
      setCoordinates(k, coordinates[k]);
    }
  }

  double getValueAsDouble(const object_model::Tuple& index) const override {
    return m_values.value(index);
  }

 private:
  memory::DoubleArray m_values;
};

/// All cells of a column.
template <class T>
std::vector<T> cellsOf(const Table& table, unsigned long column) {
  const auto cells = std::make_unique<T[]>(table.rows());
  table.read(column, 0, table.rows(), cells.get());
  return {cells.get(), cells.get() + table.rows()};
}

inline std::vector<std::string> namesOf(const Table& table) {
  std::vector<std::string> names;
  for (const Column& column : table.columns()) {
    names.push_back(column.name);
  }
  return names;
}

/// 0, 1, 2, …
template <class T>
std::vector<T> countedUp(unsigned long count) {
  std::vector<T> values(count);
  for (unsigned long k = 0; k < count; ++k) {
    values[k] = static_cast<T>(k);
  }
  return values;
}

}  // namespace quillon::tables
