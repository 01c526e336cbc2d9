#include <gtest/gtest.h>
#include <libdeflate.h>

#include <limits>
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

/// The values of a chunk; "no such chunk" where there are none.
std::string unpackedAs(const ChunkFormat& format, const std::string& stored,
                       std::uint32_t skipped = 0) {
  const std::string behind = "what stands behind the values";
  std::string values = std::string(format.bytes, 'x') + behind;
  ChunkUnpacker unpacker(format);
  const bool isUnpacked = unpacker.unpack(stored.data(), stored.size(), skipped, values.data());
  EXPECT_EQ(values.substr(format.bytes), behind);
  return isUnpacked ? values.substr(0, format.bytes) : "no such chunk";
}

/// The values of a chunk of six bytes.
std::string unpacked(const std::vector<ChunkFilter>& filters, const std::string& stored,
                     std::uint32_t skipped = 0, bool isBigEndian = false) {
  return unpackedAs({2, isBigEndian, 6, filters}, stored, skipped);
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
  EXPECT_EQ(unpacked({DEFLATE}, "abcdef"), "no such chunk");  // as many bytes as the values have
  EXPECT_EQ(unpacked({SHUFFLE, DEFLATE}, deflated("acebdf")), "abcdef");
}

TEST(StoredChunkTest, ChecksumIsTakenOffWhereItIsRight) {
  EXPECT_EQ(unpacked({FLETCHER}, "abcdef" + CHECKSUM), "abcdef");
  EXPECT_EQ(unpacked({FLETCHER}, "abcdeg" + CHECKSUM), "no such chunk");
  EXPECT_EQ(unpacked({FLETCHER}, "abc"), "no such chunk");
  EXPECT_EQ(unpacked({FLETCHER, DEFLATE}, deflated("abcdef" + CHECKSUM)), "abcdef");
}

TEST(StoredChunkTest, FilterThatRefusesItsBytesEndsAllBeforeIt) {
  EXPECT_EQ(unpacked({DEFLATE, SHUFFLE}, deflated("abcdef")), "no such chunk");
  EXPECT_EQ(unpacked({DEFLATE, FLETCHER}, deflated("abcdef") + CHECKSUM), "no such chunk");
}

// Three values' bytes are shuffled, and those of half a value stay at the end.
TEST(StoredChunkTest, ChecksumMayBeShuffledWithTheValues) {
  const std::string shuffled =
      std::string("ace") + CHECKSUM[0] + CHECKSUM[2] + "bdf" + CHECKSUM[1] + CHECKSUM[3];
  EXPECT_EQ(unpacked({FLETCHER, SHUFFLE}, shuffled), "abcdef");
}

TEST(StoredChunkTest, ThreeFiltersAreUndoneOneAfterTheOther) {
  const std::string shuffled =
      std::string("ace") + CHECKSUM[0] + CHECKSUM[2] + "bdf" + CHECKSUM[1] + CHECKSUM[3];
  EXPECT_EQ(unpacked({FLETCHER, SHUFFLE, DEFLATE}, deflated(shuffled)), "abcdef");
}

// Of the words 0x6162 and 0x6300.
TEST(StoredChunkTest, EachFilterReadsWhatTheOneAfterItLeft) {
  EXPECT_EQ(unpacked({SHUFFLE, SHUFFLE}, "aedcbf"), "abcdef");
  EXPECT_EQ(unpacked({SHUFFLE, SHUFFLE, SHUFFLE}, "adbecf"), "abcdef");
  EXPECT_EQ(unpacked({SHUFFLE, SHUFFLE, SHUFFLE, DEFLATE}, deflated("adbecf")), "abcdef");
}

TEST(StoredChunkTest, LastByteOfAnOddNumberIsTheUpperOneOfAWord) {
  EXPECT_EQ(unpackedAs({1, false, 3, {FLETCHER}}, std::string("abc\x62\xC4\xC5\x25", 7)), "abc");
}

TEST(StoredChunkTest, MostStoredBytesAreAnEighthMoreWithRoomForChecksumsAndHeads) {
  EXPECT_EQ(mostStoredBytes({2, false, 800, {}}), 964);
  EXPECT_EQ(mostStoredBytes({2, false, 800, {SHUFFLE, DEFLATE, FLETCHER}}), 976);
  constexpr unsigned long MOST = std::numeric_limits<unsigned long>::max();
  EXPECT_EQ(mostStoredBytes({2, false, MOST, {}}), MOST);
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
