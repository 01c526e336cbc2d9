// Changes a classic netCDF file as its header is laid out: in big-endian fields of four bytes,
// which are tags, types, counts, lengths, positions and, padded, names.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t maxSize);

namespace {

constexpr std::size_t FIELD_BYTES = 4;
constexpr std::size_t MAGIC_BYTES = 4;
constexpr std::array<std::uint8_t, 3> VERSIONS = {1, 2, 5};

using Random = std::minstd_rand;

std::size_t pick(Random& random, std::size_t count) {
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

/// Where a field begins, that of the format's name apart.
std::size_t anyPlace(Random& random, std::size_t size) {
  return (1 + pick(random, size / FIELD_BYTES - 1)) * FIELD_BYTES;
}

std::uint32_t fieldAt(const std::uint8_t* bytes) {
  std::uint32_t field = 0;
  for (std::size_t k = 0; k < FIELD_BYTES; ++k) {
    field = field << 8U | bytes[k];
  }
  return field;
}

void setField(std::uint8_t* bytes, std::uint32_t field) {
  for (std::size_t k = 0; k < FIELD_BYTES; ++k) {
    bytes[k] = static_cast<std::uint8_t>(field >> 8U * (FIELD_BYTES - 1 - k));
  }
}

/// A sum that starts again at 0 behind the largest field.
std::uint32_t sum(std::uint32_t field, std::uint64_t more) {
  return static_cast<std::uint32_t>(field + more);
}

/// A number that means something at one place or another.
std::uint32_t anyField(Random& random, std::uint32_t old, std::size_t size) {
  switch (pick(random, 5)) {
    case 0:
      return sum(old, 1);
    case 1:
      return sum(old, 0xffffffff);
    case 2:
      return static_cast<std::uint32_t>(pick(random, 13));  // small counts, types and tags
    case 3:
      return static_cast<std::uint32_t>(pick(random, size + 1));  // a place in the file
    default: {
      static constexpr std::array<std::uint32_t, 11> LARGE = {
          0xff,       0x100,      0x10000,    0x10000000, 0x20000000, 0x40000000,
          0x7fffffff, 0x80000000, 0xfffffffc, 0xfffffffe, 0xffffffff};
      return LARGE[pick(random, LARGE.size())];
    }
  }
}

/// Repeats or removes some fields, so that entries of lists come and go.
std::size_t moveFields(Random& random, std::uint8_t* bytes, std::size_t size, std::size_t maxSize) {
  const std::size_t first = anyPlace(random, size);
  const std::size_t length = std::min((1 + pick(random, 12)) * FIELD_BYTES, size - first);
  if (pick(random, 2) == 0) {
    std::copy(bytes + first + length, bytes + size, bytes + first);
    return size - length;
  }
  if (size + length > maxSize) {
    return size;
  }
  std::copy_backward(bytes + first, bytes + size, bytes + size + length);
  return size + length;
}

/// Lengthens a name or a list of values: its count grows by as many bytes as come behind it.
std::size_t growText(Random& random, std::uint8_t* bytes, std::size_t size, std::size_t maxSize) {
  const std::size_t position = anyPlace(random, size);
  const std::size_t behind = position + FIELD_BYTES;
  const std::size_t length = FIELD_BYTES << pick(random, 8);
  if (size + length > maxSize) {
    return size;
  }
  std::copy_backward(bytes + behind, bytes + size, bytes + size + length);
  std::fill_n(bytes + behind, length, std::uint8_t{'x'});
  setField(bytes + position, sum(fieldAt(bytes + position), length));
  return size + length;
}

/// Any change that leaves the file a classic one: others are another target's.
std::size_t mutateBehindMagic(std::uint8_t* bytes, std::size_t size, std::size_t maxSize) {
  return MAGIC_BYTES +
         LLVMFuzzerMutate(bytes + MAGIC_BYTES, size - MAGIC_BYTES, maxSize - MAGIC_BYTES);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
  Random random(seed);
  if (size < MAGIC_BYTES + FIELD_BYTES || bytes[0] != 'C') {
    return LLVMFuzzerMutate(bytes, size, maxSize);
  }
  switch (pick(random, 10)) {
    case 0:
      bytes[MAGIC_BYTES - 1] = VERSIONS[pick(random, VERSIONS.size())];
      return size;
    case 1:
      return moveFields(random, bytes, size, maxSize);
    case 2:
      return growText(random, bytes, size, maxSize);
    case 3:
    case 4:
      return mutateBehindMagic(bytes, size, maxSize);
    default: {
      std::uint8_t* const field = bytes + anyPlace(random, size);
      setField(field, anyField(random, fieldAt(field), size));
      return size;
    }
  }
}
