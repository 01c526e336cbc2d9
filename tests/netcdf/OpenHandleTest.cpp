#include <filesystem>

#include "FileCheck.h"
#include "Hdf5Files.h"
#include "OpenHandle.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

class OpenHandleTest : public testing::Test {
 protected:
  static void write(const std::string& path, int mode) {
    const Writer writer(path, mode);
    const int x = writer.dimension("x", 2);
    writer.put<int>(writer.variable("numbers", NC_INT, {x}), {2}, {1, 2});
    if (mode == NC_NETCDF4) {
      const int strings = writer.variable("strings", NC_STRING, {x});
      writer.put<const char*>(strings, {2}, {"one", "two"});
    }
  }

  std::string file(const std::string& name, int mode) const {
    const std::string path = m_scratch.path(name);
    write(path, mode);
    return path;
  }

  static std::string nameOf(hid_t file) {
    std::string name(1000, '\0');
    name.resize(static_cast<std::size_t>(H5Fget_name(file, name.data(), name.size())));
    return name;
  }

  Scratch m_scratch;
};

// libhdf5 would follow a pointer into the handle that was opened first.
TEST_F(OpenHandleTest, StringsOfAFileThatIsOpenTwiceOutliveTheFirst) {
  const std::string path = file("a.nc", NC_NETCDF4);
  auto first = std::make_unique<File>(path);
  contentOf(first->root());
  const File second(path);
  first.reset();
  EXPECT_EQ(contentOf(second.root()).at("/strings"), contentOf(File(path).root()).at("/strings"));
  EXPECT_EQ(valuesOf(arrayAt(second, "strings")), (std::vector<std::string>{"one", "two"}));
}

TEST_F(OpenHandleTest, NetCdf4FileIsOpenOnceUnderAllItsNames) {
  const CheckedFile named(file("a.nc", NC_NETCDF4));
  std::filesystem::create_hard_link(m_scratch.path("a.nc"), m_scratch.path("b.nc"));
  const CheckedFile linked(m_scratch.path("b.nc"));
  const OpenHandle first(named);
  EXPECT_EQ(OpenHandle(linked).id(), first.id());
}

TEST_F(OpenHandleTest, KnowsTheFileThatLibnetcdfHasOpenInLibhdf5) {
  const std::string path = file("a.nc", NC_NETCDF4);
  const CheckedFile a(path);
  const CheckedFile b(file("b.nc", NC_NETCDF4));
  const Hdf5Object stranger(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
  const OpenHandle first(a);
  const OpenHandle second(b);
  EXPECT_EQ(nameOf(first.hdf5()), path);
  EXPECT_NE(first.hdf5(), stranger.id());
  EXPECT_EQ(OpenHandle(a).hdf5(), first.hdf5());
  EXPECT_EQ(nameOf(second.hdf5()), m_scratch.path("b.nc"));
}

TEST_F(OpenHandleTest, ClassicFileIsNotOpenInLibhdf5) {
  const CheckedFile a(file("a.nc", 0));
  EXPECT_LT(OpenHandle(a).hdf5(), 0);
}

TEST_F(OpenHandleTest, NothingOfLibhdf5StaysOpen) {
  const std::string netcdf = file("a.nc", NC_NETCDF4);
  const std::string other = m_scratch.path("b.h5");
  {
    const Hdf5Writer writer(other);
    writer.group("g");
    writer.dataset("g/fixed", textType(5).id(), {2});
    writer.dataset("g/strings", textType(H5T_VARIABLE).id(), {2});
    writer.dataset("hidden", H5T_STD_B8LE);
    writer.attribute("g", "hidden", H5T_STD_B8LE);
  }
  const auto all = static_cast<hid_t>(H5F_OBJ_ALL);
  for (const std::string& path : {netcdf, other}) {
    const ssize_t before = H5Fget_obj_count(all, H5F_OBJ_ALL);
    {
      const File first(path);
      contentOf(File(path).root());
    }
    EXPECT_EQ(H5Fget_obj_count(all, H5F_OBJ_ALL), before) << path;
  }
}

/// What a link has opened that opens the file it names each time it is followed.
std::vector<Hdf5Object>& openedByLinks() {
  static std::vector<Hdf5Object> files;
  return files;
}

// As another thread may open one.
TEST_F(OpenHandleTest, FileIsKnownByItsNameWhereAnotherIsOpenedMeanwhile) {
  constexpr auto LINK = static_cast<H5L_type_t>(200);
  const H5L_class_t opening{
      H5L_LINK_CLASS_T_VERS,
      LINK,
      "opens a file",
      nullptr,
      nullptr,
      nullptr,
      [](const char*, hid_t, const void* path, auto...) -> hid_t {
        openedByLinks().emplace_back(
            H5Fopen(static_cast<const char*>(path), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
        return H5Gopen2(openedByLinks().back().id(), "/", H5P_DEFAULT);
      },
      nullptr,
      nullptr};
  mustHdf5(H5Lregister(&opening));
  const std::string path = m_scratch.path("a.h5");
  const std::string other = m_scratch.path("b.h5");
  { const Hdf5Writer writer(other); }
  {
    const Hdf5Writer writer(path);
    mustHdf5(H5Lcreate_ud(writer.file(), "link", LINK, other.c_str(), other.size() + 1, H5P_DEFAULT,
                          H5P_DEFAULT));
  }
  const CheckedFile file(path);
  EXPECT_EQ(nameOf(OpenHandle(file).hdf5()), path);
  EXPECT_GT(openedByLinks().size(), 0U);
  openedByLinks().clear();
  mustHdf5(H5Lunregister(LINK));
}

// As OpenHandle has it for strings, but through the handle that libnetcdf made.
TEST_F(OpenHandleTest, TextsOutliveAHandleOfSomebodyElse) {
  const std::string path = file("a.nc", NC_NETCDF4);
  Hdf5Object stranger(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
  const File own(path);
  stranger = Hdf5Object();
  EXPECT_EQ(valuesOf(arrayAt(own, "strings")), (std::vector<std::string>{"one", "two"}));
}

TEST_F(OpenHandleTest, OtherFilesHaveHandlesOfTheirOwn) {
  const CheckedFile a(file("a.nc", NC_NETCDF4));
  const CheckedFile b(file("b.nc", NC_NETCDF4));
  const OpenHandle first(a);
  EXPECT_NE(OpenHandle(b).id(), first.id());
}

/// Why a file is refused that other programs wrote, with a group in itself, which libnetcdf would
/// follow without end, and these attributes of the root.
std::string refusalOfGroupInItself(
    const std::string& path, const std::vector<std::pair<const char*, std::string>>& attributes) {
  {
    const Hdf5Writer writer(path);
    for (const auto& [name, text] : attributes) {
      writer.attribute("/", name, textType(text.size()).id(), text.data());
    }
    writer.group("g");
    linkHard(writer, "g", "g/same");
  }
  const std::string prefix = "Cannot read '" + path + "': ";
  const std::string error = errorOf([&] { const File file(path); });
  return error.substr(0, prefix.size()) == prefix ? error.substr(prefix.size()) : error;
}

TEST_F(OpenHandleTest, FileIsLookedAtUnlessItsPropertiesNameLibnetcdf) {
  const std::string path = m_scratch.path("a.h5");
  const std::string refusal =
      "it is a sound HDF5 file, but cannot be read as netCDF: the group '/g/same' is one of those "
      "that it stands in";
  const std::string others = "version=2,h5netcdf=1.1.0,hdf5=1.10.8";
  const std::string history = "made of another one,netcdf=4.9.0";
  EXPECT_EQ(refusalOfGroupInItself(path, {}), refusal);
  EXPECT_EQ(refusalOfGroupInItself(path, {{"_NCProperties", others}}), refusal);
  EXPECT_EQ(refusalOfGroupInItself(path, {{"history", history}}), refusal);
  EXPECT_EQ(refusalOfGroupInItself(path, {{"history", history}, {"_NCProperties", others}}),
            refusal);
}

/// The bytes of a number of a classic file's header.
std::string inHeader(unsigned int number) {
  std::string bytes;
  for (const unsigned int shift : {24U, 16U, 8U, 0U}) {
    bytes += static_cast<char>(number >> shift & 0xffU);
  }
  return bytes;
}

TEST_F(OpenHandleTest, ClassicFileThatLibnetcdfRefusesIsAnErrorInItsWords) {
  const std::string none = inHeader(0) + inHeader(0);
  const auto named = [](char name) { return inHeader(1) + name + std::string(3, '\0'); };
  const auto variable = [&](char name) {
    return named(name) + inHeader(2) + inHeader(0) + inHeader(1) + none + inHeader(NC_BYTE) +
           inHeader(0) + inHeader(200);
  };
  const std::string path = m_scratch.path("a.nc");
  // Two variables without records that would have more than 2 GiB each.
  writeBytes(path, "CDF\1" + inHeader(0) + inHeader(10) + inHeader(2) + named('t') + inHeader(0) +
                       named('x') + inHeader(0x7fff'ffff) + none + inHeader(11) + inHeader(2) +
                       variable('a') + variable('b'));
  EXPECT_EQ(errorOf([&] { const File file(path); }),
            "Cannot read '" + path +
                "': it cannot be opened, or is damaged or cut short (NetCDF: One or more variable "
                "sizes violate format constraints)");
}

// One that was written anew under its old name shows its new header.
TEST_F(OpenHandleTest, ClassicFileIsReadAnewEachTime) {
  const CheckedFile a(file("a.nc", 0));
  const OpenHandle first(a);
  EXPECT_NE(OpenHandle(a).id(), first.id());
}

TEST_F(OpenHandleTest, FileIsOpenedAnewAfterTheLastHandleIsGone) {
  const std::string path = file("a.nc", NC_NETCDF4);
  { const File closed(path); }
  write(path, NC_NETCDF4);
  EXPECT_EQ(valuesOf(arrayAt(File(path), "strings")), (std::vector<std::string>{"one", "two"}));
}

}  // namespace
}  // namespace quillon::netcdf
