#include <gtest/gtest.h>
#include <quillon/memory/ElementTypes.h>

namespace quillon::memory {
namespace {

using object_model::ElementType;
using object_model::StoredType;

TEST(ElementTypesTest, WhatIsNoneOfTheEnumerationIsNamedByItsNumber) {
  EXPECT_EQ(memory::nameOf(StoredType::Boolean), "bool");
  EXPECT_EQ(memory::nameOf(static_cast<StoredType>(99)), "stored type 99");
  EXPECT_EQ(memory::nameOf(ElementType::Boolean), "Boolean");
  EXPECT_EQ(memory::nameOf(static_cast<ElementType>(99)), "element type 99");
}

}  // namespace
}  // namespace quillon::memory
