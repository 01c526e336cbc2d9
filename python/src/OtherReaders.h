#pragma once

namespace quillon::python {

/// Keeps Python's other readers of netCDF files, those of xarray, from the libraries below while it
/// lives; see quillon._locks. They may be kept out several times by one thread. To be made and
/// destroyed without locks of the libraries, with or without the GIL.
class OthersOut {
 public:
  /// Waits for them. @throws Raised where waiting is interrupted.
  OthersOut();
  ~OthersOut();  // NOLINT(bugprone-exception-escape): see the source
  OthersOut(const OthersOut&) = delete;
  OthersOut& operator=(const OthersOut&) = delete;
};

/// Lets them in again for as long as it lives, if this thread keeps them out: for calls of Python
/// functions, which may be such readers.
class OthersIn {
 public:
  OthersIn();
  /// Waits for them again.
  ~OthersIn();  // NOLINT(bugprone-exception-escape): see the source
  OthersIn(const OthersIn&) = delete;
  OthersIn& operator=(const OthersIn&) = delete;

 private:
  unsigned long m_depth;
};

}  // namespace quillon::python
