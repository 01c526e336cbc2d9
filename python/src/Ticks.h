#pragma once

#include <quillon/memory/Facets.h>

#include <memory>
#include <string>

#include "Sibling.h"

namespace quillon::python {

/// The unit in which numpy counts times and durations: `count` of "ns", "D", ...
struct TickUnit {
  std::string name;
  long count = 1;
  bool isMoment = true;  ///< whether points in time are counted, or durations

  /// As numpy spells the dtype, such as "<M8[ns]" or "<m8[25s]".
  std::string dtype() const;
  /// In words, such as "nanoseconds since 1970-01-01".
  std::string inWords() const;
  /// The point in time that `ticks` of this unit are, see `memory::HasTimes`.
  long timeOf(long ticks) const;
};

/// The unit of a numpy dtype of the kind `M` or `m`. @throws py::type_error for one without a unit.
TickUnit tickUnitOf(const py::dtype& dtype);

/// Durations, or what is common to them and points in time: integers of 64 bits, the lowest of
/// which is missing (NaT).
class DurationArray : public SiblingInBulk, public memory::HasMissing {
 public:
  DurationArray(const std::string& name, ConstArrayPointer integers, TickUnit unit,
                std::shared_ptr<Gate> gate = nullptr);

  std::string dtype() const override { return m_unit.dtype(); }
  /// The unit that was given or, without, that of the dtype.
  std::string getUnit() const override;
  std::string getPhysicalUnit() const override;
  ArrayPointer copy(const std::string& name) const override;

 protected:
  const TickUnit& unit() const { return m_unit; }

 private:
  TickUnit m_unit;
};

/// Points in time.
class MomentArray final : public DurationArray, public memory::HasTimes {
 public:
  using DurationArray::DurationArray;

  memory::Calendar calendar() const override { return memory::Calendar::ProlepticGregorian; }
  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override;
  ArrayPointer copy(const std::string& name) const override;
};

/// The one or the other over an array of integers of 64 bits.
ArrayPointer ticksOf(const std::string& name, const ConstArrayPointer& integers,
                     const TickUnit& unit, const std::shared_ptr<Gate>& gate = nullptr);

}  // namespace quillon::python
