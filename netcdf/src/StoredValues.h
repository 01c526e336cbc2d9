#pragma once

#include <memory>

namespace quillon::netcdf {

struct Variable;

/// The values of a variable as its file stores them, read and compared without the libraries that
/// would unpack and convert them.
///
/// Blocks are given by their first position and how many indices they span, one number for each
/// dimension, the fastest first. None is empty.
///
/// Whatever the file claims is held against what it has. Where anything is not as it is known to be
/// (a filter, a type, a chunk that does not unpack), the answer is false, and libnetcdf is to read:
/// its values, or its error, are what counts.
///
/// Threads: the operations may run in several at a time and take libraryLock() where they need it.
class StoredValues {
 public:
  StoredValues() = default;
  StoredValues(const StoredValues&) = delete;
  StoredValues& operator=(const StoredValues&) = delete;
  virtual ~StoredValues() = default;

  /// Reads a block, as libnetcdf would. @return false where `values` holds anything.
  virtual bool read(const unsigned long* start, const unsigned long* extent,
                    void* values) const = 0;

  /// Whether another variable is known to have the same values there, since it stores the same
  /// bytes in the same way. It compares bytes, and unpacks none.
  virtual bool holdsSame(const StoredValues& other, const unsigned long* start,
                         const unsigned long* extent) const = 0;
};

/// The stored values of a variable of numbers; null where they cannot be read but by libnetcdf.
/// They keep the variable's file open.
///
/// Threads: to be called under libraryLock().
std::shared_ptr<const StoredValues> findStoredValues(const Variable& variable);

/// The stored values of one variable, looked for when they are asked for first.
///
/// Threads: of() may run in several at a time; it takes libraryLock().
class LazyStoredValues {
 public:
  /// As findStoredValues(), for the same variable always.
  std::shared_ptr<const StoredValues> of(const Variable& variable) const;

 private:
  // Under libraryLock().
  mutable bool m_isKnown = false;
  mutable std::shared_ptr<const StoredValues> m_values;
};

}  // namespace quillon::netcdf
