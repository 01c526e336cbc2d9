#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillon::netcdf {

/// What is done to the bytes of a chunk before they are stored.
enum class ChunkFilter {
  Shuffle,     ///< the first bytes of all values, then the second ones, …
  Deflate,     ///< zlib's format
  Fletcher32,  ///< a checksum behind them
};

/// How values become a chunk's bytes.
struct ChunkFormat {
  unsigned long valueBytes = 0;
  bool isBigEndian = false;
  unsigned long bytes = 0;           ///< of a whole chunk's values
  std::vector<ChunkFilter> filters;  ///< as they were applied
};

/// Whether the same bytes are the same values.
bool operator==(const ChunkFormat& a, const ChunkFormat& b);

/// The most bytes that a chunk of this format may rightly take in its file.
unsigned long mostStoredBytes(const ChunkFormat& format);

/// Unpacks chunks of one format, one after the other.
///
/// Threads: one for each thread. It calls no library that needs libraryLock().
class ChunkUnpacker {
 public:
  /// @throws std::bad_alloc
  explicit ChunkUnpacker(ChunkFormat format);
  ChunkUnpacker(const ChunkUnpacker&) = delete;
  ChunkUnpacker& operator=(const ChunkUnpacker&) = delete;
  ~ChunkUnpacker();

  /// Unpacks a chunk's `size` bytes to `values`, in this machine's byte order.
  ///
  /// @param skipped a bit for each filter, the first one's the lowest, that was not applied.
  /// @param values room for all values of a chunk, which are written as a whole; they hold anything
  ///   where it returns false.
  /// @return false where the bytes are no such chunk: a checksum is wrong, or they are not just so
  ///   many values.
  bool unpack(const char* stored, unsigned long size, std::uint32_t skipped, char* values);

 private:
  class Inflater;
  struct Bytes {
    const char* first;
    unsigned long size;
  };

  /// Undoes a filter, to `to` or in place. `before` is how many bytes it was given, where none
  /// before it packs.
  bool undo(ChunkFilter filter, Bytes& bytes, unsigned long before, char* to);
  /// A buffer for what lies between two filters, another one than that of `bytes`.
  char* bufferBeside(const char* bytes);

  ChunkFormat m_format;
  std::unique_ptr<Inflater> m_inflater;
  std::array<std::unique_ptr<char[]>, 2> m_buffers;
};

}  // namespace quillon::netcdf
