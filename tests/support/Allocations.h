#pragma once

#include <atomic>
#include <new>

namespace test {

// A program that is linked with Allocations.cpp counts its blocks of memory and their bytes, and
// can let chosen allocations fail. One of an absurd size fails by itself, under the sanitizers too.

/// How many blocks are allocated and not yet freed.
long liveBlocks();

/// The bytes of all blocks that were ever allocated.
unsigned long requestedBytes();

/// Lets one allocation fail, `index` from 0 counting those from now on.
void failAllocation(long index);

/// Whether the allocation that failAllocation() chose has come and failed.
bool hasAllocationFailed();

/// Lets every allocation from now on fail.
void failAllAllocations();

/// Lets all allocations succeed again.
void failNoAllocation();

/// While one lives, allocations succeed and are not counted by failAllocation(): for what a test's
/// own objects need in the midst of the call that is tested. It does nothing in a program that is
/// not linked with Allocations.cpp.
class SparedAllocations {
 public:
  inline static std::atomic<int> alive{0};

  SparedAllocations() { ++alive; }
  ~SparedAllocations() { --alive; }
  SparedAllocations(const SparedAllocations&) = delete;
  SparedAllocations& operator=(const SparedAllocations&) = delete;
};

/// What came of a call while an allocation of it failed.
struct OutOfMemory {
  bool badAlloc;      ///< it was reported as std::bad_alloc
  long leakedBlocks;  ///< how many more blocks are allocated afterwards
};

template <class Call>
OutOfMemory runOutOfMemory(long failing, const Call& call) {
  OutOfMemory outcome = {false, 0};
  const long before = liveBlocks();
  failAllocation(failing);
  try {
    call();
  } catch (const std::bad_alloc&) {
    outcome.badAlloc = true;
  }
  failNoAllocation();
  outcome.leakedBlocks = liveBlocks() - before;
  return outcome;
}

/// Runs `call` over and over, a later one of its allocations failing each time, until none is left
/// to fail. `look`, which is given what came of it, is called after each failure.
/// @return how many failed.
template <class Call, class Look>
long failEachAllocation(const Call& call, const Look& look) {
  for (long failing = 0;; ++failing) {
    bool hasFailed = true;
    const OutOfMemory outcome = runOutOfMemory(failing, [&] {
      call();
      hasFailed = hasAllocationFailed();
    });
    if (!hasFailed) {
      return failing;
    }
    look(outcome);
  }
}

}  // namespace test
