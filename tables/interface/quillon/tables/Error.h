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

}  // namespace quillon::tables
