#include <gtest/gtest.h>

#include <stdexcept>

#include "IO/ColumnType.h"

namespace object_model {
namespace {

TEST(ColumnType, MapsNumbersToTheirColumns) {
  EXPECT_EQ(static_cast<unsigned int>(toDataType(ElementType::UInt).id()), 65856U);
  EXPECT_EQ(static_cast<unsigned int>(toDataType(ElementType::Int).id()), 131392U);
  EXPECT_EQ(static_cast<unsigned int>(toDataType(ElementType::Double).id()), 196928U);
}

class ColumnTypeRejects : public ::testing::TestWithParam<int> {};

TEST_P(ColumnTypeRejects, AnyOtherElementType) {
  try {
    toDataType(static_cast<ElementType>(GetParam()));
    FAIL() << "accepted";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Non convertible type");
  }
}

INSTANTIATE_TEST_SUITE_P(Types, ColumnTypeRejects, ::testing::Values(3, 4, 5, 6, 7, 1000, -1),
                         [](const auto& type) {
                           return type.param < 0 ? "Minus1" : "Type" + std::to_string(type.param);
                         });

}  // namespace
}  // namespace object_model
