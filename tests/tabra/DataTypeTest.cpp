#include <gtest/gtest.h>
#include <tabra/DataType.h>

#include <type_traits>

namespace tabra {
namespace {

TEST(DataTypeTest, GivesItsIdentifierBack) {
  EXPECT_EQ(DataType(DataTypeId::UInt64).id(), DataTypeId::UInt64);
  EXPECT_EQ(DataType(DataTypeId::Int64).id(), DataTypeId::Int64);
  EXPECT_EQ(DataType(DataTypeId::Float64).id(), DataTypeId::Float64);
}

TEST(DataTypeTest, DoesNotCheckTheIdentifier) {
  EXPECT_EQ(DataType(static_cast<DataTypeId>(7)).id(), static_cast<DataTypeId>(7));
}

TEST(DataTypeTest, IsAValue) {
  const DataType original(DataTypeId::Int64);
  DataType copy = original;
  copy = DataType(DataTypeId::UInt64);
  EXPECT_EQ(original.id(), DataTypeId::Int64);
  EXPECT_EQ(copy.id(), DataTypeId::UInt64);
}

TEST(DataTypeTest, IsNotMadeFromAnIdentifierByItself) {
  EXPECT_FALSE((std::is_convertible_v<DataTypeId, DataType>));
}

}  // namespace
}  // namespace tabra
