// The values of the public enumerations: they are passed as 32-bit integers and appear in messages.
#include <gtest/gtest.h>
#include <object_model/AxisInfo.h>
#include <object_model/BulkValues.h>
#include <object_model/ComparisonHelper.h>
#include <object_model/ElementType.h>
#include <object_model/PhysicalInformation.h>

#include <ostream>
#include <string>
#include <type_traits>

namespace object_model {
namespace {

/// A row of a frozen table; rows are only ever appended.
struct Enumerator {
  const char* name;
  int actual;
  int released;
};
void PrintTo(const Enumerator& enumerator, std::ostream* out) { *out << enumerator.name; }

template <class Enumeration>
Enumerator row(const char* name, Enumeration value, int released) {
  static_assert(std::is_same_v<std::underlying_type_t<Enumeration>, int>);
  static_assert(!std::is_convertible_v<Enumeration, int>, "scoped");
  return {name, static_cast<int>(value), released};
}

class EnumerationTest : public ::testing::TestWithParam<Enumerator> {};

TEST_P(EnumerationTest, IsAsReleased) { EXPECT_EQ(GetParam().actual, GetParam().released); }

std::string nameOf(const ::testing::TestParamInfo<Enumerator>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(ElementType, EnumerationTest,
                         ::testing::Values(row("UInt", ElementType::UInt, 0),
                                           row("Int", ElementType::Int, 1),
                                           row("Double", ElementType::Double, 2),
                                           row("Complex", ElementType::Complex, 3),
                                           row("String", ElementType::String, 4),
                                           row("Boolean", ElementType::Boolean, 5),
                                           row("Dictionary", ElementType::Dictionary, 6)),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(
    StoredType, EnumerationTest,
    ::testing::Values(row("Int8", StoredType::Int8, 0), row("Int16", StoredType::Int16, 1),
                      row("Int32", StoredType::Int32, 2), row("Int64", StoredType::Int64, 3),
                      row("UInt8", StoredType::UInt8, 4), row("UInt16", StoredType::UInt16, 5),
                      row("UInt32", StoredType::UInt32, 6), row("UInt64", StoredType::UInt64, 7),
                      row("Float32", StoredType::Float32, 8),
                      row("Float64", StoredType::Float64, 9),
                      row("Complex64", StoredType::Complex64, 10),
                      row("Complex128", StoredType::Complex128, 11),
                      row("Boolean", StoredType::Boolean, 12)),
    nameOf);

INSTANTIATE_TEST_SUITE_P(AxisType, EnumerationTest,
                         ::testing::Values(row("Slice", AxisType::Slice, 0),
                                           row("Time", AxisType::Time, 1),
                                           row("Channel", AxisType::Channel, 2),
                                           row("Label", AxisType::Label, 3)),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(ComparisonType, EnumerationTest,
                         ::testing::Values(row("Exact", helper::ComparisonType::Exact, 0),
                                           row("Absolute", helper::ComparisonType::Absolute, 1),
                                           row("Relative", helper::ComparisonType::Relative, 2)),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(PhysicalInformation, EnumerationTest,
                         ::testing::Values(row("UNKNOWN", PhysicalInformation::UNKNOWN, 0),
                                           row("LENGTH", PhysicalInformation::LENGTH, 1),
                                           row("AREA", PhysicalInformation::AREA, 2),
                                           row("VOLUME", PhysicalInformation::VOLUME, 3),
                                           row("ANGLE", PhysicalInformation::ANGLE, 4),
                                           row("INTENSITY", PhysicalInformation::INTENSITY, 5),
                                           row("SQUARE_INTENSITY",
                                               PhysicalInformation::SQUARE_INTENSITY, 6),
                                           row("BOOLEAN", PhysicalInformation::BOOLEAN, 7),
                                           row("COORDINATE", PhysicalInformation::COORDINATE, 8),
                                           row("COEFFICIENT", PhysicalInformation::COEFFICIENT, 9),
                                           row("COUNT", PhysicalInformation::COUNT, 10),
                                           row("FRACTION", PhysicalInformation::FRACTION, 11),
                                           row("INDEX", PhysicalInformation::INDEX, 12),
                                           row("PERCENTAGE", PhysicalInformation::PERCENTAGE, 13),
                                           row("RATIO", PhysicalInformation::RATIO, 14)),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(
    PhysicalDimension, EnumerationTest,
    ::testing::Values(row("UNDEFINED", PhysicalDimension::UNDEFINED, 0),
                      row("DIMENSIONLESS", PhysicalDimension::DIMENSIONLESS, 1),
                      row("LENGTH_POWER_1", PhysicalDimension::LENGTH_POWER_1, 2),
                      row("LENGTH_POWER_2", PhysicalDimension::LENGTH_POWER_2, 3),
                      row("LENGTH_POWER_3", PhysicalDimension::LENGTH_POWER_3, 4)),
    nameOf);

}  // namespace
}  // namespace object_model
