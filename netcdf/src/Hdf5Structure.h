#pragma once

#include <string>

namespace quillon::netcdf {

// What follows looks at the links and types of an HDF5 file before libnetcdf opens it, or after it
// refused to: under libraryLock(), while nothing of this library has the file open.

/// Why libnetcdf must not be given the file; empty when it may, and for what is no HDF5 file or a
/// damaged one.
///
/// libnetcdf follows links to groups wherever they lead, one that leads back to where it stands for
/// ever, reads past the end of names that are longer than it expects, and takes for references to
/// dimensions what is none.
std::string findTrap(const std::string& path);

/// Whether libhdf5 finds its way through all of the file, its data sets, types and attributes, and
/// what in it libnetcdf stumbles over.
struct Hdf5Verdict {
  bool isSound = false;
  std::string obstacle;  ///< such as "the link '/s' leads nowhere"; empty when none was found
};
Hdf5Verdict judgeHdf5(const std::string& path);

}  // namespace quillon::netcdf
