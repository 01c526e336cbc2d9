#include "Hdf5Files.h"
#include "HiddenObjects.h"
#include "LongNames.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

std::vector<std::string> textsOf(const std::vector<Skipped>& entries) {
  std::vector<std::string> texts;
  for (const Skipped& entry : entries) {
    texts.push_back(entry.path + ": " + entry.reason);
  }
  return texts;
}

class HiddenObjectsTest : public testing::Test {
 protected:
  std::vector<std::string> skipped() const { return textsOf(File(m_path).skipped()); }

  std::vector<std::string> attributes() const { return textsOf(File(m_path).hiddenAttributes()); }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.h5");
};

TEST_F(HiddenObjectsTest, DataSetsThatLibnetcdfPassesOverAreListedByKind) {
  const hsize_t extent = 2;
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("kept", H5T_NATIVE_INT, {2});
    writer.dataset("array",
                   Hdf5Object(H5Tarray_create2(H5T_NATIVE_INT, 1, &extent), H5Tclose).id());
    writer.dataset("bits", H5T_STD_B8LE, {2});
    writer.dataset("compound", compoundType().id(), {2});
    writer.dataset("enumeration", booleanType().id(), {2});
    writer.dataset("object", H5T_STD_REF_OBJ, {2});
    writer.dataset("opaque", Hdf5Object(H5Tcreate(H5T_OPAQUE, 7), H5Tclose).id());
    writer.dataset("region", H5T_STD_REF_DSETREG, {2});
    writer.dataset("rows", Hdf5Object(H5Tvlen_create(H5T_NATIVE_INT), H5Tclose).id(), {2});
  }
  EXPECT_THAT(skipped(), ElementsAre("/array: array type", "/bits: bit field type",
                                     "/compound: compound type", "/enumeration: enumeration type",
                                     "/object: reference type", "/opaque: opaque type",
                                     "/region: reference type", "/rows: variable-length type"));
  EXPECT_EQ(File(m_path).root().getNumOfData(), 1U);
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "kept")), ElementsAre("0", "0"));
}

TEST_F(HiddenObjectsTest, StandBehindWhatLibnetcdfShowsInGroupsOfAnyDepth) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object point = compoundType();
    writer.commit("point", point.id());
    writer.group("outer");
    writer.group("outer/inner");
    writer.dataset("b", H5T_STD_B8LE);
    writer.dataset("outer/c", point.id());
    writer.dataset("outer/inner/a", H5T_STD_REF_OBJ);
  }
  EXPECT_THAT(skipped(), ElementsAre("/outer/c: compound type 'point'", "/b: bit field type",
                                     "/outer/inner/a: reference type"));
}

TEST_F(HiddenObjectsTest, AreFoundBesideGroupsOfTheNameThatWouldBeShown) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("a");
    writer.dataset("_nc4_non_coord_a", H5T_STD_B8LE);
  }
  EXPECT_THAT(skipped(), ElementsAre("/_nc4_non_coord_a: bit field type"));
}

// libnetcdf reads the groups within a group behind its data sets, and does not know their types
// then.
TEST_F(HiddenObjectsTest, TypeThatAnInnerGroupNamesHasItsName) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object point = compoundType();
    writer.group("inner");
    writer.commit("inner/point", point.id());
    writer.dataset("v", point.id());
  }
  EXPECT_THAT(skipped(), ElementsAre("/v: compound type 'point'"));
}

TEST_F(HiddenObjectsTest, TypeWhoseNameWasTakenAwayHasNone) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object point = compoundType();
    writer.commit("point", point.id());
    writer.dataset("v", point.id());
    mustHdf5(H5Ldelete(writer.file(), "point", H5P_DEFAULT));
  }
  EXPECT_THAT(skipped(), ElementsAre("/v: compound type"));
}

TEST_F(HiddenObjectsTest, WhatMakesDimensionsIsNotListed) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    writer.dimension("unused", 3);
    writer.dimension("v", 3);
    writer.dimension("grown", NC_UNLIMITED);
    writer.variable("x", NC_INT, {x});
    writer.variable("v", NC_INT, {x});  // called as a dimension, but no coordinate
    const int inner = writer.group("inner");
    writer.dimension("deep", 4, inner);
    writer.variable("w", NC_INT, {x}, inner);
    nc_type point = 0;
    must(nc_def_compound(writer.root(), 4, "point", &point));
    must(nc_insert_compound(writer.root(), point, "x", 0, NC_INT));
  }
  EXPECT_THAT(skipped(), IsEmpty());
  EXPECT_THAT(attributes(), IsEmpty());
}

TEST_F(HiddenObjectsTest, AttributesThatMakeDimensionsAreNotListedInFilesOfOtherPrograms) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int y = writer.dimension("y", 2);
    writer.variable("x", NC_INT, {x});
    writer.variable("y", NC_INT, {y, x});
    writer.variable("v", NC_INT, {x});
  }
  {
    const Hdf5Object file(mustHdf5(H5Fopen(m_path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT)), H5Fclose);
    mustHdf5(H5Adelete(file.id(), "_NCProperties"));
  }
  EXPECT_THAT(attributes(), IsEmpty());
}

TEST_F(HiddenObjectsTest, AreFoundBesideDimensionsThatLibnetcdfMakesUp) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("kept", H5T_NATIVE_INT, {2});  // along what is called phony_dim_0
    writer.dataset("bits", H5T_STD_B8LE, {2});
  }
  EXPECT_THAT(skipped(), ElementsAre("/bits: bit field type"));
}

TEST_F(HiddenObjectsTest, AreFoundInAFileOfLibnetcdf) {
  const std::string longest(LONGEST_NAME, 'n');
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    writer.variable("x", NC_INT, {x});
    writer.variable("v", NC_INT, {x});
    writer.variable("w", NC_INT, {x});
    writer.dimension("deep", 3, writer.group("dimension"));
    const int coordinates = writer.group("coordinates");
    writer.variable("y", NC_INT, {writer.dimension("y", 2, coordinates)}, coordinates);
    const int inner = writer.group(longest, writer.group("empty"));
    writer.variable(longest, NC_INT, {writer.dimension(longest, 4, inner), x}, inner);
  }
  const std::vector<std::string> groups = {"/", "/coordinates/", "/dimension/",
                                           "/empty/" + longest + "/"};
  std::vector<std::string> expected;
  {
    const Hdf5Object file(mustHdf5(H5Fopen(m_path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT)), H5Fclose);
    const Hdf5Object space(H5Screate(H5S_SCALAR), H5Sclose);
    for (const std::string& group : groups) {
      const Hdf5Object bits(mustHdf5(H5Dcreate2(file.id(), (group + "bits").c_str(), H5T_STD_B8LE,
                                                space.id(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)),
                            H5Dclose);
      expected.push_back(group + "bits: bit field type");
    }
  }
  EXPECT_THAT(skipped(), UnorderedElementsAreArray(expected));
}

TEST_F(HiddenObjectsTest, AttributesThatLibnetcdfPassesOverAreListed) {
  const int one = 1;
  {
    const Hdf5Writer writer(m_path);
    writer.group("inner");
    writer.dataset("inner/v", H5T_NATIVE_INT);
    for (const char* path : {"/", "inner", "inner/v"}) {
      writer.attribute(path, "number", H5T_NATIVE_INT, &one);
      writer.attribute(path, "reference", H5T_STD_REF_OBJ);
      writer.attribute(path, "flags", H5T_STD_B8LE);
    }
  }
  EXPECT_THAT(attributes(),
              ElementsAre("/@flags: bit field type", "/@reference: reference type",
                          "/inner/@flags: bit field type", "/inner/@reference: reference type",
                          "/inner/v@flags: bit field type", "/inner/v@reference: reference type"));
  EXPECT_THAT(skipped(), IsEmpty());
}

TEST_F(HiddenObjectsTest, AttributesThatTellLibrariesAloneAreNotListed) {
  const int one = 1;
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("v", H5T_NATIVE_INT);
    for (const char* path : {"/", "v"}) {
      for (const char* name : {"_nc3_strict", "_NCProperties"}) {
        writer.attribute(path, name, H5T_NATIVE_INT, &one);
      }
      writer.attribute(path, "DIMENSION_LABELS", H5T_STD_B8LE);
      writer.attribute(path, "flags", H5T_STD_B8LE);
    }
  }
  EXPECT_THAT(attributes(), ElementsAre("/@flags: bit field type", "/v@flags: bit field type"));
}

TEST_F(HiddenObjectsTest, ClassicFileHidesNothing) {
  {
    const Writer writer(m_path, 0);
    writer.variable("v", NC_INT, {});
  }
  EXPECT_THAT(skipped(), IsEmpty());
  EXPECT_THAT(attributes(), IsEmpty());
}

}  // namespace
}  // namespace quillon::netcdf
