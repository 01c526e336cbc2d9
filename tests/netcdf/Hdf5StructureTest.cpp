#include <ostream>

#include "Hdf5Files.h"
#include "Hdf5Structure.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

void linkSoft(const Hdf5Writer& writer, const std::string& from, const std::string& to) {
  mustHdf5(H5Lcreate_soft(from.c_str(), writer.file(), to.c_str(), H5P_DEFAULT, H5P_DEFAULT));
}

haddr_t addressOf(const Hdf5Writer& writer, const std::string& path) {
  H5O_info_t info{};
  mustHdf5(H5Oget_info_by_name2(writer.file(), path.c_str(), &info, H5O_INFO_BASIC, H5P_DEFAULT));
  return info.addr;
}

void commit(const Hdf5Writer& writer, const std::string& path, hid_t type) {
  writer.commit(path, Hdf5Object(H5Tcopy(type), H5Tclose).id());
}

struct Refused {
  const char* name;
  void (*write)(const Hdf5Writer& writer);
  std::string why;
};

void PrintTo(const Refused& refused, std::ostream* out) { *out << refused.name; }

const std::string NO_DIMENSION_LIST =
    "the attribute 'DIMENSION_LIST' of '/v' is no list of references for each of its dimensions";

class SoundFile : public testing::TestWithParam<Refused> {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.h5");
};

TEST_P(SoundFile, ThatLibnetcdfCannotReadIsNotCalledDamaged) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("n", H5T_NATIVE_INT);
    GetParam().write(writer);
  }
  EXPECT_EQ(errorOf([&] { const File file(m_path); }),
            "Cannot read '" + m_path +
                "': it is a sound HDF5 file, but cannot be read as netCDF: " + GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    Obstacles, SoundFile,
    testing::Values(
        Refused{"GroupInItself",
                [](const Hdf5Writer& writer) {
                  writer.group("g");
                  linkHard(writer, "g", "g/same");
                },
                "the group '/g/same' is one of those that it stands in"},
        Refused{"GroupInItsChild",
                [](const Hdf5Writer& writer) {
                  writer.group("g");
                  writer.group("g/inner");
                  linkHard(writer, "/", "g/inner/up");
                },
                "the group '/g/inner/up' is one of those that it stands in"},
        Refused{"SoftLinkToTheGroupAbove",
                [](const Hdf5Writer& writer) {
                  writer.group("g");
                  linkSoft(writer, "/", "g/up");
                },
                "the group '/g/up' is one of those that it stands in"},
        Refused{"GroupsThatMultiply",
                [](const Hdf5Writer& writer) {
                  std::string path = "g";
                  for (int k = 0; k < 30; ++k) {
                    writer.group(path);
                    linkHard(writer, path, path + "twin");
                    path += "/g";
                  }
                },
                "links make more than 1000000 groups of its 31"},
        Refused{
            "LongName",
            [](const Hdf5Writer& writer) { writer.dataset(std::string(256, 'q'), H5T_NATIVE_INT); },
            "the name of '/" + std::string(256, 'q') + "' is longer than 255 bytes"},
        Refused{"LinkToNowhere",
                [](const Hdf5Writer& writer) { linkSoft(writer, "/nowhere", "s"); },
                "the link '/s' leads nowhere"},
        Refused{"LinkToAFileThatIsNotThere",
                [](const Hdf5Writer& writer) {
                  writer.group("g");
                  mustHdf5(H5Lcreate_external("none.h5", "/n", writer.file(), "g/s", H5P_DEFAULT,
                                              H5P_DEFAULT));
                },
                "the link '/g/s' leads nowhere"},
        Refused{"NamedNumber", [](const Hdf5Writer& writer) { commit(writer, "T", H5T_STD_I32LE); },
                "libnetcdf does not know named types such as '/T' (integer type of 4 bytes)"},
        Refused{"NamedReference",
                [](const Hdf5Writer& writer) { commit(writer, "T", H5T_STD_REF_OBJ); },
                "libnetcdf does not know named types such as '/T' (reference type)"},
        Refused{"FirstOfSeveral",
                [](const Hdf5Writer& writer) {
                  writer.group("a");
                  linkSoft(writer, "/nowhere", "a/s");
                  linkSoft(writer, "/nowhere", "b");
                  commit(writer, "T", H5T_STD_I32LE);
                },
                "libnetcdf does not know named types such as '/T' (integer type of 4 bytes)"},
        Refused{"AmongNamedTypesThatAreKnown",
                [](const Hdf5Writer& writer) {
                  writer.commit("a", compoundType().id());
                  writer.commit("b", booleanType().id());
                  writer.commit("c", Hdf5Object(H5Tvlen_create(H5T_NATIVE_INT), H5Tclose).id());
                  writer.commit("d", Hdf5Object(H5Tcreate(H5T_OPAQUE, 7), H5Tclose).id());
                  writer.commit("e", textType(5).id());
                  writer.dataset("f", H5T_NATIVE_INT);
                  linkHard(writer, "f", "g");
                  linkSoft(writer, "/nowhere", "z");
                },
                "the link '/z' leads nowhere"},
        Refused{"BehindAttributes",
                [](const Hdf5Writer& writer) {
                  const int one = 1;
                  writer.attribute("/", "a", H5T_NATIVE_INT, &one);
                  writer.attribute("n", "a", H5T_NATIVE_INT, &one);
                  writer.attribute("n", "b", H5T_STD_REF_OBJ);
                  linkSoft(writer, "/nowhere", "z");
                },
                "the link '/z' leads nowhere"},
        Refused{"TimeAttribute",
                [](const Hdf5Writer& writer) {
                  writer.attribute("/", "t", H5T_UNIX_D32LE);
                  linkSoft(writer, "/nowhere", "z");
                },
                "libnetcdf does not know the type of an attribute of '/' (time type)"},
        Refused{"TimeAttributeOfAVariable",
                [](const Hdf5Writer& writer) {
                  const int one = 1;
                  writer.attribute("n", "a", H5T_NATIVE_INT, &one);
                  writer.attribute("n", "t", H5T_UNIX_D32LE);
                  linkSoft(writer, "/nowhere", "z");
                },
                "libnetcdf does not know the type of an attribute of '/n' (time type)"},
        Refused{"MoreDimensionsThanAVariableHas",
                [](const Hdf5Writer& writer) {
                  const int dimensions[] = {5, 6, 7};
                  writer.attribute("n", "_Netcdf4Coordinates", H5T_NATIVE_INT, dimensions, {3});
                },
                "NetCDF: HDF error"},
        Refused{"DimensionsThatAreNumbers",
                [](const Hdf5Writer& writer) {
                  const int one = 1;
                  writer.dataset("v", H5T_NATIVE_INT, {2});
                  writer.attribute("v", "DIMENSION_LIST", H5T_NATIVE_INT, &one, {1});
                },
                NO_DIMENSION_LIST},
        Refused{"DimensionsThatAreReferencesAlone",
                [](const Hdf5Writer& writer) {
                  writer.dataset("v", H5T_NATIVE_INT, {2});
                  writer.attribute("v", "DIMENSION_LIST", H5T_STD_REF_OBJ, nullptr, {1});
                },
                NO_DIMENSION_LIST},
        Refused{"DimensionsThatAreArraysOfReferences",
                [](const Hdf5Writer& writer) {
                  const hsize_t one = 1;
                  const Hdf5Object list(H5Tarray_create2(H5T_STD_REF_OBJ, 1, &one), H5Tclose);
                  writer.dataset("v", H5T_NATIVE_INT, {2});
                  writer.attribute("v", "DIMENSION_LIST", list.id(), nullptr, {1});
                },
                NO_DIMENSION_LIST},
        Refused{"DimensionsThatAreListsOfNumbers",
                [](const Hdf5Writer& writer) {
                  const Hdf5Object list(H5Tvlen_create(H5T_NATIVE_INT), H5Tclose);
                  writer.dataset("v", H5T_NATIVE_INT, {2});
                  writer.attribute("v", "DIMENSION_LIST", list.id(), nullptr, {1});
                },
                NO_DIMENSION_LIST},
        Refused{"DimensionsOfAnotherNumber",
                [](const Hdf5Writer& writer) {
                  const Hdf5Object list(H5Tvlen_create(H5T_STD_REF_OBJ), H5Tclose);
                  writer.dataset("v", H5T_NATIVE_INT, {2, 3});
                  writer.attribute("v", "DIMENSION_LIST", list.id(), nullptr, {3});
                },
                NO_DIMENSION_LIST},
        Refused{"Time", [](const Hdf5Writer& writer) { writer.dataset("t", H5T_UNIX_D32LE); },
                "libnetcdf does not know the type of '/t' (time type)"}),
    [](const auto& given) { return given.param.name; });

class Hdf5StructureTest : public testing::Test {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.h5");
};

TEST_F(Hdf5StructureTest, ListOfDimensionsMayNameNone) {
  {
    const Hdf5Writer writer(m_path);
    const Hdf5Object list(H5Tvlen_create(H5T_STD_REF_OBJ), H5Tclose);
    const hvl_t none[2] = {};
    writer.dataset("v", H5T_NATIVE_INT, {2, 3});
    writer.attribute("v", "DIMENSION_LIST", list.id(), none, {2});
  }
  EXPECT_EQ(findTrap(m_path), "");
  EXPECT_EQ(File(m_path).root().getDataName(0), "v");
}

TEST_F(Hdf5StructureTest, GroupThatIsLinkedTwiceIsReadTwice) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("g");
    writer.dataset("g/n", H5T_NATIVE_INT);
    linkHard(writer, "g", "hard");
    linkSoft(writer, "/g", "soft");
    linkSoft(writer, "/g/n", "m");
  }
  const std::vector<std::string> zero{"0"};
  EXPECT_EQ(contentOf(File(m_path).root()),
            (std::map<std::string, std::vector<std::string>>{
                {"/g/n", zero}, {"/hard/n", zero}, {"/m", zero}, {"/soft/n", zero}}));
}

TEST_F(Hdf5StructureTest, LongestNameIsRead) {
  const std::string name(255, 'q');
  {
    const Hdf5Writer writer(m_path);
    writer.dataset(name, H5T_NATIVE_INT);
  }
  EXPECT_EQ(File(m_path).root().getDataName(0), name);
}

// libnetcdf does not show it: its name would be no obstacle.
TEST_F(Hdf5StructureTest, LongNameOfAHiddenDataSetIsATrap) {
  const std::string name(256, 'q');
  {
    const Hdf5Writer writer(m_path);
    writer.dataset(name, H5T_STD_B8LE);
  }
  EXPECT_EQ(findTrap(m_path), "the name of '/" + name + "' is longer than 255 bytes");
}

TEST_F(Hdf5StructureTest, DamagedFileIsNotCalledSound) {
  {
    const Hdf5Writer writer(m_path);
    writer.dataset("n", H5T_NATIVE_INT);
    linkSoft(writer, "/nowhere", "s");
  }
  const std::string bytes = readBytes(m_path);
  writeBytes(m_path, bytes.substr(0, bytes.size() - 1));
  EXPECT_EQ(errorOf([&] { const File file(m_path); }),
            "Cannot read '" + m_path +
                "': it cannot be opened, or is damaged or cut short (NetCDF: HDF error)");
}

TEST_F(Hdf5StructureTest, WhatCannotBeOpenedIsDamage) {
  std::vector<std::size_t> headers;
  {
    const int one = 1;
    const Hdf5Writer writer(m_path);
    writer.group("g");
    writer.dataset("g/n", H5T_NATIVE_INT);
    writer.dataset("a", H5T_NATIVE_INT);
    writer.attribute("a", "first", H5T_NATIVE_INT, &one);
    writer.dataset("b", H5T_NATIVE_INT);
    writer.attribute("b", "second", H5T_NATIVE_INT, &one);
    for (const char* path : {"/", "g", "g/n", "a"}) {
      headers.push_back(addressOf(writer, path));
    }
  }
  const std::string whole = readBytes(m_path);
  EXPECT_TRUE(judgeHdf5(m_path).isSound);
  headers.push_back(whole.find("first") - 8);  // where the attribute begins
  headers.push_back(whole.rfind("HEAP"));      // the names in the group
  for (const std::size_t header : headers) {
    std::string bytes = whole;
    bytes[header] = '\x7f';
    writeBytes(m_path, bytes);
    EXPECT_FALSE(judgeHdf5(m_path).isSound) << header;
    EXPECT_EQ(judgeHdf5(m_path).obstacle, "") << header;
    EXPECT_EQ(findTrap(m_path), "") << header;
    EXPECT_THAT(errorOf([&] { const File file(m_path); }),
                testing::StartsWith("Cannot read '" + m_path + "': "))
        << header;
  }
}

TEST_F(Hdf5StructureTest, AMillionGroupsAreFollowedAndNoMore) {
  {
    const Hdf5Writer writer(m_path);
    // The root has nine times the next group, and that and those below ten times the one in it:
    // they count as 1 + 9 * 111111.
    std::string path = "/";
    for (const int links : {9, 10, 10, 10, 10, 10}) {
      writer.group(path + "0");
      for (int k = 1; k < links; ++k) {
        linkHard(writer, path + "0", path + std::to_string(k));
      }
      path += "0/";
    }
    writer.dataset("n", H5T_NATIVE_INT);  // no groups
    linkSoft(writer, "/nowhere", "s");
  }
  EXPECT_EQ(findTrap(m_path), "");
  {
    const Hdf5Object file(mustHdf5(H5Fopen(m_path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT)), H5Fclose);
    mustHdf5(H5Lcreate_soft("/0/0/0/0/0/0", file.id(), "more", H5P_DEFAULT, H5P_DEFAULT));
  }
  EXPECT_EQ(findTrap(m_path), "links make more than 1000000 groups of its 7");
}

TEST_F(Hdf5StructureTest, GroupInItselfIsJudgedOnce) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("g");
    linkHard(writer, "g", "g/same");
  }
  EXPECT_TRUE(judgeHdf5(m_path).isSound);
}

TEST_F(Hdf5StructureTest, ThreeThousandNestedGroupsAreFollowed) {
  {
    const Hdf5Writer writer(m_path);
    Hdf5Object group(mustHdf5(H5Gopen2(writer.file(), "/", H5P_DEFAULT)), H5Gclose);
    for (int k = 0; k < 3000; ++k) {
      group = Hdf5Object(
          mustHdf5(H5Gcreate2(group.id(), "g", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)), H5Gclose);
    }
  }
  EXPECT_EQ(findTrap(m_path), "");
  EXPECT_TRUE(judgeHdf5(m_path).isSound);
}

}  // namespace
}  // namespace quillon::netcdf
