#include <filesystem>
#include <ostream>

#include "LibraryPath.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

namespace fs = std::filesystem;

struct NameCase {
  const char* rule;
  std::string name;
};

void PrintTo(const NameCase& c, std::ostream* os) { *os << c.rule; }

/// Runs in a directory that has a file of each title under each of these names.
class LibraryPathTest : public testing::TestWithParam<NameCase> {
 protected:
  LibraryPathTest() { fs::current_path(m_scratch.path("")); }
  ~LibraryPathTest() override { fs::current_path(m_before); }

  /// A file whose title is its name.
  void write(const std::string& name, int mode) const {
    fs::create_directories((fs::path(".") / name).parent_path());
    {
      const Writer writer(m_scratch.path("new"), mode);
      writer.text(NC_GLOBAL, "title", name);
    }
    fs::rename("new", name);
  }

  std::string absolute(const std::string& name) const { return m_scratch.path(name); }

 private:
  fs::path m_before = fs::current_path();
  Scratch m_scratch;
};

TEST_P(LibraryPathTest, OpensTheFileThatIsNamed) {
  const std::string& name = GetParam().name;
  for (const int mode : {0, NC_64BIT_DATA, NC_NETCDF4, NC_NETCDF4 | NC_CLASSIC_MODEL}) {
    // What the library might take the names for.
    for (const char* other : {"ok.nc", "x.nc", "c/x.nc", "http/h.nc", "p.nc", "f.nc"}) {
      write(other, mode);
    }
    write(name, mode);
    EXPECT_EQ(File(name).title(), name) << mode;
    EXPECT_EQ(File(absolute(name)).title(), name) << mode;
    EXPECT_EQ(File("./" + name).title(), name) << mode;
  }
}

TEST_P(LibraryPathTest, DoesNotFindAnother) {
  for (const char* other : {"ok.nc", "x.nc", "c/x.nc", "http/h.nc", "p.nc", "f.nc"}) {
    write(other, 0);
  }
  EXPECT_EQ(errorOf([] { const File file(GetParam().name); }),
            "Cannot read '" + GetParam().name + "': there is no such file");
}

INSTANTIATE_TEST_SUITE_P(Names, LibraryPathTest,
                         testing::ValuesIn(std::vector<NameCase>{
                             {"LeadingBlank", " ok.nc"},
                             {"LeadingBlanks", "  \tok.nc"},
                             {"TrailingBlank", "ok.nc "},
                             {"BlankWithin", "o k.nc"},
                             {"BlankAlone", " "},
                             {"LeadingLineBreak", "\nok.nc"},
                             {"TrailingLineBreak", "ok.nc\n"},
                             {"LineBreakWithin", "o\nk.nc"},
                             {"ControlCharacter", "\1ok.nc"},
                             {"Scheme", "http:/h.nc"},
                             {"SchemeWithTwoSlashes", "http://h/h.nc"},
                             {"SchemeOfAnything", "a://b.nc"},
                             {"SchemeWithMode", "http://h/z.nc#mode=bytes"},
                             {"SchemeWithPort", "http://h:80/h.nc"},
                             {"FileScheme", "file:f.nc"},
                             {"FileSchemeWithOneSlash", "file:/f.nc"},
                             {"FileSchemeWithThreeSlashes", "file:///f.nc"},
                             {"FileSchemeWithMode", "file:///f.nc#mode=netcdf4"},
                             {"S3Scheme", "s3://bucket/key.nc"},
                             {"DodsScheme", "dods://h/ok.nc"},
                             {"ModeInBrackets", "[mode=netcdf4]p.nc"},
                             {"BracketsBeforeAScheme", "[mode=bytes]http://h/h.nc"},
                             {"Brackets", "[b].nc"},
                             {"ModeAsFragment", "ok.nc#mode=zarr"},
                             {"ModesAsFragment", "ok.nc#mode=nczarr,file"},
                             {"Fragment", "ok.nc#x"},
                             {"Query", "ok.nc?a=1"},
                             {"LeadingQuestionMark", "?ok.nc"},
                             {"Star", "*.nc"},
                             {"Home", "~ok.nc"},
                             {"HomeDirectory", "~/ok.nc"},
                             {"Drive", "c:x.nc"},
                             {"DriveWithSlash", "c:/x.nc"},
                             {"CapitalDrive", "C:/x.nc"},
                             {"DirectoryLikeADrive", "d/x.nc"},
                             {"DirectoryOfDrives", "cygdrive/c/x.nc"},
                             {"DoubleSlash", "a//x.nc"},
                             {"PercentEscape", "%20ok.nc"},
                             {"LeadingDash", "-ok.nc"},
                             {"Quotes", "'ok'\".nc"},
                             {"Variable", "$HOME.nc"},
                             {"Utf8", "größe.nc"},
                             {"NoUtf8", "\xff.nc"},
                         }),
                         [](const auto& c) { return c.param.rule; });

class BackslashTest : public LibraryPathTest {};

TEST_P(BackslashTest, IsRefused) {
  const std::string& name = GetParam().name;
  for (const int mode : {0, NC_NETCDF4}) {
    write("a/ok.nc", mode);
    write("c/x.nc", mode);
    write(name, mode);
    for (const std::string& path : {name, absolute(name)}) {
      EXPECT_EQ(errorOf([&] { const File file(path); }),
                "Cannot read '" + path +
                    "': its path has a backslash, which the netCDF library takes for a slash");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Names, BackslashTest,
                         testing::ValuesIn(std::vector<NameCase>{{"Within", "a\\ok.nc"},
                                                                 {"Leading", "\\c\\x.nc"},
                                                                 {"Drive", "C:\\x.nc"},
                                                                 {"Server", "\\\\c\\x.nc"},
                                                                 {"Trailing", "ok.nc\\"}}),
                         [](const auto& c) { return c.param.rule; });

TEST(LibraryPath, RelativePathsBeginWithADot) {
  EXPECT_EQ(libraryPath("ok.nc"), "./ok.nc");
  EXPECT_EQ(libraryPath("../ok.nc"), "./../ok.nc");
}

TEST(LibraryPath, RepeatedSlashesAreOne) {
  EXPECT_EQ(libraryPath("//a///b//c.nc"), "/a/b/c.nc");
  EXPECT_EQ(libraryPath("http://h/a.nc"), "./http:/h/a.nc");
}

TEST(LibraryPath, NameWithANullCharacterIsNone) {
  const Scratch scratch;
  const std::string path = scratch.path("ok.nc");
  { const Writer writer(path, 0); }
  EXPECT_EQ(
      errorOf([&] { const File file(path + std::string("\0x", 2)); }),
      "Cannot read '" + path + "': its name goes on behind a null character, which no file's does");
}

TEST(LibraryPath, EmptyNameIsNone) {
  EXPECT_EQ(errorOf([] { const File file(""); }), "Cannot read '': there is no such file");
}

}  // namespace
}  // namespace quillon::netcdf
