/// @file
/// Times in memory.
#pragma once

#include <quillon/memory/Facets.h>
#include <quillon/memory/InPlaceValues.h>
#include <quillon/memory/ValueArray.h>

#include <string>
#include <vector>

namespace quillon::memory {

/// An array of points in time, such as the coordinates of a time axis. As numbers they are of
/// `ElementType::Int`, in "microseconds since 1970-01-01".
///
/// Ownership: owns its times. Errors: a position outside the shape raises `std::out_of_range`.
/// Threads: const operations may run concurrently.
class TimeArray final : public ValueArray<long>, public InPlaceValues<long>, public HasTimes {
 public:
  /// An array of `times`, as many as the sizes of `axes` multiply to: microseconds since
  /// 1970-01-01T00:00:00 of `calendar`, MISSING_TIME where there is none.
  /// @throws std::invalid_argument when it is another number.
  TimeArray(std::string name, std::vector<Axis> axes, std::vector<long> times,
            Calendar calendar = Calendar::Standard);

  /// The time at `index`.
  /// @throws std::out_of_range for a position outside the shape.
  long valueAt(const object_model::Tuple& index) const override;
  Calendar calendar() const override;
  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override;

  /// The times, in storage order (dimension 0 varies fastest).
  const std::vector<long>& times() const;

 private:
  std::vector<long> m_times;
  Calendar m_calendar;
};

}  // namespace quillon::memory
