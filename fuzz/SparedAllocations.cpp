// No allocation is made to fail here, so there is none to spare. The operators that could let one
// fail stay away: they would hide from the sanitizers how a block was allocated.

#include "support/Allocations.h"

namespace test {

SparedAllocations::SparedAllocations() = default;
SparedAllocations::~SparedAllocations() = default;

}  // namespace test
