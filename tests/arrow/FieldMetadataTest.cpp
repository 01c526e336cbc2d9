#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "FieldMetadata.h"

namespace quillon::arrow {
namespace {

std::string bytesOf(int32_t number) {
  return {reinterpret_cast<const char*>(&number), sizeof(number)};
}

const std::string TWO =
    bytesOf(2) + bytesOf(1) + "a" + bytesOf(3) + "b=c" + bytesOf(5) + "units" + bytesOf(1) + "m";

TEST(FieldMetadataTest, AreCountedTexts) {
  EXPECT_EQ(encodedMetadata("units", "m"), bytesOf(1) + bytesOf(5) + "units" + bytesOf(1) + "m");
}

TEST(FieldMetadataTest, AValueStandsUnderItsKey) {
  EXPECT_EQ(metadataAt(TWO.data(), "units"), "m");
  EXPECT_EQ(metadataAt(TWO.data(), "a"), "b=c");
  EXPECT_EQ(metadataAt(TWO.data(), "unit"), "");
  EXPECT_EQ(metadataAt(nullptr, "units"), "");
  EXPECT_EQ(metadataAt(bytesOf(0).data(), "units"), "");
}

TEST(FieldMetadataTest, CountsBelowZeroAreNone) {
  EXPECT_EQ(metadataAt(bytesOf(-1).data(), "units"), "");
}

}  // namespace
}  // namespace quillon::arrow
