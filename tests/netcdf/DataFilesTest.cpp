#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using memory::OTHER_AXIS;
using object_model::AxisType;
using testing::ElementsAre;

std::string dataFile(const std::string& name) { return QUILLON_DATA_DIR "/" + name; }

std::vector<std::string> namesIn(const memory::Dictionary& dictionary) {
  std::vector<std::string> names;
  for (int k = 0; k < static_cast<int>(dictionary.getNumOfData()); ++k) {
    names.push_back(dictionary.getDataName(k));
  }
  return names;
}

// A variable's values, as the C library alone reads them.
std::vector<double> valuesByTheLibrary(const std::string& path, const std::string& name,
                                       std::size_t count) {
  int id = -1;
  int variable = -1;
  std::vector<double> values(count);
  must(nc_open(path.c_str(), NC_NOWRITE, &id));
  must(nc_inq_varid(id, name.c_str(), &variable));
  must(nc_get_var_double(id, variable, values.data()));
  must(nc_close(id));
  return values;
}

class ClimateTest : public testing::TestWithParam<std::size_t> {};

TEST_P(ClimateTest, EveryValueIsTheFilesInWindowsOfAnySize) {
  const std::string path = dataFile("north_atlantic_climate.nc");
  std::vector<unsigned long> reads;
  OpenOptions options = countingReads(GetParam(), reads);
  options.decode = false;
  const File file(path, options);
  object_model::TupleX index(3);
  for (const char* name : {"AIRT", "SLP", "SST", "WSPD"}) {
    const memory::ArrayBase& array = arrayAt(file, name);
    ASSERT_THAT(shapeOf(array), ElementsAre(40, 35, 12));
    const std::vector<double> expected = valuesByTheLibrary(path, name, 12UL * 35 * 40);
    reads.clear();
    for (unsigned long k = 0; k < expected.size(); ++k) {
      index[0] = k % 40;
      index[1] = k / 40 % 35;
      index[2] = k / 40 / 35;
      ASSERT_EQ(array.getValueAsDouble(index), expected[k]) << name << " " << k;
    }
    unsigned long sum = 0;
    for (const unsigned long read : reads) {
      EXPECT_LE(read, std::max(GetParam(), sizeof(float)));
      sum += read;
    }
    EXPECT_EQ(sum, expected.size() * sizeof(float)) << "each value is read once";
  }
}

INSTANTIATE_TEST_SUITE_P(WindowBytes, ClimateTest,
                         testing::Values(13, 160, 1009, 5600, 30011, 67200, 1 << 26),
                         testing::PrintToStringParamName());

TEST(DataFiles, ClimateIsDescribed) {
  const File file(dataFile("north_atlantic_climate.nc"));
  EXPECT_THAT(namesIn(file.root()),
              ElementsAre("AIRT", "COADSX", "COADSY", "SLP", "SST", "TIME", "WSPD"));
  const memory::ArrayBase& sst = arrayAt(file, "SST");
  EXPECT_EQ(sst.getElementType(), object_model::ElementType::Double);
  EXPECT_EQ(sst.getDescription(), "SEA SURFACE TEMPERATURE");
  EXPECT_EQ(sst.getUnit(), "Deg C");
  EXPECT_EQ(sst.getPhysicalUnit(), "Deg C");
  const auto& axes = sst.getInformation()->axes();
  ASSERT_EQ(axes.size(), 3U);
  EXPECT_EQ(axes[0].getAxisName(), "COADSX");
  EXPECT_EQ(axes[1].getAxisName(), "COADSY");
  EXPECT_EQ(axes[2].getAxisName(), "TIME");
  EXPECT_EQ(axes[0].getAxisType(), OTHER_AXIS);
  EXPECT_EQ(axes[1].getAxisType(), OTHER_AXIS);
  EXPECT_EQ(axes[2].getAxisType(), AxisType::Time);
}

TEST(DataFiles, NucleiHaveCountsOfBothSigns) {
  const File file(dataFile("nuclei_measurements.nc"));
  EXPECT_EQ(arrayAt(file, "area").getElementType(), object_model::ElementType::UInt);
  EXPECT_EQ(arrayAt(file, "euler_number").getElementType(), object_model::ElementType::Int);
  const auto& axes = arrayAt(file, "mean_intensity").getInformation()->axes();
  ASSERT_EQ(axes.size(), 2U);
  EXPECT_EQ(axes[0].getAxisType(), AxisType::Channel);
  EXPECT_EQ(axes[1].getAxisType(), AxisType::Label);
}

TEST(DataFiles, GroupsOfTheObservationsHoldTheOtherFiles) {
  const File file(dataFile("observations.nc"));
  EXPECT_THAT(namesIn(file.root()), ElementsAre("climate", "cells"));
  EXPECT_THAT(namesIn(file.group("cells")), ElementsAre("otsu", "li"));
  const auto content = [](const char* name) { return contentOf(File(dataFile(name)).root()); };
  EXPECT_EQ(contentOf(file.group("climate")), content("north_atlantic_climate.nc"));
  EXPECT_EQ(contentOf(file.group("cells/otsu")), content("nuclei_measurements.nc"));
  EXPECT_EQ(contentOf(file.group("/cells/li/")), content("nuclei_measurements_li.nc"));
}

TEST(DataFiles, ContainersAreKnown) {
  const File file(dataFile("observations.nc"));
  const memory::Dictionary& otsu = file.group("cells/otsu");
  EXPECT_EQ(otsu.data("area")->parent(), &otsu);
  EXPECT_EQ(otsu.parent(), &file.group("cells"));
  EXPECT_EQ(otsu.parent()->parent(), &file.root());
  EXPECT_EQ(file.root().parent(), nullptr);
}

}  // namespace
}  // namespace quillon::netcdf
