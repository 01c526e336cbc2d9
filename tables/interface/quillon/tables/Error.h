/// @file
/// What tables throw.
#pragma once

#include <stdexcept>

namespace quillon::tables {

/// A table that cannot be made or written as it was asked for; the sentence names what was wrong.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A table of more columns than `MOST_COLUMNS` that nobody asked for with all of them.
class TooManyColumns : public Error {
 public:
  using Error::Error;
};

}  // namespace quillon::tables
