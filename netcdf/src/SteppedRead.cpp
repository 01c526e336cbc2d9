#include "SteppedRead.h"

#include <netcdf.h>

#include <algorithm>
#include <cstring>

#include "Variable.h"

namespace quillon::netcdf {
namespace {

unsigned long stepOf(const Variable& variable, std::size_t dimension) {
  return static_cast<unsigned long>(variable.ranges[dimension].step);
}

/// A classic file's values at steps. The library reads these one by one; here a run of values that
/// have no steps between them is one read, and along the fastest dimension a row is read as a
/// whole.
class ClassicSteps {
 public:
  ClassicSteps(const Variable& variable, const std::vector<unsigned long>& start,
               const unsigned long* extent)
      : m_variable(variable),
        m_position(start),
        m_extent(extent),
        m_counts(start.size(), 1),
        m_inner(innerDimensions()) {
    for (std::size_t k = 0; k < m_inner; ++k) {
      m_counts[k] = extent[k];
      m_runValues *= extent[k];
    }
    if (m_inner == 0) {
      m_runValues = extent[0];
      m_counts[0] = (extent[0] - 1) * stepOf(variable, 0) + 1;
      m_row.resize(m_counts[0] * variable.valueBytes);
      m_inner = 1;
    }
  }

  int read(char* values) { return readAlong(m_position.size(), values); }

 private:
  std::size_t innerDimensions() const {
    std::size_t inner = 0;
    // never false: one dimension at least has steps
    while (inner < m_counts.size() && stepOf(m_variable, inner) == 1) {
      ++inner;
    }
    return inner;
  }

  /// Reads what the dimensions below `dimension` span, and moves `values` behind it.
  int readAlong(std::size_t dimension, char*& values) {
    if (dimension == m_inner) {
      return readRun(values);
    }
    const std::size_t k = dimension - 1;
    const unsigned long begin = m_position[k];
    int status = NC_NOERR;
    // never false: past the end of a classic file libnetcdf reads zeros
    for (unsigned long i = 0; i < m_extent[k] && status == NC_NOERR; ++i) {
      m_position[k] = begin + i * stepOf(m_variable, k);
      status = readAlong(k, values);
    }
    m_position[k] = begin;
    return status;
  }

  int readRun(char*& values) {
    const std::size_t bytes = m_variable.valueBytes;
    const int status = get(m_row.empty() ? values : m_row.data());
    const unsigned long step = m_row.empty() ? 0 : stepOf(m_variable, 0);
    for (unsigned long i = 0; step > 0 && i < m_runValues; ++i) {
      std::memcpy(values + i * bytes, m_row.data() + i * step * bytes, bytes);
    }
    values += m_runValues * bytes;
    return status;
  }

  int get(char* values) const {
    const std::vector<std::size_t> start =
        inFileOrder<std::size_t>(m_position.data(), m_position.size());
    const std::vector<std::size_t> counts =
        inFileOrder<std::size_t>(m_counts.data(), m_counts.size());
    return nc_get_vara(m_variable.group, m_variable.id, start.data(), counts.data(), values);
  }

  const Variable& m_variable;
  std::vector<unsigned long> m_position;
  const unsigned long* m_extent;
  std::vector<unsigned long> m_counts;  // of a run, in the file
  std::size_t m_inner;                  // the dimensions of a run
  unsigned long m_runValues = 1;
  std::vector<char> m_row;  // with what stands between the values; empty where nothing does
};

}  // namespace

int readStepped(const Variable& variable, const std::vector<unsigned long>& start,
                const unsigned long* extent, void* values) {
  const std::size_t rank = start.size();
  if (std::find(extent, extent + rank, 0) != extent + rank) {
    return NC_NOERR;
  }
  if (variable.source->file().isClassic()) {
    return ClassicSteps(variable, start, extent).read(static_cast<char*>(values));
  }
  std::vector<std::ptrdiff_t> steps;
  for (std::size_t k = rank; k > 0; --k) {
    steps.push_back(variable.ranges[k - 1].step);
  }
  return nc_get_vars(variable.group, variable.id,
                     inFileOrder<std::size_t>(start.data(), rank).data(),
                     inFileOrder<std::size_t>(extent, rank).data(), steps.data(), values);
}

}  // namespace quillon::netcdf
