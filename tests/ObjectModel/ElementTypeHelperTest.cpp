#include <gtest/gtest.h>
#include <object_model/ElementTypeHelper.h>
#include <object_model/InvalidCall.h>

#include <complex>
#include <limits>
#include <ostream>
#include <string>

#include "support/Thrown.h"

namespace object_model {
namespace {

struct SizeCase {
  const char* type;
  int value;
  unsigned long bytes;
};
void PrintTo(const SizeCase& row, std::ostream* out) { *out << row.type; }

class ElementSizeTest : public ::testing::TestWithParam<SizeCase> {};

TEST_P(ElementSizeTest, IsFixed) {
  EXPECT_EQ(helper::sizeOfElementType(static_cast<ElementType>(GetParam().value)),
            GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Types, ElementSizeTest,
                         ::testing::Values(SizeCase{"UInt", 0, 8}, SizeCase{"Int", 1, 8},
                                           SizeCase{"Double", 2, 8}, SizeCase{"Complex", 3, 16},
                                           SizeCase{"String", 4, 32}, SizeCase{"Boolean", 5, 1}),
                         [](const auto& row) { return row.param.type; });

TEST(ElementTypeHelperTest, TheSizesAreThoseOfTheStoredObjects) {
  EXPECT_EQ(helper::sizeOfElementType(ElementType::Complex), sizeof(std::complex<double>));
  EXPECT_EQ(helper::sizeOfElementType(ElementType::String), sizeof(std::string));
  EXPECT_EQ(helper::sizeOfElementType(ElementType::Boolean), sizeof(bool));
}

struct RejectedCase {
  const char* rule;
  int value;
};
void PrintTo(const RejectedCase& row, std::ostream* out) { *out << row.rule; }

class RejectedElementTypeTest : public ::testing::TestWithParam<RejectedCase> {};

TEST_P(RejectedElementTypeTest, HasNoSize) {
  const auto type = static_cast<ElementType>(GetParam().value);
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] { helper::sizeOfElementType(type); }),
            "Invalid call at ObjectModel/src/ElementTypeHelper.cpp (34)");
}

INSTANTIATE_TEST_SUITE_P(
    Values, RejectedElementTypeTest,
    ::testing::Values(RejectedCase{"Dictionary", 6}, RejectedCase{"PastTheEnumeration", 7},
                      RejectedCase{"Large", std::numeric_limits<int>::max()},
                      RejectedCase{"MinusOne", -1},
                      RejectedCase{"Smallest", std::numeric_limits<int>::min()}),
    [](const auto& row) { return row.param.rule; });

}  // namespace
}  // namespace object_model
