#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "FieldMetadata.h"

namespace quillon::arrow {
namespace {

std::string numberBytes(int32_t number) {
  return {reinterpret_cast<const char*>(&number), sizeof(number)};
}

const std::string TWO = numberBytes(2) + numberBytes(1) + "a" + numberBytes(3) + "b=c" +
                        numberBytes(5) + "units" + numberBytes(1) + "m";

TEST(FieldMetadataTest, AreCountedTexts) {
  EXPECT_EQ(encodedMetadata("units", "m"),
            numberBytes(1) + numberBytes(5) + "units" + numberBytes(1) + "m");
}

TEST(FieldMetadataTest, AValueStandsUnderItsKey) {
  EXPECT_EQ(metadataAt(TWO.data(), "units"), "m");
  EXPECT_EQ(metadataAt(TWO.data(), "a"), "b=c");
  EXPECT_EQ(metadataAt(TWO.data(), "unit"), "");
  EXPECT_EQ(metadataAt(nullptr, "units"), "");
  EXPECT_EQ(metadataAt(numberBytes(0).data(), "units"), "");
}

TEST(FieldMetadataTest, CountsBelowZeroAreNone) {
  EXPECT_EQ(metadataAt(numberBytes(-1).data(), "units"), "");
  const std::string lengths = numberBytes(2) + numberBytes(-4) + numberBytes(-4) + numberBytes(5) +
                              "units" + numberBytes(1) + "m";
  EXPECT_EQ(metadataAt(lengths.data(), "units"), "m");
}

}  // namespace
}  // namespace quillon::arrow
