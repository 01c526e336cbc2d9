// Sizes and field places of the bundled table library's classes, and its type identifiers.
#include <gtest/gtest.h>
#include <tabra/DataType.h>
#include <tabra/MemoryDataFrame.h>
#include <tabra/VectorX.h>

#include <cstring>
#include <type_traits>

namespace tabra {
namespace {

TEST(TableLayoutTest, SizesAreAsReleased) {
  EXPECT_EQ(sizeof(DataFrameView), 8U);
  EXPECT_EQ(sizeof(MemoryDataFrame), 16U);
  EXPECT_EQ(sizeof(DataType), 4U);
  EXPECT_EQ(sizeof(VectorX<unsigned long>), 16U);
}

TEST(TableLayoutTest, AlignmentsAreAsReleased) {
  EXPECT_EQ(alignof(DataFrameView), 8U);
  EXPECT_EQ(alignof(MemoryDataFrame), 8U);
  EXPECT_EQ(alignof(DataType), 4U);
  EXPECT_EQ(alignof(VectorX<unsigned long>), 8U);
}

// What can be copied byte by byte is passed in registers: columnDataType returns a type in one.
TEST(TableLayoutTest, OnlyATypeIsPassedInRegisters) {
  EXPECT_TRUE(std::is_trivially_copyable_v<DataType>);
  EXPECT_FALSE(std::is_trivially_copyable_v<VectorX<unsigned long>>);
}

TEST(TableLayoutTest, ATypeIsItsIdentifier) {
  const DataType type(DataTypeId::Int64);
  unsigned int word = 0;
  std::memcpy(&word, &type, sizeof(word));
  EXPECT_EQ(word, 0x20140U);
}

TEST(TableLayoutTest, AVectorHasTheCountAndThenTheAddress) {
  const VectorX<unsigned long> vector({5, 6});
  unsigned long words[2] = {0, 0};
  std::memcpy(words, static_cast<const void*>(&vector), sizeof(words));
  EXPECT_EQ(words[0], 2U);
  EXPECT_EQ(reinterpret_cast<const unsigned long*>(words[1]), &vector[0]);
}

TEST(TableLayoutTest, ATableInMemoryHasTheAddressOfItsContentAfterTheTable) {
  const MemoryDataFrame frame;
  const void* words[2] = {nullptr, nullptr};
  std::memcpy(words, static_cast<const void*>(&frame), sizeof(words));
  EXPECT_NE(words[1], nullptr);
}

TEST(TableLayoutTest, IdentifiersAreAsReleased) {
  EXPECT_FALSE((std::is_convertible_v<DataTypeId, unsigned int>)) << "scoped";
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<DataTypeId>, unsigned int>));
  EXPECT_EQ(static_cast<unsigned int>(DataTypeId::UInt64), 0x10140U);
  EXPECT_EQ(static_cast<unsigned int>(DataTypeId::Int64), 0x20140U);
  EXPECT_EQ(static_cast<unsigned int>(DataTypeId::Float64), 0x30140U);
}

}  // namespace
}  // namespace tabra
