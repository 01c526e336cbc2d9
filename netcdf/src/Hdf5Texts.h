#pragma once

#include <quillon/memory/Values.h>

#include <string>

#include "Variable.h"

namespace quillon::netcdf {

/// What libhdf5 says of a variable's values where libnetcdf does not know or calls them strings:
/// it does so with texts of a fixed length, of which it reads random bytes, and with numbers that
/// it has no type for.
struct TextType {
  enum class Kind { Fixed, Variable, None } kind = Kind::None;
  std::size_t bytes = 0;    ///< of a text of fixed length
  std::string description;  ///< what other values are; empty where there is no libhdf5 to ask
};

/// Threads: to be used under libraryLock().
TextType textTypeOf(const Variable& variable);

/// Reads a block of texts by libhdf5, without what fills them up to their length. Those of fixed
/// length that were not written are empty, strings have the fill value then.
///
/// Threads: takes libraryLock().
/// @return how many bytes the texts take in the file.
/// @throws Error
unsigned long readHdf5Texts(const Variable& variable, const memory::Block& block,
                            std::string* texts);

}  // namespace quillon::netcdf
