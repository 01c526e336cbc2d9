#include "Memory.h"

#include <unistd.h>

namespace quillon::tools {

std::size_t physicalMemory() {
  return static_cast<std::size_t>(::sysconf(_SC_PHYS_PAGES)) *
         static_cast<std::size_t>(::sysconf(_SC_PAGE_SIZE));
}

}  // namespace quillon::tools
