#include <gtest/gtest.h>
#include <object_model/InvalidCall.h>
#include <object_model/PhysicalInformation.h>

#include <limits>
#include <string>

namespace object_model::helper {
namespace {

struct Kind {
  const char* text;
  PhysicalInformation information;
  int value;
  PhysicalDimension dimension;
};

void PrintTo(const Kind& kind, std::ostream* os) { *os << kind.text; }

class PhysicalInformationKind : public ::testing::TestWithParam<Kind> {};

TEST_P(PhysicalInformationKind, HasItsTextValueAndDimension) {
  const Kind& kind = GetParam();
  EXPECT_EQ(determinePhysicalInformation(kind.text), kind.information);
  EXPECT_EQ(static_cast<int>(kind.information), kind.value);
  EXPECT_EQ(determinePhysicalDimension(kind.information), kind.dimension);
}

using Information = PhysicalInformation;
using Dimension = PhysicalDimension;

INSTANTIATE_TEST_SUITE_P(
    Kinds, PhysicalInformationKind,
    ::testing::Values(Kind{"UNKNOWN", Information::UNKNOWN, 0, Dimension::UNDEFINED},
                      Kind{"LENGTH", Information::LENGTH, 1, Dimension::LENGTH_POWER_1},
                      Kind{"AREA", Information::AREA, 2, Dimension::LENGTH_POWER_2},
                      Kind{"VOLUME", Information::VOLUME, 3, Dimension::LENGTH_POWER_3},
                      Kind{"ANGLE", Information::ANGLE, 4, Dimension::DIMENSIONLESS},
                      Kind{"INTENSITY", Information::INTENSITY, 5, Dimension::UNDEFINED},
                      Kind{"SQUARE_INTENSITY", Information::SQUARE_INTENSITY, 6,
                           Dimension::UNDEFINED},
                      Kind{"BOOLEAN", Information::BOOLEAN, 7, Dimension::UNDEFINED},
                      Kind{"COORDINATE", Information::COORDINATE, 8, Dimension::UNDEFINED},
                      Kind{"COEFFICIENT", Information::COEFFICIENT, 9, Dimension::DIMENSIONLESS},
                      Kind{"COUNT", Information::COUNT, 10, Dimension::DIMENSIONLESS},
                      Kind{"FRACTION", Information::FRACTION, 11, Dimension::DIMENSIONLESS},
                      Kind{"INDEX", Information::INDEX, 12, Dimension::DIMENSIONLESS},
                      Kind{"PERCENTAGE", Information::PERCENTAGE, 13, Dimension::DIMENSIONLESS},
                      Kind{"RATIO", Information::RATIO, 14, Dimension::DIMENSIONLESS}),
    [](const auto& kind) { return kind.param.text; });

TEST(PhysicalDimensionValues, AreFixed) {
  EXPECT_EQ(static_cast<int>(Dimension::UNDEFINED), 0);
  EXPECT_EQ(static_cast<int>(Dimension::DIMENSIONLESS), 1);
  EXPECT_EQ(static_cast<int>(Dimension::LENGTH_POWER_1), 2);
  EXPECT_EQ(static_cast<int>(Dimension::LENGTH_POWER_2), 3);
  EXPECT_EQ(static_cast<int>(Dimension::LENGTH_POWER_3), 4);
}

template <class Call>
std::string errorOf(const Call& call) {
  try {
    call();
  } catch (const InvalidCall& error) {
    return error.what();
  }
  return "no error";
}

TEST(PhysicalInformationText, MustMatchWhole) {
  for (const std::string text :
       {"length", "LENGTH ", " LENGTH", "LEN", "LENGTHS", "Length", "0", "", "SQUARE INTENSITY"}) {
    EXPECT_EQ(errorOf([&] { determinePhysicalInformation(text.c_str()); }),
              "Invalid PhysicalInformation (" + text + ")");
  }
}

TEST(PhysicalInformationValue, OutsideTheEnumerationIsRejected) {
  const auto errorOfValue = [](int value) {
    return errorOf([&] { determinePhysicalDimension(static_cast<Information>(value)); });
  };
  EXPECT_EQ(errorOfValue(15), "Invalid PhysicalInformation (15)");
  EXPECT_EQ(errorOfValue(-1), "Invalid PhysicalInformation (-1)");
  EXPECT_EQ(errorOfValue(std::numeric_limits<int>::min()),
            "Invalid PhysicalInformation (-2147483648)");
  EXPECT_EQ(errorOfValue(std::numeric_limits<int>::max()),
            "Invalid PhysicalInformation (2147483647)");
}

}  // namespace
}  // namespace object_model::helper
