#pragma once

#include <string>

namespace quillon::netcdf {

/// What is in an HDF5 file, as far as its links and types go, looked at before libnetcdf opens it
/// or after it refused to. `path` is as libnetcdf gets it.
///
/// Threads: to be used under libraryLock(), while no object of this library has the file open.

/// Why libnetcdf would never come to an end with the groups of the file; empty when it does, and
/// for what is no HDF5 file or a damaged one.
///
/// libnetcdf follows links to groups wherever they lead, one that leads back to where it stands for
/// ever.
std::string findEndlessGroups(const std::string& path);

/// Whether libhdf5 finds its way through all of the file, its data sets, types and attributes, and
/// what in it libnetcdf stumbles over.
struct Hdf5Verdict {
  bool isSound = false;
  std::string obstacle;  ///< such as "the link '/s' leads nowhere"; empty when none was found
};
Hdf5Verdict judgeHdf5(const std::string& path);

}  // namespace quillon::netcdf
