#include <sys/stat.h>

#include <filesystem>
#include <ostream>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

std::string openingError(const std::string& path) {
  return errorOf([&] { const File file(path); });
}

long openFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

TEST(OpeningAFile, SaysThatItIsMissing) {
  EXPECT_EQ(openingError("/nonexistent/a.nc"),
            "Cannot read '/nonexistent/a.nc': there is no such file");
}

TEST(OpeningAFile, NeverGoesToTheNetwork) {
  EXPECT_EQ(openingError("http://localhost/a.nc"),
            "Cannot read 'http://localhost/a.nc': there is no such file");
}

TEST(OpeningAFile, SaysThatThePathLeadsThroughAFile) {
  const Scratch scratch;
  writeBytes(scratch.path("file"), "x");
  EXPECT_EQ(openingError(scratch.path("file/a.nc")),
            "Cannot read '" + scratch.path("file/a.nc") + "': there is no such file");
}

TEST(OpeningAFile, SaysThatItIsADirectory) {
  const Scratch scratch;
  EXPECT_EQ(openingError(scratch.path("")),
            "Cannot read '" + scratch.path("") + "': it is a directory");
}

TEST(OpeningAFile, DoesNotWaitForAPipe) {
  const Scratch scratch;
  ASSERT_EQ(mkfifo(scratch.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(openingError(scratch.path("pipe")),
            "Cannot read '" + scratch.path("pipe") + "': it is not a regular file");
}

struct ContentCase {
  const char* rule;
  std::string bytes;
  const char* message;
};

void PrintTo(const ContentCase& c, std::ostream* os) { *os << c.rule; }

class ContentTest : public testing::TestWithParam<ContentCase> {};

TEST_P(ContentTest, IsRefused) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  writeBytes(path, GetParam().bytes);
  EXPECT_EQ(openingError(path), "Cannot read '" + path + "': " + GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ContentTest,
    testing::ValuesIn(std::vector<ContentCase>{
        {"NoByte", "", "it is empty"},
        {"OneByte", "C", "it is not a netCDF file"},
        {"Text", "label,area\n1,20\n", "it is not a netCDF file"},
        {"Zeros", std::string(5000, '\0'), "it is not a netCDF file"},
        {"UnknownClassicVersion", "CDF\3" + std::string(100, '\0'), "it is not a netCDF file"},
        {"OtherLettersBeforeAClassicVersion", "ABC\1" + std::string(100, 'x'),
         "it is not a netCDF file"},
        {"SignatureOfAClassicFileAlone", "CDF\1", "it ends within its header"},
        {"SignatureOfANetcdf4FileAlone", "\x89HDF\r\n\x1a\n",
         "it cannot be opened, or is damaged or cut short (NetCDF: HDF error)"},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(OpeningAFile, SaysWhatTheSystemSays) {
  const Scratch scratch;
  const std::string path = scratch.path(std::string(300, 'a'));
  EXPECT_EQ(openingError(path), "Cannot read '" + path + "': File name too long");
}

class CutWhileOpenTest : public testing::TestWithParam<int> {
 protected:
  CutWhileOpenTest() {
    const Writer writer(m_path, GetParam());
    const int x = writer.dimension("x", VALUES);
    writer.put<int>(writer.variable("v", NC_INT, {x}), {VALUES}, std::vector<int>(VALUES, 7));
  }

  static constexpr std::size_t VALUES = 100'000;
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

// The libraries below read zeros past the end.
TEST_P(CutWhileOpenTest, ReadsAsAnErrorInsteadOfZeros) {
  OpenOptions options;
  options.windowBytes = 4000;
  const File file(m_path, options);
  const unsigned long bytes = std::filesystem::file_size(m_path);
  object_model::TupleX index(1);
  EXPECT_EQ(arrayAt(file, "v").getValueAsInt(index), 7);
  std::filesystem::resize_file(m_path, bytes / 2);
  index[0] = VALUES - 1;
  EXPECT_EQ(errorOf([&] { arrayAt(file, "v").getValueAsInt(index); }),
            "Cannot read '" + m_path + "': it was cut from " + std::to_string(bytes) + " to " +
                std::to_string(bytes / 2) + " bytes while it was open");
}

TEST_P(CutWhileOpenTest, GrowingDoesNotMatter) {
  const File file(m_path);
  std::filesystem::resize_file(m_path, std::filesystem::file_size(m_path) + 1);
  EXPECT_EQ(arrayAt(file, "v").getValueAsInt(object_model::TupleX(1)), 7);
}

INSTANTIATE_TEST_SUITE_P(Formats, CutWhileOpenTest, testing::Values(0, NC_64BIT_DATA, NC_NETCDF4));

TEST(ManyOpens, LeaveNoFileOpen) {
  const Scratch scratch;
  const std::string good = readBytes(QUILLON_DATA_DIR "/nuclei_measurements.nc");
  writeBytes(scratch.path("good"), good);
  writeBytes(scratch.path("cut"), good.substr(0, good.size() / 2));
  writeBytes(scratch.path("classic"), "CDF\1");
  writeBytes(scratch.path("none"), "text");
  { const Writer writer(scratch.path("good classic"), 0); }
  const long before = openFiles();
  for (int k = 0; k < 100; ++k) {
    EXPECT_EQ(openingError(scratch.path("good")), "");
    EXPECT_EQ(openingError(scratch.path("good classic")), "");
    EXPECT_NE(openingError(scratch.path("cut")), "");
    EXPECT_NE(openingError(scratch.path("classic")), "");
    EXPECT_NE(openingError(scratch.path("none")), "");
    const File file(scratch.path("good"));
    EXPECT_NE(errorOf([&] { file.group("none"); }), "");
  }
  EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace quillon::netcdf
