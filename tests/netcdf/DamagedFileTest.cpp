#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>

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

// Each run in a process of its own covers some positions, so that a crash is a failure, not the
// end, and does not cost a process per position.
void expectNoCrash(const std::string& path, const std::string& whole, unsigned long step) {
  constexpr unsigned long POSITIONS_PER_PROCESS = 100;
  for (unsigned long first = 0; first < whole.size(); first += POSITIONS_PER_PROCESS * step) {
    const unsigned long end = std::min(first + POSITIONS_PER_PROCESS * step, whole.size());
    EXPECT_EQ(fateOf([&] {
                for (unsigned long position = first; position < end; position += step) {
                  std::string damaged = whole;
                  damaged[position] = static_cast<char>(~damaged[position]);
                  writeBytes(path, damaged);
                  errorOf([&] { readAll(path); });
                }
              }),
              "")
        << "flipped from " << first << " to " << end << ", every " << step;
  }
}

TEST(DamagedNetcdf4File, FlippedBytesNeverCrash) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  writeSmallNetcdf4(path);
  expectNoCrash(path, readBytes(path), 7);
}

TEST(DamagedNetcdf4File, FlippedBytesInMeasurementsNeverCrash) {
  const Scratch scratch;
  expectNoCrash(scratch.path("a.nc"), readBytes(QUILLON_DATA_DIR "/nuclei_measurements.nc"), 37);
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
  void setNumber(const std::string& number) { m_bytes.replace(m_heap + 8, 4, number); }

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

TEST_F(DamagedReferenceTest, StringThatIsNotThereIsAnError) {
  setNumber("\xff\xff\xff\x7f");
  EXPECT_EQ(errorOfReading(), cannotBeRead() + ": its strings are damaged");
}

TEST_F(DamagedReferenceTest, StringThatIsLongerThanMemoryIsAnError) {
  setLength("\xff\xff\xff\x7f");
  EXPECT_EQ(errorOfReading(), cannotBeRead() + " (NetCDF: HDF error)");
}

class AbsurdClaimTest : public testing::Test {
 protected:
  std::string errorOfGrid(std::size_t rows, std::size_t columns, nc_type type) const {
    const std::string path = m_scratch.path("a.nc");
    {
      const Writer writer(path, NC_NETCDF4);
      writer.variable("grid", type,
                      {writer.dimension("rows", rows), writer.dimension("columns", columns)});
    }
    return errorOf([&] { const File file(path); });
  }

  static std::string claim() { return "variable '/grid' claims more values than a file of "; }

 private:
  Scratch m_scratch;
};

TEST_F(AbsurdClaimTest, ValuesThatNoFileHoldsAreRefused) {
  EXPECT_THAT(errorOfGrid(1UL << 30U, 1UL << 30U, NC_BYTE), HasSubstr(claim()));
}

TEST_F(AbsurdClaimTest, MoreValuesThanCanBeCountedAreRefused) {
  EXPECT_THAT(errorOfGrid(1UL << 40U, 1UL << 40U, NC_BYTE), HasSubstr(claim()));
}

TEST_F(AbsurdClaimTest, TextThatNoFileHoldsIsRefused) {
  EXPECT_THAT(errorOfGrid(1, 1UL << 28U, NC_CHAR), HasSubstr(claim()));
}

TEST_F(AbsurdClaimTest, LargeGridThatWasNeverWrittenIsFine) {
  EXPECT_EQ(errorOfGrid(10000, 10000, NC_DOUBLE), "");
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
