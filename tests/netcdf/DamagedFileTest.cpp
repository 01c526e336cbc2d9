#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::HasSubstr;

void readAll(const std::string& path) {
  OpenOptions options;
  options.windowBytes = 4096;
  contentOf(File(path, options).root());
}

void writeSmallNetcdf4(const std::string& path) {
  const Writer writer(path, NC_NETCDF4);
  const int x = writer.dimension("x", 4);
  writer.text(writer.variable("x", NC_DOUBLE, {x}), "units", "days since 2000-01-01");
  const int inner = writer.group("inner");
  const int values = writer.variable("values", NC_INT, {x}, inner);
  writer.text(values, "long_name", "some values", inner);
  writer.put<int>(values, {4}, {1, 2, 3, 4}, inner);
  const int names = writer.variable("names", NC_STRING, {x}, inner);
  writer.put<const char*>(names, {4}, {"north", "", "south", "a longer name"}, inner);
}

TEST(DamagedNetcdf4File, CutAnywhereIsAnError) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  for (const std::string& whole : {readBytes(QUILLON_DATA_DIR "/nuclei_measurements.nc"), [&] {
                                     writeSmallNetcdf4(path);
                                     return readBytes(path);
                                   }()}) {
    for (unsigned long length = 0; length < whole.size(); length += 1 + length / 50) {
      writeBytes(path, whole.substr(0, length));
      EXPECT_THAT(errorOf([&] { readAll(path); }), HasSubstr(path)) << "cut at " << length;
    }
    writeBytes(path, whole.substr(0, whole.size() - 1));
    EXPECT_THAT(errorOf([&] { readAll(path); }), HasSubstr(path)) << "last byte missing";
  }
}

// What libhdf5 makes of damage may end the process or take all of its time. Whatever this library
// makes of what comes back is either content or an Error, which names the file.
void expectContentOrError(const std::string& path, const std::string& whole, unsigned long step) {
  constexpr unsigned int MOST_SECONDS = 5;
  for (unsigned long position = 0; position < whole.size(); position += step) {
    std::string damaged = whole;
    damaged[position] = static_cast<char>(~damaged[position]);
    writeBytes(path, damaged);
    const auto read = [&] {
      const std::string error = errorOf([&] { readAll(path); });
      if (!error.empty() && error.find(path) == std::string::npos) {
        throw std::runtime_error(error);
      }
    };
    EXPECT_NE(fateOf(read, MOST_SECONDS), BY_EXCEPTION) << "flipped at " << position;
  }
}

TEST(DamagedNetcdf4File, FlippedByteGivesContentOrAnError) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  writeSmallNetcdf4(path);
  expectContentOrError(path, readBytes(path), 53);
}

TEST(DamagedNetcdf4File, FlippedByteInMeasurementsGivesContentOrAnError) {
  const Scratch scratch;
  expectContentOrError(scratch.path("a.nc"), readBytes(QUILLON_DATA_DIR "/nuclei_measurements.nc"),
                       331);
}

// Nothing is looked for in the values of a file: here they look like a heap of HDF5 that ends
// nowhere.
TEST(SoundNetcdf4File, MayHoldAnyBytes) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  const std::vector<char> bytes = {'G', 'C', 'O', 'L', 1, 0, 0, 0, 127, 127, 127, 127};
  {
    const Writer writer(path, NC_NETCDF4);
    writer.put<char>(writer.variable("v", NC_BYTE, {writer.dimension("x", bytes.size())}),
                     {bytes.size()}, bytes);
  }
  EXPECT_THAT(
      valuesOf(arrayAt(File(path), "v")),
      testing::ElementsAre("71", "67", "79", "76", "1", "0", "0", "0", "127", "127", "127", "127"));
}

/// A file with one string, to which it refers by length, heap and number in that heap.
class DamagedReferenceTest : public testing::Test {
 protected:
  void SetUp() override {
    {
      const Writer writer(m_path, NC_NETCDF4);
      writer.put<const char*>(writer.variable("name", NC_STRING, {}), {}, {"text"});
    }
    m_bytes = readBytes(m_path);
    const std::uint64_t heap = m_bytes.find("GCOL");
    std::string address(sizeof heap, '\0');
    std::memcpy(address.data(), &heap, sizeof heap);
    m_heap = m_bytes.rfind(address);
    ASSERT_NE(m_heap, std::string::npos);
  }

  void setLength(const std::string& length) { m_bytes.replace(m_heap - 4, 4, length); }

  std::string errorOfReading() const {
    writeBytes(m_path, m_bytes);
    return errorOf([&] { readAll(m_path); });
  }

  std::string cannotBeRead() const {
    return "Cannot read '" + m_path + "': variable '/name' cannot be read";
  }

 private:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::string m_bytes;
  std::size_t m_heap = 0;
};

TEST_F(DamagedReferenceTest, StringThatIsLongerThanMemoryIsAnError) {
  if (!MEMORY_IS_LIMITED) {
    GTEST_SKIP() << "memory cannot be limited under the address sanitizer";
  }
  setLength("\xff\xff\xff\x7f");
  EXPECT_EQ(
      fateOf([&] { requireError(errorOfReading(), cannotBeRead() + " (NetCDF: HDF error)"); }), "");
}

class AbsurdClaimTest : public testing::Test {
 protected:
  void writeGrid(std::size_t rows, std::size_t columns, nc_type type) const {
    const Writer writer(m_path, NC_NETCDF4);
    writer.variable("grid", type,
                    {writer.dimension("rows", rows), writer.dimension("columns", columns)});
  }

  std::string errorOfOpening() const {
    return errorOf([&] { const File file(m_path); });
  }

  std::string errorOfText() const {
    const File file(m_path);
    return errorOf([&] { arrayAt(file, "grid").getValueAsString(object_model::TupleX(1)); });
  }

 private:
  Scratch m_scratch;

 protected:
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(AbsurdClaimTest, ValuesThatAreNotWrittenYetReadAsFillValues) {
  writeGrid(100'000, 100'000, NC_DOUBLE);
  OpenOptions options;
  options.decode = false;
  const File file(m_path, options);
  const memory::ArrayBase& grid = arrayAt(file, "grid");
  EXPECT_EQ(grid.numberOfElements(), 10'000'000'000U);
  object_model::TupleX last(2);
  last[0] = 99'999;
  last[1] = 99'999;
  EXPECT_EQ(grid.getValueAsDouble(last), NC_FILL_DOUBLE);
}

TEST_F(AbsurdClaimTest, AnyNumberThatCanBeCountedOpens) {
  for (const auto& [type, extent] : {std::pair(NC_BYTE, 1UL << 31U), {NC_STRING, 1UL << 29U}}) {
    writeGrid(extent, extent, type);
    EXPECT_EQ(errorOfOpening(), "") << type;
    EXPECT_EQ(arrayAt(File(m_path), "grid").numberOfElements(), extent * extent) << type;
  }
}

// In one piece libhdf5 takes half as many.
TEST_F(AbsurdClaimTest, AnyNumberInChunksThatCanBeCountedOpens) {
  for (const nc_type type : {NC_BYTE, NC_STRING}) {
    {
      const Writer writer(m_path, NC_NETCDF4);
      const int grid = writer.variable(
          "grid", type,
          {writer.dimension("rows", 1UL << 34U), writer.dimension("columns", 1UL << 29U)});
      const std::size_t chunks[] = {1024, 1024};
      must(nc_def_var_chunking(writer.root(), grid, NC_CHUNKED, chunks));
    }
    EXPECT_EQ(arrayAt(File(m_path), "grid").numberOfElements(), 1UL << 63U) << type;
  }
}

TEST_F(AbsurdClaimTest, MoreValuesThanCanBeCountedAreLeftOut) {
  for (const nc_type type : {NC_BYTE, NC_DOUBLE, NC_CHAR, NC_STRING}) {
    writeGrid(1UL << 40U, 1UL << 40U, type);
    const File file(m_path);
    EXPECT_EQ(file.root().getNumOfData(), 0U) << type;
    ASSERT_EQ(file.skipped().size(), 1U) << type;
    EXPECT_EQ(file.skipped()[0].path, "/grid");
    EXPECT_EQ(file.skipped()[0].reason, "more values than can be counted");
  }
}

TEST_F(AbsurdClaimTest, NoneOfThemCanBeCounted) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.variable("none", NC_DOUBLE,
                    {writer.dimension("rows", 1UL << 40U), writer.dimension("columns", 1UL << 40U),
                     writer.dimension("records", NC_UNLIMITED)});
  }
  EXPECT_EQ(arrayAt(File(m_path), "none").numberOfElements(), 0U);
}

TEST_F(AbsurdClaimTest, TextThatNoFileHoldsIsRefusedWhenItIsRead) {
  writeGrid(1, 1UL << 28U, NC_CHAR);
  const std::string bytes = std::to_string(readBytes(m_path).size());
  EXPECT_EQ(errorOfText(), "Cannot read '" + m_path +
                               "': variable '/grid' claims texts of 268435456 characters, which a "
                               "file of " +
                               bytes + " bytes cannot hold");
}

TEST_F(AbsurdClaimTest, LongTextThatWasNeverWrittenIsFine) {
  writeGrid(1, 1UL << 20U, NC_CHAR);
  EXPECT_EQ(errorOfText(), "");
}

class CorruptChunkTest : public testing::Test {
 protected:
  static constexpr std::size_t ROWS = 40;
  static constexpr std::size_t COLUMNS = 1000;
  static constexpr std::size_t CHUNK_ROWS = 8;

  CorruptChunkTest() : m_path(m_scratch.path("a.nc")), m_values(ROWS * COLUMNS) {
    std::mt19937 random(1);
    std::generate(m_values.begin(), m_values.end(),
                  [&] { return static_cast<int>(random() >> 8U); });
    {
      const Writer writer(m_path, NC_NETCDF4);
      const int grid = writer.variable(
          "grid", NC_INT, {writer.dimension("rows", ROWS), writer.dimension("columns", COLUMNS)});
      const std::vector<std::size_t> chunks{CHUNK_ROWS, COLUMNS};
      must(nc_def_var_chunking(writer.root(), grid, NC_CHUNKED, chunks.data()));
      must(nc_def_var_deflate(writer.root(), grid, 0, 1, 1));
      writer.put(grid, {ROWS, COLUMNS}, m_values);
    }
    // The values take nearly all of the file; what is in its middle is a chunk.
    std::string bytes = readBytes(m_path);
    bytes[bytes.size() / 2] = static_cast<char>(~bytes[bytes.size() / 2]);
    writeBytes(m_path, bytes);
  }

  // Which rows cannot be read, by asking for the first value of each.
  std::vector<std::size_t> unreadableRows(const memory::ArrayBase& grid) const {
    std::vector<std::size_t> rows;
    object_model::TupleX index(2);
    for (std::size_t row = 0; row < ROWS; ++row) {
      index[0] = 0;
      index[1] = row;
      const std::string message =
          errorOf([&] { EXPECT_EQ(grid.getValueAsInt(index), m_values[row * COLUMNS]); });
      if (!message.empty()) {
        EXPECT_EQ(message, "Cannot read '" + m_path +
                               "': variable '/grid' cannot be read (NetCDF: HDF error)");
        rows.push_back(row);
      }
    }
    return rows;
  }

  Scratch m_scratch;
  std::string m_path;
  std::vector<int> m_values;
};

TEST_F(CorruptChunkTest, IsAnErrorWhenReadAndLeavesTheOthers) {
  OpenOptions options;
  options.windowBytes = CHUNK_ROWS * COLUMNS * sizeof(int);
  const File file(m_path, options);
  const std::vector<std::size_t> rows = unreadableRows(arrayAt(file, "grid"));
  ASSERT_EQ(rows.size(), CHUNK_ROWS);
  EXPECT_EQ(rows.front() % CHUNK_ROWS, 0U);
  EXPECT_EQ(rows.back(), rows.front() + CHUNK_ROWS - 1);
}

TEST_F(CorruptChunkTest, LeavesNoHalfWindow) {
  const File file(m_path);  // all values are one window
  EXPECT_EQ(unreadableRows(arrayAt(file, "grid")).size(), ROWS);
}

TEST_F(CorruptChunkTest, IsNotReportedAsRead) {
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(1UL << 30U, reads));
  unreadableRows(arrayAt(file, "grid"));
  EXPECT_THAT(reads, testing::IsEmpty());
}

}  // namespace
}  // namespace quillon::netcdf
