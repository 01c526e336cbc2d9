#pragma once

#include <memory>
#include <vector>

#include "Source.h"
#include "StoredValues.h"

namespace quillon::netcdf {

/// Where the values of a variable stand in a file that holds them as they are.
struct RunPlace {
  int type = 0;  ///< libnetcdf's number of the values' type
  unsigned long valueBytes = 0;
  bool isBigEndian = false;
  unsigned long begin = 0;             ///< of the first value, in bytes from the file's begin
  std::vector<unsigned long> extents;  ///< fastest dimension first
  std::vector<unsigned long> steps;    ///< to the next value along each, in bytes
};

/// Values that stand in a file as they are: those of a classic file, and contiguous ones.
class StoredRuns final : public StoredValues {
 public:
  StoredRuns(std::shared_ptr<const Source> source, RunPlace place);

  bool read(const unsigned long* start, const unsigned long* extent, void* values) const override;
  bool holdsSame(const StoredValues& other, const unsigned long* start,
                 const unsigned long* extent) const override;

 private:
  bool hasBlock(const unsigned long* start, const unsigned long* extent) const;
  unsigned long positionOf(const unsigned long* start) const;

  std::shared_ptr<const Source> m_source;
  RunPlace m_place;
};

}  // namespace quillon::netcdf
