#pragma once

#include <cstddef>

namespace quillon::tools {

/// How many bytes of memory the machine has.
std::size_t physicalMemory();

}  // namespace quillon::tools
