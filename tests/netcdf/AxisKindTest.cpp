#include <ostream>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using memory::OTHER_AXIS;
using object_model::AxisType;

struct KindCase {
  const char* rule;
  std::string dimension;
  std::vector<std::pair<std::string, std::string>> attributes;  // of its coordinate variable
  AxisType kind;
};

void PrintTo(const KindCase& c, std::ostream* os) { *os << c.rule; }

const memory::Axis& axisOf(const File& file, const std::string& path, unsigned long dimension) {
  return *arrayAt(file, path).getInformation()->getAxisInfo(dimension);
}

class AxisKindTest : public testing::TestWithParam<KindCase> {};

TEST_P(AxisKindTest, FollowsAttributesThenName) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), 0);
    const int dimension = writer.dimension(GetParam().dimension, 2);
    writer.variable("values", NC_INT, {dimension});
    if (!GetParam().attributes.empty()) {
      const int coordinate = writer.variable(GetParam().dimension, NC_DOUBLE, {dimension});
      for (const auto& [name, value] : GetParam().attributes) {
        writer.text(coordinate, name, value);
      }
    }
  }
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(axisOf(file, "values", 0).getAxisType(), GetParam().kind);
  EXPECT_EQ(axisOf(file, "values", 0).getAxisName(), GetParam().dimension);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, AxisKindTest,
    testing::ValuesIn(std::vector<KindCase>{
        {"UnitsSinceADateAreTime", "when", {{"units", "days since 2000-01-01"}}, AxisType::Time},
        {"UnitsInCapitalsAreTime", "when", {{"units", "HOURS SINCE 1-1-1"}}, AxisType::Time},
        {"UnitsThatContainTheWordInAWordAreNot", "when", {{"units", "sinces"}}, OTHER_AXIS},
        {"UnitOfDurationIsNot", "when", {{"units", "days"}}, OTHER_AXIS},
        {"StandardNameTime", "when", {{"standard_name", "time"}}, AxisType::Time},
        {"OtherStandardName", "x", {{"standard_name", "longitude"}}, OTHER_AXIS},
        {"AxisT", "when", {{"axis", "T"}}, AxisType::Time},
        {"AxisZIsSlice", "level", {{"axis", "Z"}}, AxisType::Slice},
        {"AxisX", "lon", {{"axis", "X"}}, OTHER_AXIS},
        {"PositiveIsSlice", "depth", {{"positive", "down"}}, AxisType::Slice},
        {"TimeBeforeSlice",
         "when",
         {{"units", "days since 1-1-1"}, {"positive", "up"}},
         AxisType::Time},
        {"AttributesBeforeName", "channel", {{"axis", "Z"}}, AxisType::Slice},
        {"NameWhenAttributesSayNothing", "channel", {{"units", "nm"}}, AxisType::Channel},
        {"NameTime", "TIME", {}, AxisType::Time},
        {"NameSlice", "slice", {}, AxisType::Slice},
        {"NameChannel", "Channel", {}, AxisType::Channel},
        {"NameInThePlural", "channels", {}, AxisType::Channel},
        {"NameBandIsChannel", "band", {}, AxisType::Channel},
        {"NameLabel", "label", {}, AxisType::Label},
        {"NameThatOnlyBeginsLikeAKind", "labelled", {}, OTHER_AXIS},
        {"OtherName", "COADSX", {}, OTHER_AXIS},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(AxisKind, CoordinateVariableIsFoundInAParentGroup) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), NC_NETCDF4);
    const int when = writer.dimension("when", 2);
    writer.text(writer.variable("when", NC_DOUBLE, {when}), "units", "s since 1970-01-01");
    writer.variable("v", NC_INT, {when}, writer.group("inner", writer.group("outer")));
  }
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(axisOf(file, "outer/inner/v", 0).getAxisType(), AxisType::Time);
}

TEST(AxisKind, DimensionOfTheSameNameInAnInnerGroupIsAnother) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), NC_NETCDF4);
    const int outer = writer.dimension("when", 2);
    writer.text(writer.variable("when", NC_DOUBLE, {outer}), "axis", "T");
    const int group = writer.group("inner");
    const int inner = writer.dimension("when", 3, group);
    writer.variable("a", NC_INT, {outer}, group);
    writer.variable("b", NC_INT, {inner}, group);
  }
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(axisOf(file, "inner/a", 0).getAxisType(), AxisType::Time);
  EXPECT_EQ(axisOf(file, "inner/b", 0).getAxisType(), OTHER_AXIS);
}

TEST(AxisKind, VariableOfTheNameWithMoreDimensionsIsNoCoordinate) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), 0);
    const int x = writer.dimension("x", 2);
    const int y = writer.dimension("y", 2);
    writer.text(writer.variable("x", NC_DOUBLE, {x, y}), "axis", "T");
  }
  EXPECT_EQ(axisOf(File(scratch.path("a.nc")), "x", 1).getAxisType(), OTHER_AXIS);
}

TEST(AxisKind, AttributesMayBeStrings) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int coordinate = writer.variable("x", NC_DOUBLE, {x});
    const char* units = "days since 1-1-1";
    must(nc_put_att_string(writer.root(), coordinate, "units", 1, &units));
  }
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(axisOf(file, "x", 0).getAxisType(), AxisType::Time);
  EXPECT_EQ(arrayAt(file, "x").getUnit(), "days since 1-1-1");
}

}  // namespace
}  // namespace quillon::netcdf
