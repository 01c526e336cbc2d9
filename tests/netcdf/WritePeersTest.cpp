// What other programs make of the files that are written.

#include <quillon/memory/TimeArray.h>

#include <limits>

#include "WriteTesting.h"

namespace quillon::netcdf {
namespace {

using memory::Axis;
using memory::Dictionary;

/// A year of everything that files hold.
Dictionary everything() {
  Dictionary dictionary("d", "Everything");
  dictionary.setAttribute("Conventions", "CF-1.8");
  dictionary.setAttribute("levels", std::vector<short>{1, 2});
  const auto time = std::make_shared<memory::TimeArray>(
      "time", std::vector<Axis>{Axis("time", 2)},
      std::vector<long>{1312156800000000, 1312156800000001}, memory::Calendar::ProlepticGregorian);
  memory::TypedArray<float> heat("heat", {Axis("lon", 2), Axis("time", 2)},
                                 {0.5F, std::nanf(""), static_cast<float>(NC_FILL_FLOAT), -1});
  heat.setUnit("K");
  heat.setDescription("Heat at noon");
  heat.setAttribute("standard_name", "air_temperature");
  heat.setCoordinates(1, time);
  heat.setCoordinates(0,
                      std::make_shared<memory::DoubleArray>(row<double>("lon", "lon", {10, 20})));
  dictionary.add(std::move(heat));
  auto count = row<unsigned short>("count", "station", {1, 65535});
  count.setCoordinates(0, std::make_shared<memory::StringArray>(
                              row<std::string>("station_name", "station", {"Ærø", ""})));
  dictionary.add(std::move(count));
  dictionary.add(memory::BooleanArray("is_day", {Axis("time", 2)}, {true, false}));
  dictionary.add(memory::TimeArray("seen", {Axis("station", 2)}, {memory::MISSING_TIME, 0}));
  dictionary.add(memory::IntArray("single", {}, {std::numeric_limits<long>::min()}));
  dictionary.add(row<double>("nothing", "none", {}));
  Dictionary group("group");
  group.add(row<signed char>("inner", "lon", {-128, 127}));
  dictionary.add(std::move(group));
  return dictionary;
}

class WritePeersTest : public WriteTest {
 protected:
  void SetUp() override {
    if (printedBy("'" PYTHON "' -c 'import xarray, netCDF4'").status != 0) {
      GTEST_SKIP() << "xarray is not installed";
    }
  }

  std::string xarrayOf(const std::string& group = {}) const {
    return printedBy("'" PYTHON "' -W ignore '" PEERS_SCRIPT "' '" + m_path + "' " + group).text;
  }
};

TEST_F(WritePeersTest, XarrayReadsValuesTypesAttributesAndCoordinates) {
  for (const int deflate : {0, 4}) {
    write(everything(), {deflate, true});
    EXPECT_EQ(
        xarrayOf(),
        R"(attributes {'Conventions': 'CF-1.8', 'levels': array([1, 2], dtype=int16), 'title': 'Everything'}
variable count ('station',) uint16 {}
  along {'station': 'station_name'}
  values 1 65535
variable heat ('time', 'lon') float32 {'long_name': 'Heat at noon', 'standard_name': 'air_temperature', 'units': 'K'}
  along {'time': 'time', 'lon': 'lon'}
  values 0.5 nan 9.969209968386869e+36 -1.0
variable is_day ('time',) bool {}
  along {'time': 'time'}
  values True False
coordinate lon ('lon',) float64 {}
  along {'lon': 'lon'}
  values 10.0 20.0
variable nothing ('none',) float64 {}
  along {}
  values 
variable seen ('station',) datetime64[ns] {}
  along {'station': 'station_name'}
  values NaT 1970-01-01T00:00:00.000000
variable single () int64 {}
  along {}
  values -9223372036854775808
coordinate station_name ('station',) object {}
  along {'station': 'station_name'}
  values Ærø 
coordinate time ('time',) datetime64[ns] {}
  along {'time': 'time'}
  values 2011-08-01T00:00:00.000000 2011-08-01T00:00:00.000001
)");
  }
}

TEST_F(WritePeersTest, XarrayReadsGroups) {
  write(everything());
  EXPECT_EQ(xarrayOf("group"), R"(attributes {}
variable inner ('lon',) int8 {}
  along {}
  values -128 127
)");
}

class WriteCdoTest : public WriteTest {
 protected:
  void SetUp() override {
    if (printedBy("'" CDO "' --version").status != 0) {
      GTEST_SKIP() << "cdo is not installed";
    }
  }
};

TEST_F(WriteCdoTest, CdoFindsTheSameFiguresAsInTheOriginal) {
  const std::string original = QUILLON_DATA_DIR "/north_atlantic_climate.nc";
  write(File(original).root(), {1, true});
  const auto figuresOf = [](const std::string& path) {
    return printedBy("'" CDO "' -s infon '" + path + "'").text;
  };
  EXPECT_EQ(figuresOf(m_path), figuresOf(original));
  EXPECT_THAT(figuresOf(m_path),
              testing::HasSubstr("0000-01-16 06:00:00       0     1400     260 :"));
}

TEST_F(WriteCdoTest, CdoTellsApartWhatDiffers) {
  const std::string original = m_scratch.path("original.nc");
  const auto values = [](double last) {
    return memory::DoubleArray("a", {Axis("x", 3), Axis("y", 2)}, {1, 2, 3, 4, 5, last});
  };
  {
    const Writer writer(original, NC_NETCDF4);
    const int y = writer.dimension("y", 2);
    const int x = writer.dimension("x", 3);
    writer.put<double>(writer.variable("a", NC_DOUBLE, {y, x}), {2, 3}, {1, 2, 3, 4, 5, 6});
  }
  const auto statusOf = [&](double last) {
    write(dictionaryOf(values(last)));
    return printedBy("'" CDO "' -s diffn '" + original + "' '" + m_path + "'").status;
  };
  EXPECT_EQ(statusOf(6), 0);
  EXPECT_EQ(statusOf(6.5), 1);
}

TEST_F(WriteCdoTest, CdoReadsTimesAndMissingValues) {
  auto time = row<int>("time", "time", {0, 30});
  time.setUnit("hours since 2011-08-01");
  auto heat = row<float>("heat", "time", {0.5F, std::nanf("")});
  heat.setCoordinates(0, std::make_shared<memory::TypedArray<int>>(std::move(time)));
  write(dictionaryOf(std::move(heat)));
  const std::string command = "'" CDO "' -s ";
  EXPECT_EQ(printedBy(command + "showtimestamp '" + m_path + "'").text,
            "  2011-08-01T00:00:00  2011-08-02T06:00:00\n");
  EXPECT_EQ(printedBy(command + "output '" + m_path + "'").text, "          0.5\n          nan\n");
}

}  // namespace
}  // namespace quillon::netcdf
