// The law: a block of values in chunks is what the plain rules make of the chunks' stored bytes,
// one value after the other, and is left to libnetcdf just where they make nothing of it. Two data
// sets are held to be the same in a block just where they store the same for it, and are the same
// then.
//
// Where a chunk's bytes stand in a file is up to libhdf5. Here the input has them: of libhdf5's
// functions those that find chunks are this program's.

#include <hdf5.h>
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Input.h"
#include "InputFile.h"
#include "Law.h"
#include "StoredChunks.h"

namespace quillon::fuzz {
namespace {

using netcdf::ChunkFilter;
using netcdf::ChunkFormat;

/// One number for each dimension, the fastest first. A data set of fewer dimensions has one
/// position along the others.
constexpr std::size_t MOST_DIMENSIONS = 3;
using Position = std::array<unsigned long, MOST_DIMENSIONS>;

constexpr unsigned long CHECKSUM_BYTES = 4;

Position filledUp(const std::vector<unsigned long>& numbers) {
  Position position{1, 1, 1};
  std::copy(numbers.begin(), numbers.end(), position.begin());
  return position;
}

/// What a data set has at a place.
struct Chunk {
  std::string bytes;  ///< empty for one that was never written
  std::uint32_t skipped = 0;
  bool isMissing = false;  ///< among others, which libhdf5 fails for
  bool isUnreadable = false;
};

struct DataSet {
  DataSet() = default;
  explicit DataSet(netcdf::ChunkedData some) : facts(std::move(some)) { noteExtents(); }

  void noteExtents() {
    extents = filledUp(facts.extents);
    chunkExtents = filledUp(facts.chunks);
  }

  netcdf::ChunkedData facts;
  Position extents{};
  Position chunkExtents{};
  std::map<Position, Chunk> chunks;  // by their first positions
};

std::array<DataSet, 2> dataSets;

const Chunk* findChunk(hid_t data, const hsize_t* offset) {
  const DataSet& set = dataSets.at(static_cast<std::size_t>(data));
  Position position{};
  std::reverse_copy(offset, offset + set.facts.chunks.size(), position.begin());
  return &set.chunks.at(position);
}

// The plain rules.

std::uint32_t plainFold(std::uint64_t sum) {
  constexpr std::uint64_t MODULUS = 0xFFFF;
  return static_cast<std::uint32_t>(sum == 0 ? 0 : (sum - 1) % MODULUS + 1);
}

std::string plainChecksum(const std::string& bytes) {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  for (std::size_t k = 0; k < bytes.size(); k += 2) {
    const auto first = static_cast<std::uint8_t>(bytes[k]);
    const auto second =
        k + 1 < bytes.size() ? static_cast<std::uint8_t>(bytes[k + 1]) : std::uint8_t{0};
    low += first * 256UL + second;
    high += low;
  }
  std::string checksum;
  for (const std::uint32_t half : {plainFold(low), plainFold(high)}) {
    checksum += static_cast<char>(half & 0xFFU);
    checksum += static_cast<char>(half >> 8U);
  }
  return checksum;
}

/// What stands behind the last whole value stays there.
std::string plainShuffle(const std::string& bytes, unsigned long valueBytes, bool isUndone) {
  const unsigned long count = bytes.size() / valueBytes;
  std::string result = bytes;
  for (unsigned long k = 0; k < count; ++k) {
    for (unsigned long byte = 0; byte < valueBytes; ++byte) {
      const unsigned long together = k * valueBytes + byte;
      const unsigned long apart = byte * count + k;
      (isUndone ? result[together] : result[apart]) = bytes[isUndone ? apart : together];
    }
  }
  return result;
}

std::string plainDeflate(const std::string& bytes) {
  static const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)>
      compressor(libdeflate_alloc_compressor(1), libdeflate_free_compressor);
  std::string result(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()), '\0');
  result.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(),
                                         result.data(), result.size()));
  return result;
}

std::optional<std::string> plainInflate(const std::string& bytes, unsigned long size) {
  std::string result(size, '\0');
  unsigned long inflated = size;
  const int status = uncompress(reinterpret_cast<Bytef*>(result.data()), &inflated,
                                reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
  return status == Z_OK && inflated == size ? std::optional(result) : std::nullopt;
}

bool isSkipped(std::uint32_t skipped, std::size_t filter) { return (skipped >> filter) % 2 == 1; }

/// The bytes of a chunk of these values, in a file.
std::string plainPack(std::string bytes, std::uint32_t skipped, const ChunkFormat& format) {
  for (std::size_t k = 0; k < format.filters.size(); ++k) {
    if (isSkipped(skipped, k)) {
      continue;
    }
    if (format.filters[k] == ChunkFilter::Shuffle) {
      bytes = plainShuffle(bytes, format.valueBytes, false);
    } else if (format.filters[k] == ChunkFilter::Deflate) {
      bytes = plainDeflate(bytes);
    } else {
      bytes += plainChecksum(bytes);
    }
  }
  return bytes;
}

/// A chunk's values in the file's byte order; none where its bytes are no such chunk.
std::optional<std::string> plainUnpack(const Chunk& chunk, const ChunkFormat& format) {
  std::string bytes = chunk.bytes;
  for (std::size_t filters = format.filters.size(); filters > 0; --filters) {
    const std::size_t k = filters - 1;
    if (isSkipped(chunk.skipped, k)) {
      continue;
    }
    unsigned long before = format.bytes;
    for (std::size_t i = 0; i < k; ++i) {
      const bool isLonger =
          format.filters[i] == ChunkFilter::Fletcher32 && !isSkipped(chunk.skipped, i);
      before += isLonger ? CHECKSUM_BYTES : 0;
    }
    if (format.filters[k] == ChunkFilter::Fletcher32) {
      const unsigned long size = bytes.size() - std::min(bytes.size(), CHECKSUM_BYTES);
      const std::string stored = bytes.substr(size);
      bytes.resize(size);
      if (stored != plainChecksum(bytes)) {
        return std::nullopt;
      }
    } else if (format.filters[k] == ChunkFilter::Deflate) {
      const std::optional<std::string> inflated = plainInflate(bytes, before);
      if (!inflated) {
        return std::nullopt;
      }
      bytes = *inflated;
    } else if (bytes.size() != before) {
      return std::nullopt;
    } else {
      bytes = plainShuffle(bytes, format.valueBytes, true);
    }
  }
  return bytes.size() == format.bytes ? std::optional(bytes) : std::nullopt;
}

unsigned long productOf(const Position& extents) {
  unsigned long product = 1;
  for (const unsigned long extent : extents) {
    product *= extent;
  }
  return product;
}

/// The position of a number in a box, fastest dimension first.
Position positionAt(unsigned long number, const Position& extents) {
  Position position{};
  for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
    position[k] = number % extents[k];
    number /= extents[k];
  }
  return position;
}

unsigned long numberOf(const Position& position, const Position& extents) {
  unsigned long number = 0;
  for (std::size_t k = MOST_DIMENSIONS; k > 0; --k) {
    number = number * extents[k - 1] + position[k - 1];
  }
  return number;
}

struct Block {
  Position start{0, 0, 0};
  Position extent{1, 1, 1};
};

bool hasBlock(const DataSet& set, const Block& block) {
  for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
    if (block.start[k] + block.extent[k] > set.extents[k]) {
      return false;
    }
  }
  return true;
}

bool isOfWholeChunks(const DataSet& set, const Block& block) {
  for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
    const unsigned long chunk = set.chunkExtents[k];
    const unsigned long end = block.start[k] + block.extent[k];
    if (block.start[k] % chunk != 0 || (end % chunk != 0 && end != set.extents[k])) {
      return false;
    }
  }
  return true;
}

/// Where the chunk of a position begins.
Position chunkOf(const DataSet& set, Position position) {
  for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
    position[k] -= position[k] % set.chunkExtents[k];
  }
  return position;
}

/// Calls `visit` with all positions of a block.
template <class Visit>
void forEachPosition(const Block& block, const Visit& visit) {
  for (unsigned long number = 0; number < productOf(block.extent); ++number) {
    Position position = positionAt(number, block.extent);
    for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
      position[k] += block.start[k];
    }
    visit(position);
  }
}

/// Whether there are bytes that may be a chunk, or what stands for one that was never written.
bool isThere(const DataSet& set, const Chunk& chunk) {
  if (chunk.isMissing || chunk.bytes.size() > netcdf::mostStoredBytes(set.facts.format)) {
    return false;
  }
  return chunk.bytes.empty() ? !set.facts.fill.empty() : !chunk.isUnreadable;
}

std::optional<std::string> plainValues(const DataSet& set, const Chunk& chunk) {
  if (!isThere(set, chunk)) {
    return std::nullopt;
  }
  if (!chunk.bytes.empty()) {
    std::optional<std::string> values = plainUnpack(chunk, set.facts.format);
    for (unsigned long k = 0; values && set.facts.format.isBigEndian && k < values->size();
         k += set.facts.format.valueBytes) {
      std::reverse(values->begin() + static_cast<long>(k),
                   values->begin() + static_cast<long>(k + set.facts.format.valueBytes));
    }
    return values;
  }
  std::string values;
  while (values.size() < set.facts.format.bytes) {
    values.append(set.facts.fill.begin(), set.facts.fill.end());
  }
  return values;
}

/// The values of a block on this little-endian machine.
std::optional<std::string> plainRead(const DataSet& set, const Block& block) {
  if (!hasBlock(set, block) || !isOfWholeChunks(set, block)) {
    return std::nullopt;
  }
  std::map<Position, std::optional<std::string>> unpacked;
  std::string values;
  bool isRead = true;
  forEachPosition(block, [&](const Position& position) {
    const Position first = chunkOf(set, position);
    auto found = unpacked.find(first);
    if (found == unpacked.end()) {
      found = unpacked.emplace(first, plainValues(set, set.chunks.at(first))).first;
    }
    isRead = isRead && found->second.has_value();
    if (isRead) {
      Position inside = position;
      for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
        inside[k] -= first[k];
      }
      const unsigned long valueBytes = set.facts.format.valueBytes;
      values.append(*found->second, numberOf(inside, set.chunkExtents) * valueBytes, valueBytes);
    }
  });
  return isRead ? std::optional(values) : std::nullopt;
}

bool isStoredAlike(const Chunk& a, const Chunk& b, bool isFilledAlike) {
  return a.bytes == b.bytes && (a.bytes.empty() ? isFilledAlike : a.skipped == b.skipped);
}

bool plainHoldsSame(const DataSet& a, const DataSet& b, const Block& block) {
  if (!(a.facts.format == b.facts.format) || a.facts.chunks != b.facts.chunks ||
      !hasBlock(a, block) || !hasBlock(b, block)) {
    return false;
  }
  std::set<Position> chunks;
  forEachPosition(block, [&](const Position& position) { chunks.insert(chunkOf(a, position)); });
  return std::all_of(chunks.begin(), chunks.end(), [&](const Position& position) {
    const Chunk& first = a.chunks.at(position);
    const Chunk& second = b.chunks.at(position);
    return isThere(a, first) && isThere(b, second) &&
           isStoredAlike(first, second, a.facts.fill == b.facts.fill);
  });
}

// What the input makes.

ChunkFormat formatOf(Input& input) {
  ChunkFormat format;
  format.valueBytes = 1UL << input.below(4);
  format.isBigEndian = input.oneIn(2);
  // As files are read: nothing is packed twice or shuffled when it is packed.
  for (unsigned long k = input.below(4); k > 0; --k) {
    const auto filter = static_cast<ChunkFilter>(input.below(3));
    const bool isPacked = std::find(format.filters.begin(), format.filters.end(),
                                    ChunkFilter::Deflate) != format.filters.end();
    if (!isPacked || filter == ChunkFilter::Fletcher32) {
      format.filters.push_back(filter);
    }
  }
  return format;
}

std::vector<char> fillOf(Input& input, unsigned long valueBytes) {
  if (input.oneIn(4)) {
    return {};
  }
  std::vector<char> fill(valueBytes);
  std::generate(fill.begin(), fill.end(), [&] { return static_cast<char>(input.byte()); });
  return fill;
}

netcdf::ChunkedData factsOf(Input& input, const std::string& path) {
  netcdf::ChunkedData facts;
  facts.path = path;
  facts.format = formatOf(input);
  const unsigned long rank = 1 + input.below(MOST_DIMENSIONS);
  const unsigned long mostWhole = rank == 3 ? 1 : 2;  // chunks along a dimension
  for (unsigned long k = 0; k < rank; ++k) {
    facts.chunks.push_back(1 + input.below(4));
    facts.extents.push_back(facts.chunks.back() * input.below(mostWhole + 1) + 1 +
                            input.below(facts.chunks.back()));
  }
  facts.format.bytes = productOf(filledUp(facts.chunks)) * facts.format.valueBytes;
  facts.fill = fillOf(input, facts.format.valueBytes);
  return facts;
}

std::string valuesOf(Input& input, unsigned long size) {
  const unsigned long first = input.byte();
  const unsigned long step = input.byte();
  std::string values(size, '\0');
  for (unsigned long k = 0; k < size; ++k) {
    values[k] = static_cast<char>((first + k * step) & 0xFFU);
  }
  return values;
}

/// A sound chunk, or one that is changed in one way.
Chunk chunkOf(Input& input, const ChunkFormat& format) {
  enum Change { NONE = 8, MISSING, UNREADABLE, UNWRITTEN, LENGTH, BYTES, SKIPPED, VALUES };
  const unsigned long change = input.below(VALUES + 1);
  Chunk chunk;
  if (change == UNWRITTEN) {
    return chunk;
  }
  chunk.skipped = input.oneIn(4) ? input.byte() : 0;
  const unsigned long size = change == VALUES ? input.below(64) : format.bytes;
  chunk.bytes = plainPack(valuesOf(input, size), chunk.skipped, format);
  if (change == LENGTH) {
    chunk.bytes.resize(input.below(256), static_cast<char>(input.byte()));
  }
  for (unsigned long k = change == BYTES ? 1 + input.below(3) : 0; k > 0 && !chunk.bytes.empty();
       --k) {
    chunk.bytes[input.bits<std::uint16_t>() % chunk.bytes.size()] ^=
        static_cast<char>(input.byte());
  }
  chunk.skipped ^= change == SKIPPED ? input.byte() : 0U;
  chunk.isMissing = change == MISSING && input.oneIn(4);
  chunk.isUnreadable = change == UNREADABLE && input.oneIn(4);
  return chunk;
}

/// Makes the chunks that the data set lacks.
template <class Make>
void addChunks(DataSet& set, const Make& make) {
  Position counts = set.extents;
  for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
    counts[k] = (counts[k] + set.chunkExtents[k] - 1) / set.chunkExtents[k];
  }
  for (unsigned long number = 0; number < productOf(counts); ++number) {
    Position position = positionAt(number, counts);
    for (std::size_t k = 0; k < MOST_DIMENSIONS; ++k) {
      position[k] *= set.chunkExtents[k];
    }
    if (set.chunks.count(position) == 0) {
      set.chunks.emplace(position, make());
    }
  }
}

DataSet dataSetOf(Input& input) {
  DataSet set(factsOf(input, "0"));
  addChunks(set, [&] { return chunkOf(input, set.facts.format); });
  return set;
}

/// One that is the same but for a few choices.
DataSet alike(DataSet set, Input& input) {
  set.facts.path = "1";
  switch (input.below(8)) {
    case 1:
      set.facts.fill = fillOf(input, set.facts.format.valueBytes);
      break;
    case 2:
      set.facts.format.isBigEndian = !set.facts.format.isBigEndian;
      break;
    case 3:
      set.facts.format.filters.assign(input.below(2), ChunkFilter::Fletcher32);
      break;
    case 4:
      set.facts.type = 1;
      break;
    case 5:
      set.facts.extents.back() += input.below(8);
      set.noteExtents();
      addChunks(set, [] { return Chunk(); });
      break;
    default:
      break;
  }
  for (unsigned long k = input.below(3); k > 0; --k) {
    const auto chunk =
        std::next(set.chunks.begin(), static_cast<long>(input.below(256) % set.chunks.size()));
    chunk->second = chunkOf(input, set.facts.format);
  }
  return set;
}

/// Mostly one that begins and ends where chunks do. No one asks for a block without values.
Block blockOf(Input& input, const DataSet& set) {
  Block block;
  const bool isAny = input.oneIn(4);
  for (std::size_t k = 0; k < set.facts.chunks.size(); ++k) {
    const unsigned long extent = set.extents[k];
    const unsigned long chunk = isAny ? 1 : set.chunkExtents[k];
    const unsigned long start = std::min((extent - 1) / chunk, input.below(3)) * chunk;
    const unsigned long end = start + (1 + input.below(3)) * chunk;
    block.start[k] = start;
    block.extent[k] = (isAny && input.oneIn(16) ? end : std::min(extent, end)) - start;
  }
  return block;
}

/// A file that stands for any, and is long enough for all chunks.
std::shared_ptr<const netcdf::Source> anySource() {
  std::ifstream in(QUILLON_FUZZ_CORPUS "/netcdf_classic/classic-records.nc", std::ios::binary);
  std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  bytes.resize(1UL << 16U);
  const InputFile file(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return std::make_shared<const netcdf::Source>(file.path(), netcdf::OpenOptions());
}

void requireRead(const netcdf::StoredChunks& stored, const DataSet& set, const Block& block) {
  const std::optional<std::string> expected = plainRead(set, block);
  std::string values(productOf(block.extent) * set.facts.format.valueBytes, '\0');
  const bool isRead = stored.read(block.start.data(), block.extent.data(), values.data());
  if (isRead != expected.has_value()) {
    reportBreach(isRead ? "values are read that are none" : "values are not read");
  }
  if (isRead && values != *expected) {
    reportBreach("the values are others");
  }
}

void check(Input input) {
  static const std::shared_ptr<const netcdf::Source> source = anySource();
  dataSets[0] = dataSetOf(input);
  dataSets[1] = alike(dataSets[0], input);
  const netcdf::StoredChunks first(source, dataSets[0].facts);
  const netcdf::StoredChunks second(source, dataSets[1].facts);
  for (unsigned long k = 1 + input.below(3); k > 0; --k) {
    const Block block = blockOf(input, dataSets[0]);
    requireRead(first, dataSets[0], block);
    const bool isSame = dataSets[0].facts.type == dataSets[1].facts.type &&
                        plainHoldsSame(dataSets[0], dataSets[1], block);
    if (first.holdsSame(second, block.start.data(), block.extent.data()) != isSame) {
      reportBreach(isSame ? "the same is not held to be" : "other bytes are held to be the same");
    }
    const bool isWhole = isOfWholeChunks(dataSets[0], block) && isOfWholeChunks(dataSets[1], block);
    if (isSame && isWhole && plainRead(dataSets[0], block) != plainRead(dataSets[1], block)) {
      reportBreach("the same bytes are other values");
    }
  }
  dataSets = {};  // what is kept looks like a leak
}

}  // namespace
}  // namespace quillon::fuzz

extern "C" {

hid_t H5Dopen2(hid_t, const char* name, hid_t) { return name[0] - '0'; }

herr_t H5Dclose(hid_t) { return 0; }

herr_t H5Dget_chunk_storage_size(hid_t data, const hsize_t* offset, hsize_t* size) {
  const quillon::fuzz::Chunk* const chunk = quillon::fuzz::findChunk(data, offset);
  *size = chunk->bytes.size();
  return chunk->isMissing ? -1 : 0;
}

herr_t H5Dread_chunk(hid_t data, hid_t, const hsize_t* offset, std::uint32_t* skipped,
                     void* bytes) {
  const quillon::fuzz::Chunk* const chunk = quillon::fuzz::findChunk(data, offset);
  *skipped = chunk->skipped;
  std::copy(chunk->bytes.begin(), chunk->bytes.end(), static_cast<char*>(bytes));
  return chunk->isUnreadable ? -1 : 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  quillon::fuzz::check(quillon::fuzz::Input(bytes, size));
  return 0;
}

}  // extern "C"
