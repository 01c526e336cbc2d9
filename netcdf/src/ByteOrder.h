#pragma once

#include <cstdint>
#include <cstring>

namespace quillon::netcdf {

/// Turns the bytes of each value around.
template <class Word, Word (*SWAPPED)(Word)>
void swapWords(char* values, unsigned long count) {
  for (unsigned long k = 0; k < count; ++k) {
    Word word = 0;
    std::memcpy(&word, values + k * sizeof(Word), sizeof(Word));
    word = SWAPPED(word);
    std::memcpy(values + k * sizeof(Word), &word, sizeof(Word));
  }
}

inline std::uint16_t swapped(std::uint16_t word) { return __builtin_bswap16(word); }
inline std::uint32_t swapped(std::uint32_t word) { return __builtin_bswap32(word); }
inline std::uint64_t swapped(std::uint64_t word) { return __builtin_bswap64(word); }

/// Whether the bytes of this machine's numbers begin with the highest.
inline constexpr bool IS_BIG_ENDIAN_HERE = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;

/// Brings values into this machine's byte order.
/// @param isBigEndian the order in which they are.
/// @param valueBytes of each: 1, 2, 4 or 8.
inline void toMachineOrder(char* values, unsigned long count, unsigned long valueBytes,
                           bool isBigEndian) {
  if (isBigEndian == IS_BIG_ENDIAN_HERE) {
    return;
  }
  if (valueBytes == 2) {
    swapWords<std::uint16_t, swapped>(values, count);
  } else if (valueBytes == 4) {
    swapWords<std::uint32_t, swapped>(values, count);
  } else if (valueBytes == 8) {
    swapWords<std::uint64_t, swapped>(values, count);
  }
}

}  // namespace quillon::netcdf
