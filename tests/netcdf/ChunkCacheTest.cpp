#include <gtest/gtest.h>

#include "ChunkCache.h"
#include "Source.h"
#include "TestFiles.h"
#include "Variable.h"

namespace quillon::netcdf {
namespace {

/// A grid of 8 by 6 bytes in chunks of 4 by 3, fastest dimension first, and coordinates of that
/// one.
class ChunkCacheTest : public testing::Test {
 protected:
  static constexpr std::size_t USUAL_BYTES = 1000;  // what the library keeps if not told otherwise

  ChunkCacheTest() {
    must(nc_get_chunk_cache(&m_bytes, &m_slots, &m_preemption));
    must(nc_set_chunk_cache(USUAL_BYTES, m_slots, m_preemption));
    {
      const Writer writer(m_path, NC_NETCDF4);
      const int y = writer.dimension("y", 6);
      const int x = writer.dimension("x", 8);
      const int v = writer.variable("v", NC_BYTE, {y, x});
      const int coordinates = writer.variable("x", NC_BYTE, {x});
      const std::size_t chunks[] = {3, 4};
      must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, chunks));
      must(nc_def_var_chunking(writer.root(), coordinates, NC_CHUNKED, chunks + 1));
      writer.put<signed char>(v, {6, 8}, std::vector<signed char>(48, 1));
    }
    open({});
  }
  ~ChunkCacheTest() override { nc_set_chunk_cache(m_bytes, m_slots, m_preemption); }

  void open(const OpenOptions& options) {
    m_variable.source.reset();  // a file that is open already keeps its cache
    m_variable.source = std::make_shared<const Source>(m_path, options);
    m_variable.group = m_variable.source->id();
    m_variable.id = 0;
    m_variable.valueBytes = 1;
    m_variable.shape = {8, 6};
    m_variable.chunks = {4, 3};
  }

  std::size_t keptAfterReading(const std::vector<unsigned long>& start,
                               const std::vector<unsigned long>& extent) const {
    std::vector<signed char> values(48);
    m_variable.read(start.data(), extent.data(), values.data());
    std::size_t bytes = 0;
    must(nc_get_var_chunk_cache(m_variable.group, m_variable.id, &bytes, nullptr, nullptr));
    return bytes;
  }

  Variable m_variable;

 private:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::size_t m_bytes = 0;
  std::size_t m_slots = 0;
  float m_preemption = 0;
};

TEST_F(ChunkCacheTest, NothingIsKeptOfWholeChunks) {
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 3}), 0U);
  EXPECT_EQ(keptAfterReading({4, 0}, {4, 3}), 0U);
  EXPECT_EQ(keptAfterReading({4, 3}, {4, 3}), 0U);
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 6}), 0U);
}

TEST_F(ChunkCacheTest, NothingIsKeptOfCoordinates) {
  m_variable.id = 1;
  m_variable.shape = {8};
  m_variable.chunks = {4};
  EXPECT_EQ(keptAfterReading({0}, {8}), 0U);
}

TEST_F(ChunkCacheTest, NothingIsKeptWhereTheLibraryKeepsOneByte) {
  must(nc_set_chunk_cache(1, 11, 0.5F));
  open({});
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 3}), 0U);
}

TEST_F(ChunkCacheTest, ChunksAreKeptThatAreReadInPart) {
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 1}), USUAL_BYTES);
  EXPECT_EQ(keptAfterReading({0, 1}, {8, 2}), USUAL_BYTES);
  EXPECT_EQ(keptAfterReading({1, 0}, {3, 3}), USUAL_BYTES);
}

TEST_F(ChunkCacheTest, APartOfTheFileMeetsItsChunksWhereTheFileHasThem) {
  struct Case {
    Range range;  // of the fastest dimension
    std::vector<unsigned long> start;
    std::vector<unsigned long> extent;
    std::size_t kept;
  };
  const std::vector<Case> cases = {
      {{1, 6, 1}, {0, 0}, {6, 6}, 0},  // all that is read of the file
      {{1, 6, 1}, {0, 0}, {6, 3}, 0},  // up to the last index
      {{1, 6, 1}, {0, 0}, {3, 6}, 0},  // up to the end of a chunk
      {{1, 6, 1}, {3, 0}, {3, 6}, 0},  // from there on
      {{1, 6, 1}, {0, 0}, {4, 6}, USUAL_BYTES}, {{1, 6, 1}, {1, 0}, {2, 6}, USUAL_BYTES},
      {{1, 3, 2}, {0, 0}, {2, 6}, 0},  // the second index is the chunk's last
      {{0, 4, 2}, {0, 0}, {2, 6}, USUAL_BYTES},
  };
  for (const Case& c : cases) {
    open({});
    m_variable.chunkCache = {};
    m_variable.ranges = {c.range, {0, 6, 1}};
    m_variable.shape = {static_cast<unsigned long>(c.range.count), 6};
    EXPECT_EQ(keptAfterReading(c.start, c.extent), c.kept)
        << c.range.first << "+" << c.start[0] << "+" << c.extent[0];
  }
}

TEST_F(ChunkCacheTest, OnceReadInPartTheyAreKeptForTheRest) {
  keptAfterReading({0, 0}, {8, 1});
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 3}), USUAL_BYTES);
}

TEST_F(ChunkCacheTest, TheyAreLeftAtTheEnd) {
  keptAfterReading({0, 0}, {8, 1});
  EXPECT_EQ(keptAfterReading({0, 5}, {8, 1}), 0U);
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 3}), 0U);
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 1}), USUAL_BYTES);
}

TEST_F(ChunkCacheTest, ThereIsRoomForAllChunksOfARead) {
  for (const std::size_t usual : {5UL, 23UL}) {
    must(nc_set_chunk_cache(usual, 11, 0.5F));
    open({});
    EXPECT_EQ(keptAfterReading({0, 0}, {8, 1}), 2U * 4 * 3);
    EXPECT_EQ(keptAfterReading({3, 2}, {1, 2}), 2U * 4 * 3);
  }
  must(nc_set_chunk_cache(5, 11, 0.5F));
  open({});
  EXPECT_EQ(keptAfterReading({4, 0}, {4, 1}), 4U * 3);
}

TEST_F(ChunkCacheTest, ButNotForMoreThanAWindow) {
  must(nc_set_chunk_cache(5, 11, 0.5F));
  OpenOptions options;
  options.windowBytes = 20;
  open(options);
  EXPECT_EQ(keptAfterReading({0, 0}, {8, 1}), 20U);
}

TEST(ChunkCacheOfHiddenVariablesTest, VariableCalledAsAnotherDimensionIsRead) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int y = writer.dimension("y", NC_UNLIMITED);
    writer.variable("a", NC_INT, {x, y});
    const int hidden = writer.variable("y", NC_INT, {x});
    const std::size_t chunk = 1;
    must(nc_def_var_chunking(writer.root(), hidden, NC_CHUNKED, &chunk));
    writer.put<int>(hidden, {2}, {5, 6});
  }
  EXPECT_EQ(valuesOf(arrayAt(File(path), "y")), (std::vector<std::string>{"5", "6"}));
}

}  // namespace
}  // namespace quillon::netcdf
