#pragma once

#include <string>

namespace quillon::netcdf {

/// Cuts the NULs at the end, with which a text fills the room that it was given.
inline void cutPadding(std::string& text) {
  while (!text.empty() && text.back() == '\0') {
    text.pop_back();
  }
}

}  // namespace quillon::netcdf
