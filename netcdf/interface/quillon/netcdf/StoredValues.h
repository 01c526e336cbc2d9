/// @file
/// The numbers of a file's array in bulk.
#pragma once

#include <vector>

namespace quillon::netcdf {

/// Values that follow each other in an array when dimension 0 varies fastest.
template <class Stored>
struct Run {
  unsigned long first = 0;     ///< where the first of them stands
  std::vector<Stored> values;  ///< as they are stored
};

/// What an array of a file's numbers is as well, for who goes through very many of them: its values
/// in bulk, in the type that they have in the file. To be found by `dynamic_cast`: an array of
/// `float` is a `StoredValues<float>`.
///
/// Threads: as for the file.
template <class Stored>
class StoredValues {
 public:
  virtual ~StoredValues() = default;

  /// Replaces the content of `run` by values among which is the one at `offset`, which must be in
  /// the array. The array's own window is left as it is, and its size does not matter. Starting
  /// again behind each run reads each value once, a mebibyte at a time or, where the file's chunks
  /// ask for more, up to 16.
  /// @throws Error when they cannot be read; `run` then holds anything.
  virtual void readAround(unsigned long offset, Run<Stored>& run) const = 0;
};

}  // namespace quillon::netcdf
