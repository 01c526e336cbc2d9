// The values of the public enumerations: they are passed as 32-bit integers and appear in messages.
#include <gtest/gtest.h>
#include <object_model/AxisInfo.h>
#include <object_model/ElementType.h>

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

INSTANTIATE_TEST_SUITE_P(AxisType, EnumerationTest,
                         ::testing::Values(row("Slice", AxisType::Slice, 0),
                                           row("Time", AxisType::Time, 1),
                                           row("Channel", AxisType::Channel, 2),
                                           row("Label", AxisType::Label, 3)),
                         nameOf);

}  // namespace
}  // namespace object_model
