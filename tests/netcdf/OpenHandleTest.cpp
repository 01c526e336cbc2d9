#include <filesystem>

#include "FileCheck.h"
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

TEST_F(OpenHandleTest, OtherFilesHaveHandlesOfTheirOwn) {
  const CheckedFile a(file("a.nc", NC_NETCDF4));
  const CheckedFile b(file("b.nc", NC_NETCDF4));
  const OpenHandle first(a);
  EXPECT_NE(OpenHandle(b).id(), first.id());
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
