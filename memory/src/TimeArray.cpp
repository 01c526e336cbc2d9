#include <quillon/memory/TimeArray.h>

#include <utility>

namespace quillon::memory {

TimeArray::TimeArray(std::string name, std::vector<Axis> axes, std::vector<long> times,
                     Calendar calendar)
    : ValueArray<long>(std::move(name), std::move(axes)),
      m_times(std::move(times)),
      m_calendar(calendar) {
  requireCount(m_times.size());
  setPlace(m_times.data(), packedStrides(size(), sizeof(long)));
  setUnit("microseconds since 1970-01-01");
}

long TimeArray::valueAt(const object_model::Tuple& index) const { return m_times[offsetOf(index)]; }

Calendar TimeArray::calendar() const { return m_calendar; }

void TimeArray::readTimes(const unsigned long* start, const unsigned long* extent,
                          long* destination) const {
  readValues(start, extent, destination);
}

const std::vector<long>& TimeArray::times() const { return m_times; }

}  // namespace quillon::memory
