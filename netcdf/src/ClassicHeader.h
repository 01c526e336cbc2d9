#pragma once

#include <string>
#include <vector>

namespace quillon::netcdf {

/// Whether the open file says that it is in one of the classic formats.
bool isClassicFile(int descriptor);

/// Where a variable's values stand in a classic file, and how many there are.
struct ClassicVariable {
  std::string name;
  bool hasRecords = false;
  std::vector<unsigned long> extents;  ///< slowest dimension first, the number of records included
  unsigned long valueBytes = 0;        ///< of one value, which is big-endian
  unsigned long bytes = 0;             ///< of all values, or of one record's
  unsigned long begin = 0;
  unsigned long recordStep = 0;  ///< from one record to the next; 0 without records
};

/// What is wrong with the open file where it is in one of the classic formats, CDF-1, CDF-2 and
/// CDF-5, judged by its header and its length; empty for a sound one and for other formats.
///
/// libnetcdf trusts such a header: past the end of the file it reads zeros, and it makes room for
/// as many entries as the header claims. So every count and every extent is held here against the
/// `fileBytes` that the file really has, before the library sees it.
///
/// @param variables where not null, takes all variables of a sound classic file, in its order.
std::string findClassicDamage(int descriptor, unsigned long fileBytes,
                              std::vector<ClassicVariable>* variables = nullptr);

}  // namespace quillon::netcdf
