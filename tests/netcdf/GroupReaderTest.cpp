#include <object_model/InvalidCall.h>

#include <numeric>

#include "Hdf5Files.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GroupReaderTest : public testing::Test {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(GroupReaderTest, LastDimensionOfTheFileIsDimension0) {
  const std::vector<std::size_t> extents{2, 3, 2, 4, 5};
  {
    const Writer writer(m_path, NC_NETCDF4);
    std::vector<int> dimensions;
    for (std::size_t k = 0; k < extents.size(); ++k) {
      dimensions.push_back(writer.dimension("d" + std::to_string(k), extents[k]));
    }
    std::vector<int> values(240);
    std::iota(values.begin(), values.end(), 0);
    writer.put(writer.variable("v", NC_INT, dimensions), extents, values);
  }
  OpenOptions options;
  options.windowBytes = 7 * sizeof(int);
  const File file(m_path, options);
  const memory::ArrayBase& v = arrayAt(file, "v");
  EXPECT_THAT(shapeOf(v), ElementsAre(5, 4, 2, 3, 2));
  EXPECT_EQ(v.getInformation()->getAxisInfo(0)->getAxisName(), "d4");
  EXPECT_EQ(v.getInformation()->getAxisInfo(4)->getAxisName(), "d0");
  object_model::TupleX index(5);
  index[0] = 3;
  index[1] = 2;
  index[2] = 1;
  index[3] = 2;
  index[4] = 1;
  EXPECT_EQ(v.getValueAsInt(index), (((1 * 3 + 2) * 2 + 1) * 4 + 2) * 5 + 3);
  EXPECT_EQ(valuesOf(v).back(), "239");
}

TEST_F(GroupReaderTest, UnlimitedDimensionsWithoutRecordsAreEmpty) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int time = writer.dimension("time", NC_UNLIMITED);
    const int x = writer.dimension("x", 3);
    writer.variable("numbers", NC_DOUBLE, {time, x});
    writer.variable("texts", NC_STRING, {x, time});
    writer.variable("letters", NC_CHAR, {time, x});
  }
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(100, reads));
  EXPECT_THAT(shapeOf(arrayAt(file, "numbers")), ElementsAre(3, 0));
  EXPECT_THAT(shapeOf(arrayAt(file, "texts")), ElementsAre(0, 3));
  EXPECT_THAT(shapeOf(arrayAt(file, "letters")), ElementsAre(0));
  for (const auto& [path, values] : contentOf(file.root())) {
    EXPECT_THAT(values, IsEmpty()) << path;
  }
  object_model::TupleX index(2);
  EXPECT_THROW(arrayAt(file, "numbers").getValueAsDouble(index), std::out_of_range);
  EXPECT_THAT(reads, IsEmpty());
}

TEST_F(GroupReaderTest, TextWhoseLengthHasNoRecordsIsEmpty) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    writer.variable("letters", NC_CHAR, {x, writer.dimension("length", NC_UNLIMITED)});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "letters")), ElementsAre("", ""));
}

TEST_F(GroupReaderTest, NamesAreUtf8) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int group = writer.group("größe");
    const int dimension = writer.dimension("широта", 1, group);
    writer.text(writer.variable("面積", NC_INT, {dimension}, group), "units", "µm²", group);
  }
  const File file(m_path);
  const memory::ArrayBase& array = arrayAt(file, "größe/面積");
  EXPECT_EQ(array.getName(), "面積");
  EXPECT_EQ(array.getUnit(), "µm²");
  EXPECT_EQ(array.getInformation()->getAxisInfo(0)->getAxisName(), "широта");
}

TEST_F(GroupReaderTest, AttributesThatAreNoTextSayNothing) {
  {
    const Writer writer(m_path, 0);
    const int v = writer.variable("v", NC_INT, {});
    const int one = 1;
    must(nc_put_att_int(writer.root(), v, "units", NC_INT, 1, &one));
    writer.text(v, "long_name", "");
  }
  const File file(m_path);
  EXPECT_EQ(arrayAt(file, "v").getUnit(), "");
  EXPECT_EQ(arrayAt(file, "v").getDescription(), "");
}

TEST_F(GroupReaderTest, TypesWithoutAPlaceInTheModelAreSkippedByName) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int inner = writer.group("inner");
    nc_type point = 0;
    nc_type run = 0;
    nc_type blob = 0;
    must(nc_def_compound(writer.root(), 4, "point", &point));
    must(nc_insert_compound(writer.root(), point, "x", 0, NC_INT));
    must(nc_def_vlen(writer.root(), "run", NC_INT, &run));
    must(nc_def_opaque(writer.root(), 3, "blob", &blob));
    writer.variable("a", point, {});
    writer.variable("b", run, {writer.dimension("x", 2)});
    writer.variable("kept", NC_INT, {});
    writer.variable("c", blob, {}, inner);
  }
  const File file(m_path);
  std::vector<std::string> skipped;
  for (const Skipped& variable : file.skipped()) {
    skipped.push_back(variable.path + ": " + variable.reason);
  }
  EXPECT_THAT(skipped, ElementsAre("/a: compound type 'point'", "/b: variable-length type 'run'",
                                   "/inner/c: opaque type 'blob'"));
  EXPECT_EQ(file.root().getNumOfData(), 2U);
  EXPECT_TRUE(file.root().contains("kept"));
  EXPECT_EQ(file.group("inner").getNumOfData(), 0U);
}

TEST_F(GroupReaderTest, AttributeThatLibnetcdfCannotOpenIsAnErrorOfWhatHasIt) {
  const auto errorOfAttributeOf = [this](const std::string& path) {
    {
      const Hdf5Writer writer(m_path);
      writer.group("g");
      writer.dataset("g/v", H5T_NATIVE_INT);
      writer.attribute(path, "t", H5T_UNIX_D32LE);
    }
    return errorOf([this] { const File file(m_path); });
  };
  const std::string why = " (NetCDF: Can't open HDF5 attribute)";
  EXPECT_EQ(errorOfAttributeOf("/g"),
            "Cannot read '" + m_path + "': the attributes of a group" + why);
  EXPECT_EQ(errorOfAttributeOf("/g/v"), "Cannot read '" + m_path + "': a variable in '/g/'" + why);
}

// libnetcdf hides this prefix, so that two names in the file can become one.
TEST_F(GroupReaderTest, EntriesThatCollideAreAnError) {
  for (const bool isGroup : {true, false}) {
    {
      const Writer writer(m_path, NC_NETCDF4);
      const int outer = writer.group("outer");
      writer.variable("_nc4_non_coord_x", NC_INT, {}, outer);
      if (isGroup) {
        writer.group("x", outer);
      } else {
        writer.variable("x", NC_INT, {}, outer);
      }
    }
    EXPECT_EQ(errorOf([this] { const File file(m_path); }),
              "Cannot read '" + m_path + "': group '/outer/' has two entries called 'x'");
  }
}

}  // namespace
}  // namespace quillon::netcdf
