#include "StoredChunk.h"

#include <libdeflate.h>
#include <quillon/memory/Bounded.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "ByteOrder.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long CHECKSUM_BYTES = 4;

bool isSkipped(std::uint32_t skipped, std::size_t filter) { return (skipped >> filter & 1U) != 0; }

/// How many bytes the values have where the filter of that number was applied to them.
unsigned long bytesBefore(const ChunkFormat& format, std::uint32_t skipped, std::size_t filter) {
  unsigned long bytes = format.bytes;
  for (std::size_t k = 0; k < filter; ++k) {
    if (format.filters[k] == ChunkFilter::Fletcher32 && !isSkipped(skipped, k)) {
      bytes += CHECKSUM_BYTES;
    }
  }
  return bytes;
}

/// Fletcher's checksum of big-endian words of 16 bits, as libhdf5 takes it.
std::uint32_t checksumOf(const char* bytes, unsigned long size) {
  constexpr unsigned long WORDS_WITHOUT_OVERFLOW = 360;
  const auto byteAt = [bytes](unsigned long k) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[k]));
  };
  const auto folded = [](std::uint32_t sum) { return (sum & 0xFFFFU) + (sum >> 16U); };
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  for (unsigned long k = 0; k < size;) {
    const unsigned long end = std::min(size, k + 2 * WORDS_WITHOUT_OVERFLOW);
    for (; k < end; k += 2) {
      low += byteAt(k) << 8U | (k + 1 < size ? byteAt(k + 1) : 0U);
      high += low;
    }
    low = folded(low);
    high = folded(high);
  }
  return folded(high) << 16U | folded(low);
}

bool hasItsChecksum(const char* bytes, unsigned long size) {
  std::uint32_t stored = 0;
  for (unsigned long k = CHECKSUM_BYTES; k > 0; --k) {
    stored = stored << 8U | static_cast<unsigned char>(bytes[size + k - 1]);
  }
  return stored == checksumOf(bytes, size);
}

template <unsigned long BYTES>
void unshuffleValues(const char* from, unsigned long count, char* to) {
  for (unsigned long k = 0; k < count; ++k) {
    for (unsigned long byte = 0; byte < BYTES; ++byte) {
      to[k * BYTES + byte] = from[byte * count + k];
    }
  }
}

/// Bytes behind the last whole value, those of a checksum, are where they were.
void unshuffle(const char* from, unsigned long bytes, unsigned long valueBytes, char* to) {
  const unsigned long count = bytes / valueBytes;
  if (valueBytes == 2) {
    unshuffleValues<2>(from, count, to);
  } else if (valueBytes == 4) {
    unshuffleValues<4>(from, count, to);
  } else if (valueBytes == 8) {
    unshuffleValues<8>(from, count, to);
  } else {
    unshuffleValues<1>(from, count, to);
  }
  std::memcpy(to + count * valueBytes, from + count * valueBytes, bytes % valueBytes);
}

}  // namespace

bool operator==(const ChunkFormat& a, const ChunkFormat& b) {
  return a.valueBytes == b.valueBytes && a.isBigEndian == b.isBigEndian && a.bytes == b.bytes &&
         a.filters == b.filters;
}

unsigned long mostStoredBytes(const ChunkFormat& format) {
  // What zlib cannot compress becomes longer by at most some hundredths, whatever its settings.
  const unsigned long checksums = format.filters.size() * CHECKSUM_BYTES;
  return memory::boundedSum(memory::boundedSum(format.bytes, format.bytes / 8), 64 + checksums);
}

class ChunkUnpacker::Inflater {
 public:
  Inflater() : m_decompressor(libdeflate_alloc_decompressor()) {
    if (m_decompressor == nullptr) {  // never true, never run: only where memory is short
      throw std::bad_alloc();
    }
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { libdeflate_free_decompressor(m_decompressor); }

  /// @return whether it became just so many bytes.
  bool inflate(const char* from, unsigned long fromBytes, char* to, unsigned long toBytes) {
    return libdeflate_zlib_decompress(m_decompressor, from, fromBytes, to, toBytes, nullptr) ==
           LIBDEFLATE_SUCCESS;
  }

 private:
  libdeflate_decompressor* m_decompressor;
};

ChunkUnpacker::ChunkUnpacker(ChunkFormat format)
    : m_format(std::move(format)), m_inflater(std::make_unique<Inflater>()) {}
ChunkUnpacker::~ChunkUnpacker() = default;

char* ChunkUnpacker::bufferBeside(const char* bytes) {
  std::unique_ptr<char[]>& buffer = m_buffers[0].get() == bytes ? m_buffers[1] : m_buffers[0];
  if (buffer == nullptr) {
    const unsigned long checksums = m_format.filters.size() * CHECKSUM_BYTES;
    buffer.reset(new char[m_format.bytes + checksums]);  // not make_unique, which would fill it
  }
  return buffer.get();
}

bool ChunkUnpacker::undo(ChunkFilter filter, Bytes& bytes, unsigned long before, char* to) {
  switch (filter) {
    case ChunkFilter::Fletcher32:
      if (bytes.size < CHECKSUM_BYTES ||
          !hasItsChecksum(bytes.first, bytes.size - CHECKSUM_BYTES)) {
        return false;
      }
      bytes.size -= CHECKSUM_BYTES;
      return true;
    case ChunkFilter::Deflate:
      if (!m_inflater->inflate(bytes.first, bytes.size, to, before)) {
        return false;
      }
      break;
    case ChunkFilter::Shuffle:
      if (bytes.size != before) {
        return false;
      }
      unshuffle(bytes.first, before, m_format.valueBytes, to);
  }
  bytes = {to, before};
  return true;
}

bool ChunkUnpacker::unpack(const char* stored, unsigned long size, std::uint32_t skipped,
                           char* values) {
  Bytes bytes{stored, size};
  for (std::size_t k = m_format.filters.size(); k > 0; --k) {
    if (isSkipped(skipped, k - 1)) {
      continue;
    }
    const unsigned long before = bytesBefore(m_format, skipped, k - 1);
    // What the first filter was given are the values.
    char* const to = k == 1 ? values : bufferBeside(bytes.first);
    if (!undo(m_format.filters[k - 1], bytes, before, to)) {
      return false;
    }
  }
  if (bytes.size != m_format.bytes) {
    return false;
  }
  if (bytes.first != values) {
    std::memcpy(values, bytes.first, bytes.size);
  }
  toMachineOrder(values, m_format.bytes / m_format.valueBytes, m_format.valueBytes,
                 m_format.isBigEndian);
  return true;
}

}  // namespace quillon::netcdf
