#include <gtest/gtest.h>

#include <new>

#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Allocations.h"

namespace quillon::test {
namespace {

/// Differs from any other at its first element, and runs out of memory and fails at its second.
class FailingArray : public memory::ArrayBase {
 public:
  FailingArray() : ArrayBase("A", ElementType::Double, axes({2})) {}
  double getValueAsDouble(const object_model::Tuple& index) const override {
    if (index[0] == 1) {
      ::test::failAllAllocations();
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
  ::test::failNoAllocation();
  EXPECT_EQ(thrown, 42);
  EXPECT_EQ(message, "an old message");
}

}  // namespace
}  // namespace quillon::test
