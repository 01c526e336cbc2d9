#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace quillon::tables {

using Names = std::vector<std::string>;

inline bool contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace quillon::tables
