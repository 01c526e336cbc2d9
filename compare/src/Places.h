#pragma once

#include <object_model/Array.h>
#include <quillon/compare/Report.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/Facets.h>
#include <quillon/memory/Time.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon::compare {

/// The coordinates along one dimension, as far as there are any.
class Coordinates {
 public:
  Coordinates(const object_model::Array& array, unsigned long dimension, unsigned long size);

  bool areKnown() const { return m_array != nullptr; }

  /// What the index stands for; nothing where that cannot be had.
  Value at(unsigned long index) const;

 private:
  void readTimes();
  Value timeAt(unsigned long index) const;

  std::shared_ptr<const object_model::Array> m_array;
  const memory::HasTimes* m_times = nullptr;
  std::vector<long> m_timeValues;
  memory::TimeForm m_form = memory::TimeForm::DateAndTime;
};

/// How positions in an array are described: by dimension names, indices and coordinates.
class Places {
 public:
  /// @param first the array that gives the dimensions' names, and coordinates where it has any.
  /// @param second the array that gives the other coordinates; of the same shape.
  Places(const object_model::Array& first, const object_model::Array& second);

  /// The position of a value in storage order, the slowest dimension first.
  std::vector<Place> at(unsigned long offset) const;

  /// What the dimensions are called, dimension 0 first; each name is unique.
  const std::vector<std::string>& names() const { return m_names; }

 private:
  std::vector<memory::AxisFacts> m_axes;  // dimension 0 first, as the others
  std::vector<std::string> m_names;
  std::vector<Coordinates> m_coordinates;
};

/// The row of values that differ, at the places in arrays that these give.
Difference differenceAt(const std::string& path, const Figures& figures, const Places& places);

}  // namespace quillon::compare
