#include <gtest/gtest.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/TypedArray.h>

#include <utility>
#include <vector>

#include "support/Interfaces.h"

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

TEST(ElementTypesTest, AStoredTypeTakesSoManyBytes) {
  const std::vector<std::pair<StoredType, unsigned long>> cases = {
      {StoredType::Int8, 1},    {StoredType::Int16, 2},          {StoredType::Int32, 4},
      {StoredType::Int64, 8},   {StoredType::UInt8, 1},          {StoredType::UInt16, 2},
      {StoredType::UInt32, 4},  {StoredType::UInt64, 8},         {StoredType::Float32, 4},
      {StoredType::Float64, 8}, {StoredType::Complex64, 8},      {StoredType::Complex128, 16},
      {StoredType::Boolean, 1}, {static_cast<StoredType>(99), 0}};
  for (const auto& [type, bytes] : cases) {
    EXPECT_EQ(bytesOf(type), bytes) << memory::nameOf(type);
  }
}

/// An array of integers that claims to store them as it is told.
class ClaimingStoredType : public test::PlainArray, public object_model::BulkValues {
 public:
  explicit ClaimingStoredType(StoredType type)
      : PlainArray(test::PlainArrayInfo("claims", ElementType::Int)), m_type(type) {}
  StoredType storedType() const override { return m_type; }
  void readValues(const unsigned long*, const unsigned long*, void*) const override {}

 private:
  StoredType m_type;
};

TEST(ElementTypesTest, ValuesAreReadInBulkInATypeOfTheirElementTypeOnly) {
  for (const StoredType type : {StoredType::Int8, StoredType::Int64}) {
    const ClaimingStoredType array(type);
    EXPECT_EQ(bulkValuesOf(array), &array) << memory::nameOf(type);
  }
  for (const StoredType type :
       {StoredType::UInt64, StoredType::Float64, static_cast<StoredType>(99)}) {
    EXPECT_EQ(bulkValuesOf(ClaimingStoredType(type)), nullptr) << memory::nameOf(type);
  }
  EXPECT_EQ(bulkValuesOf(test::PlainArray()), nullptr);
  EXPECT_EQ(bulkValuesOf(StringArray("s", {}, {"1"})), nullptr);
}

}  // namespace
}  // namespace quillon::memory
