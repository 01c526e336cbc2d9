#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "ObjectModel/ComparisonHelper/Samples.h"

namespace {

bool g_outOfMemory = false;

}  // namespace

void* operator new(std::size_t size) {
  void* memory = g_outOfMemory ? nullptr : std::malloc(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace quillon::test {
namespace {

/// Differs from any other at its first element, and runs out of memory and fails at its second.
class FailingArray : public memory::ArrayBase {
 public:
  FailingArray() : ArrayBase("A", ElementType::Double, axes({2})) {}
  double getValueAsDouble(const object_model::Tuple& index) const override {
    if (index[0] == 1) {
      g_outOfMemory = true;
      throw 42;
    }
    return NOT_A_NUMBER;
  }
};

TEST(AreSameArrays, PassesOnTheExceptionEvenWithoutMemoryForTheSentence) {
  const FailingArray a;
  std::string message = "an old message";
  int thrown = 0;
  try {
    object_model::helper::areSameArrays(a, a, ComparisonType::Exact, 0, &message);
  } catch (int number) {
    thrown = number;
  } catch (const std::bad_alloc& /*exception*/) {
  }
  g_outOfMemory = false;
  EXPECT_EQ(thrown, 42);
  EXPECT_EQ(message, "an old message");
}

}  // namespace
}  // namespace quillon::test
