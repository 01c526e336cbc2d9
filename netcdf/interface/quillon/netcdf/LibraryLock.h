/// @file
/// The lock around the libraries below the reader.
#pragma once

#include <mutex>

namespace quillon::netcdf {

/// The lock that this library holds during every call of libnetcdf, and so of libhdf5: neither
/// libnetcdf nor HDF5's high-level library may be entered by two threads at a time.
///
/// A program that calls libnetcdf, or libhdf5 where that is not thread-safe, beside this library
/// holds the lock during its own calls:
///
///     const std::lock_guard<std::mutex> guard(quillon::netcdf::libraryLock());
///     nc_open(...);
///
/// Held by the caller, it must not be asked for again: opening, reading and destroying a `File`, a
/// dictionary of it or one of its arrays waits for it, and would wait for ever.
///
/// libhdf5 prints nothing of what fails in a thread that has asked for the lock.
///
/// Threads: callable from any. There is one lock for each copy of this static library: where
/// several shared objects of a process each link it, their reads do not exclude each other.
[[nodiscard]] std::mutex& libraryLock();

}  // namespace quillon::netcdf
