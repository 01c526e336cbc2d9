#include "ImportedType.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>

namespace quillon::arrow {
namespace {

using tables::ColumnType;

constexpr long MICROSECONDS = 1000000;

/// A value of a buffer, which need not be aligned.
template <class T>
T valueAt(const void* buffer, unsigned long number) {
  T value;
  std::memcpy(&value, static_cast<const char*>(buffer) + number * sizeof(T), sizeof(T));
  return value;
}

bool bitAt(const void* buffer, unsigned long number) {
  const auto byte = static_cast<const unsigned char*>(buffer)[number / 8];
  return ((static_cast<unsigned int>(byte) >> (number % 8)) & 1U) != 0;
}

template <class T>
void readCells(const ArrowArray& array, unsigned long first, unsigned long count,
               void* destination) {
  std::memcpy(destination, static_cast<const T*>(array.buffers[1]) + first, count * sizeof(T));
}

void readBits(const ArrowArray& array, unsigned long first, unsigned long count,
              void* destination) {
  for (unsigned long k = 0; k < count; ++k) {
    static_cast<bool*>(destination)[k] = bitAt(array.buffers[1], first + k);
  }
}

template <class Offset>
void readTexts(const ArrowArray& array, unsigned long first, unsigned long count,
               void* destination) {
  const auto* const characters = static_cast<const char*>(array.buffers[2]);
  for (unsigned long k = 0; k < count; ++k) {
    const auto begin = valueAt<Offset>(array.buffers[1], first + k);
    const auto end = valueAt<Offset>(array.buffers[1], first + k + 1);
    // Without characters there need not be a buffer of them.
    static_cast<std::string*>(destination)[k] =
        end > begin ? std::string(characters + begin, characters + end) : std::string();
  }
}

/// A text of at most so many bytes stands in its view, another one in one of the further buffers.
constexpr int32_t LONGEST_INLINE = 12;

std::string textOfView(const ArrowArray& array, unsigned long number) {
  const char* const view = static_cast<const char*>(array.buffers[1]) + 16 * number;
  const auto length = valueAt<int32_t>(view, 0);
  if (length <= LONGEST_INLINE) {
    return {view + 4, view + 4 + length};
  }
  const auto buffer = valueAt<int32_t>(view, 2);
  const auto offset = valueAt<int32_t>(view, 3);
  const char* const text = static_cast<const char*>(array.buffers[2 + buffer]) + offset;
  return {text, text + length};
}

void readViews(const ArrowArray& array, unsigned long first, unsigned long count,
               void* destination) {
  for (unsigned long k = 0; k < count; ++k) {
    static_cast<std::string*>(destination)[k] =
        isNull(array, first + k) ? std::string() : textOfView(array, first + k);
  }
}

long floorOf(long number, long divisor) {
  const long quotient = number / divisor;
  return number % divisor < 0 ? quotient - 1 : quotient;
}

/// Numbers of which each is `Factor / Divisor` microseconds. What a `long` does not hold is of no
/// meaning, see holdsTime.
template <class T, long Factor, long Divisor>
void readTimes(const ArrowArray& array, unsigned long first, unsigned long count,
               void* destination) {
  for (unsigned long k = 0; k < count; ++k) {
    long time = 0;
    static_cast<void>(
        __builtin_mul_overflow(valueAt<T>(array.buffers[1], first + k), Factor, &time));
    static_cast<long*>(destination)[k] = floorOf(time, Divisor);
  }
}

template <class T, long Factor>
bool holdsTime(const ArrowArray& array, unsigned long number) {
  long time = 0;
  return !__builtin_mul_overflow(valueAt<T>(array.buffers[1], number), Factor, &time);
}

template <class T>
constexpr ImportedType numbers(ColumnType type) {  // never run: called when compiled
  // never run: called when compiled
  return {type, 2, sizeof(T), &readCells<T>, nullptr};
}

template <class T, long Factor>
constexpr ImportedType times() {  // never run: called when compiled
  // never run: called when compiled
  return {ColumnType::Time, 2, 0, &readTimes<T, Factor, 1>, &holdsTime<T, Factor>};
}

using Row = std::pair<std::string_view, ImportedType>;

constexpr std::array<Row, 16> BY_FORMAT = {{
    {"c", numbers<signed char>(ColumnType::Int8)},
    {"s", numbers<short>(ColumnType::Int16)},
    {"i", numbers<int>(ColumnType::Int32)},
    {"l", numbers<long>(ColumnType::Int64)},
    {"C", numbers<unsigned char>(ColumnType::UInt8)},
    {"S", numbers<unsigned short>(ColumnType::UInt16)},
    {"I", numbers<unsigned int>(ColumnType::UInt32)},
    {"L", numbers<unsigned long>(ColumnType::UInt64)},
    {"f", numbers<float>(ColumnType::Float32)},
    {"g", numbers<double>(ColumnType::Float64)},
    {"b", {ColumnType::Boolean, 2, 0, &readBits, nullptr}},
    {"u", {ColumnType::Text, 3, 0, &readTexts<int32_t>, nullptr}},
    {"U", {ColumnType::Text, 3, 0, &readTexts<int64_t>, nullptr}},
    {"vu", {ColumnType::Text, 2, 0, &readViews, nullptr}},
    {"tdD", times<int32_t, 86400 * MICROSECONDS>()},
    {"tdm", times<int64_t, MICROSECONDS / 1000>()},
}};

/// Their formats go on with a zone.
constexpr std::array<Row, 4> TIMES = {{
    {"tss:", times<int64_t, MICROSECONDS>()},
    {"tsm:", times<int64_t, MICROSECONDS / 1000>()},
    {"tsu:", {ColumnType::Time, 2, sizeof(long), &readCells<long>, nullptr}},
    {"tsn:", {ColumnType::Time, 2, 0, &readTimes<int64_t, 1, 1000>, nullptr}},
}};

}  // namespace

const ImportedType* importedType(std::string_view format) {
  for (const auto& [name, type] : BY_FORMAT) {
    if (name == format) {
      return &type;
    }
  }
  for (const auto& [beginning, type] : TIMES) {
    if (format.substr(0, beginning.size()) == beginning) {
      return &type;
    }
  }
  return nullptr;
}

bool isNull(const ArrowArray& array, unsigned long number) {
  const void* const validity = array.n_buffers > 0 ? array.buffers[0] : nullptr;
  return array.null_count != 0 && validity != nullptr && !bitAt(validity, number);
}

}  // namespace quillon::arrow
