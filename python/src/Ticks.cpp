#include "Ticks.h"

#include <object_model/Tuple.h>
#include <quillon/memory/Time.h>

#include <array>
#include <limits>
#include <utility>

namespace quillon::python {
namespace {

using memory::MISSING_TIME;

struct NamedUnit {
  const char* name;
  const char* words;
  long microseconds;  // of one; 0 for months, years and what is shorter
  long fraction;      // of a microsecond; 0 for what is longer
};

constexpr long DAY = memory::MICROSECONDS_PER_DAY;
constexpr std::array<NamedUnit, 13> UNITS = {{
    {"Y", "years", 0, 0},
    {"M", "months", 0, 0},
    {"W", "weeks", 7 * DAY, 0},
    {"D", "days", DAY, 0},
    {"h", "hours", DAY / 24, 0},
    {"m", "minutes", 60000000L, 0},
    {"s", "seconds", 1000000L, 0},
    {"ms", "milliseconds", 1000L, 0},
    {"us", "microseconds", 1L, 0},
    {"ns", "nanoseconds", 0, 1000L},
    {"ps", "picoseconds", 0, 1000000L},
    {"fs", "femtoseconds", 0, 1000000000L},
    {"as", "attoseconds", 0, 1000000000000L},
}};

const NamedUnit* find(const std::string& name) {
  for (const NamedUnit& unit : UNITS) {
    if (unit.name == name) {
      return &unit;
    }
  }
  return nullptr;
}

long floorOf(long number, long divisor) {
  const long quotient = number / divisor;
  return number % divisor < 0 ? quotient - 1 : quotient;
}

/// Months after 1970-01 as a time.
long timeOfMonths(long months) {
  memory::CivilTime civil;
  civil.year = 1970 + floorOf(months, 12);
  civil.month = static_cast<int>(months - floorOf(months, 12) * 12) + 1;
  return memory::timeOf(civil, memory::Calendar::ProlepticGregorian).value_or(MISSING_TIME);
}

/// `factor * number`; MISSING_TIME where 64 bits do not hold it.
long product(long number, long factor) {
  long result = 0;
  return __builtin_mul_overflow(number, factor, &result) ? MISSING_TIME : result;
}

}  // namespace

std::string TickUnit::dtype() const {
  return std::string(isMoment ? "<M8[" : "<m8[") + (count == 1 ? "" : std::to_string(count)) +
         name + "]";
}

std::string TickUnit::inWords() const {
  const NamedUnit* const unit = find(name);
  const std::string words = (count == 1 ? "" : std::to_string(count) + " ") +
                            (unit == nullptr ? name : std::string(unit->words));
  return isMoment ? words + " since 1970-01-01" : words;
}

long TickUnit::timeOf(long ticks) const {
  const NamedUnit* const unit = find(name);
  const long number = ticks == MISSING_TIME ? ticks : product(ticks, count);
  if (number == MISSING_TIME || unit == nullptr) {
    return MISSING_TIME;
  }
  if (unit->microseconds != 0) {
    return product(number, unit->microseconds);
  }
  if (unit->fraction != 0) {
    return floorOf(number, unit->fraction);
  }
  const long months = name == "Y" ? product(number, 12) : number;
  return months == MISSING_TIME ? months : timeOfMonths(months);
}

TickUnit tickUnitOf(const py::dtype& dtype) {
  const auto data = py::module_::import("numpy").attr("datetime_data")(dtype).cast<py::tuple>();
  TickUnit unit{data[0].cast<std::string>(), data[1].cast<long>(), dtype.kind() == 'M'};
  if (find(unit.name) == nullptr) {
    throw py::type_error("no array holds values of the dtype '" +
                         py::str(static_cast<py::object>(dtype)).cast<std::string>() +
                         "', which has no unit");
  }
  return unit;
}

DurationArray::DurationArray(const std::string& name, ConstArrayPointer integers, TickUnit unit,
                             std::shared_ptr<Gate> gate)
    : SiblingInBulk(name, std::move(integers), std::move(gate)), m_unit(std::move(unit)) {}

std::string DurationArray::getUnit() const {
  const std::string given = ArrayBase::getUnit();
  return given.empty() ? m_unit.inWords() : given;
}

std::string DurationArray::getPhysicalUnit() const {
  const std::string given = ArrayBase::getPhysicalUnit();
  return given.empty() ? getUnit() : given;
}

ArrayPointer DurationArray::copy(const std::string& name) const {
  const Passage passage(gate());
  return std::make_shared<DurationArray>(name, original(), m_unit, gate());
}

ArrayPointer MomentArray::copy(const std::string& name) const {
  const Passage passage(gate());
  return std::make_shared<MomentArray>(name, original(), unit(), gate());
}

void MomentArray::readTimes(const unsigned long* start, const unsigned long* extent,
                            long* destination) const {
  readValues(start, extent, destination);
  unsigned long count = 1;
  for (unsigned long k = 0; k < size().size(); ++k) {
    count *= extent[k];
  }
  for (unsigned long k = 0; k < count; ++k) {
    destination[k] = unit().timeOf(destination[k]);
  }
}

ArrayPointer ticksOf(const std::string& name, const ConstArrayPointer& integers,
                     const TickUnit& unit, const std::shared_ptr<Gate>& gate) {
  if (unit.isMoment) {
    return std::make_shared<MomentArray>(name, integers, unit, gate);
  }
  return std::make_shared<DurationArray>(name, integers, unit, gate);
}

}  // namespace quillon::python
