#pragma once

#include <cstddef>
#include <iterator>
#include <vector>

namespace quillon::netcdf {

struct Variable;

/// The file's order of dimensions, slowest first.
template <class Number>
std::vector<Number> inFileOrder(const unsigned long* numbers, std::size_t dimensions) {
  return {std::make_reverse_iterator(numbers + dimensions), std::make_reverse_iterator(numbers)};
}

/// Reads a block of values that stand at steps, under libraryLock().
/// @param start where the block begins in the file.
/// @param extent how many values it has along each dimension.
/// @return the library's status.
int readStepped(const Variable& variable, const std::vector<unsigned long>& start,
                const unsigned long* extent, void* values);

}  // namespace quillon::netcdf
