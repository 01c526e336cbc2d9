#pragma once

#include <new>

namespace test {

// A program that is linked with Allocations.cpp counts its blocks of memory and can let chosen
// allocations fail. One of an absurd size fails by itself, under the sanitizers too.

/// How many blocks are allocated and not yet freed.
long liveBlocks();

/// Lets one allocation fail, `index` from 0 counting those from now on.
void failAllocation(long index);

/// Lets every allocation from now on fail.
void failAllAllocations();

/// Lets all allocations succeed again.
void failNoAllocation();

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

}  // namespace test
