#include "support/Allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>

namespace {

constexpr long NONE = -1;

std::atomic<long> allocatedBlocks{0};
std::atomic<unsigned long> requestedSum{0};
std::atomic<long> allocationsUntilFailure{NONE};
std::atomic<bool> allFail{false};

// No machine that runs tests has as much. Under the sanitizers the process would end instead of
// being told so.
constexpr std::size_t ABSURD_SIZE = std::size_t{1} << 40U;

bool mustFail(std::size_t size) {
  if (size >= ABSURD_SIZE) {
    return true;
  }
  return test::SparedAllocations::alive.load() == 0 &&
         (allFail.load() ||
          (allocationsUntilFailure.load() >= 0 && allocationsUntilFailure.fetch_sub(1) == 0));
}

}  // namespace

void* operator new(std::size_t size) {
  void* block = mustFail(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++allocatedBlocks;
  requestedSum += size;
  return block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc& /*error*/) {
    return nullptr;
  }
}

void operator delete(void* block) noexcept {
  if (block != nullptr) {
    --allocatedBlocks;
    std::free(block);
  }
}

void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }

// The sanitizers replace these as well and would not come to the ones above.
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { operator delete(block); }

namespace test {

long liveBlocks() { return allocatedBlocks; }

unsigned long requestedBytes() { return requestedSum; }

void failAllocation(long index) { allocationsUntilFailure = index; }

bool hasAllocationFailed() { return allocationsUntilFailure == NONE; }

void failAllAllocations() { allFail = true; }

void failNoAllocation() {
  allocationsUntilFailure = NONE;
  allFail = false;
}

}  // namespace test
