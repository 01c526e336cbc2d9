#include <gtest/gtest.h>
#include <libdeflate.h>

#include <string>

#include "StoredChunk.h"

namespace quillon::netcdf {
namespace {

std::string deflated(const std::string& bytes) {
  libdeflate_compressor* const compressor = libdeflate_alloc_compressor(6);
  std::string result(libdeflate_zlib_compress_bound(compressor, bytes.size()), '\0');
  result.resize(libdeflate_zlib_compress(compressor, bytes.data(), bytes.size(), result.data(),
                                         result.size()));
  libdeflate_free_compressor(compressor);
  return result;
}

/// The values of a chunk of six bytes; "no such chunk" where there are none.
std::string unpacked(const std::vector<ChunkFilter>& filters, const std::string& stored,
                     std::uint32_t skipped = 0, bool isBigEndian = false) {
  std::string values(6, 'x');
  ChunkUnpacker unpacker({2, isBigEndian, values.size(), filters});
  const bool isUnpacked = unpacker.unpack(stored.data(), stored.size(), skipped, values.data());
  return isUnpacked ? values : "no such chunk";
}

constexpr auto SHUFFLE = ChunkFilter::Shuffle;
constexpr auto DEFLATE = ChunkFilter::Deflate;
constexpr auto FLETCHER = ChunkFilter::Fletcher32;
// Of the words 0x6162, 0x6364 and 0x6566: their sum, and that of the sums so far, modulo 0xFFFF.
const std::string CHECKSUM("\x2d\x2a\x56\x50", 4);

TEST(StoredChunkTest, BytesWithoutFiltersAreTheValues) {
  EXPECT_EQ(unpacked({}, "abcdef"), "abcdef");
  EXPECT_EQ(unpacked({}, "abcde"), "no such chunk");
  EXPECT_EQ(unpacked({}, "abcdefg"), "no such chunk");
}

TEST(StoredChunkTest, BigEndianValuesAreTurnedAround) {
  EXPECT_EQ(unpacked({}, "abcdef", 0, true), "badcfe");
  EXPECT_EQ(unpacked({SHUFFLE}, "acebdf", 0, true), "badcfe");
}

TEST(StoredChunkTest, ShuffledBytesComeTogether) {
  EXPECT_EQ(unpacked({SHUFFLE}, "acebdf"), "abcdef");
  EXPECT_EQ(unpacked({SHUFFLE}, "acebd"), "no such chunk");
}

TEST(StoredChunkTest, DeflatedBytesAreJustSoMany) {
  EXPECT_EQ(unpacked({DEFLATE}, deflated("abcdef")), "abcdef");
  EXPECT_EQ(unpacked({DEFLATE}, deflated("abcde")), "no such chunk");
  EXPECT_EQ(unpacked({DEFLATE}, deflated("abcdefg")), "no such chunk");
  EXPECT_EQ(unpacked({DEFLATE}, deflated("abcdef").substr(1)), "no such chunk");
  EXPECT_EQ(unpacked({DEFLATE}, ""), "no such chunk");
  EXPECT_EQ(unpacked({SHUFFLE, DEFLATE}, deflated("acebdf")), "abcdef");
}

TEST(StoredChunkTest, ChecksumIsTakenOffWhereItIsRight) {
  EXPECT_EQ(unpacked({FLETCHER}, "abcdef" + CHECKSUM), "abcdef");
  EXPECT_EQ(unpacked({FLETCHER}, "abcdeg" + CHECKSUM), "no such chunk");
  EXPECT_EQ(unpacked({FLETCHER}, "abc"), "no such chunk");
  EXPECT_EQ(unpacked({FLETCHER, DEFLATE}, deflated("abcdef" + CHECKSUM)), "abcdef");
}

// Three values' bytes are shuffled, and those of half a value stay at the end.
TEST(StoredChunkTest, ChecksumMayBeShuffledWithTheValues) {
  const std::string shuffled =
      std::string("ace") + CHECKSUM[0] + CHECKSUM[2] + "bdf" + CHECKSUM[1] + CHECKSUM[3];
  EXPECT_EQ(unpacked({FLETCHER, SHUFFLE}, shuffled), "abcdef");
}

TEST(StoredChunkTest, FilterThatWasSkippedIsNotUndone) {
  EXPECT_EQ(unpacked({SHUFFLE, DEFLATE}, "acebdf", 2), "abcdef");
  EXPECT_EQ(unpacked({SHUFFLE, DEFLATE}, deflated("abcdef"), 1), "abcdef");
  EXPECT_EQ(unpacked({SHUFFLE, DEFLATE}, "abcdef", 3), "abcdef");
  EXPECT_EQ(unpacked({FLETCHER, DEFLATE}, deflated("abcdef"), 1), "abcdef");
  EXPECT_EQ(unpacked({FLETCHER, DEFLATE}, deflated("abcdef" + CHECKSUM), 1), "no such chunk");
}

TEST(StoredChunkTest, FormatsAreTheSameInAllTheySay) {
  const ChunkFormat format{2, false, 6, {SHUFFLE}};
  EXPECT_TRUE(format == (ChunkFormat{2, false, 6, {SHUFFLE}}));
  EXPECT_FALSE(format == (ChunkFormat{1, false, 6, {SHUFFLE}}));
  EXPECT_FALSE(format == (ChunkFormat{2, true, 6, {SHUFFLE}}));
  EXPECT_FALSE(format == (ChunkFormat{2, false, 8, {SHUFFLE}}));
  EXPECT_FALSE(format == (ChunkFormat{2, false, 6, {DEFLATE}}));
}

TEST(StoredChunkTest, FiltersThatPackTwiceAreNotUndone) {
  EXPECT_EQ(unpacked({DEFLATE, DEFLATE}, deflated(deflated("abcdef"))), "no such chunk");
}

}  // namespace
}  // namespace quillon::netcdf
