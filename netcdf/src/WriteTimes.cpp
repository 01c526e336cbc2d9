#include "WriteTimes.h"

#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>

#include <limits>
#include <type_traits>
#include <vector>

#include "WriteBlocks.h"
#include "WriteRefusal.h"
#include "WriteTypes.h"

namespace quillon::netcdf {
namespace {

using memory::HasTimes;
using memory::MISSING_TIME;
using object_model::Array;
using object_model::ElementType;

template <class T>
constexpr T OUTERMOST = std::is_signed_v<T> ? std::numeric_limits<T>::min()
                                            : std::numeric_limits<T>::max();

template <class T, class Visit>
void forEachTime(const Array& array, const HasTimes& times, const Visit& visit) {
  std::vector<T> numbers;
  std::vector<long> microseconds;
  forEachBlock(array, BLOCK_BYTES / (sizeof(T) + sizeof(long)), [&](const memory::Block& block) {
    numbers.resize(block.count);
    microseconds.resize(block.count);
    memory::copyValues(array, block, numbers.data());
    times.readTimes(block.start.data(), block.extent.data(), microseconds.data());
    for (unsigned long k = 0; k < block.count; ++k) {
      visit(numbers[k], microseconds[k] == MISSING_TIME);
    }
  });
}

template <class T>
bool isOfATime(T number, const Array& array, const HasTimes& times) {
  bool isFound = false;
  forEachTime<T>(array, times, [&](T each, bool isMissing) {
    isFound = isFound || (each == number && !isMissing);
  });
  return isFound;
}

template <class T>
std::optional<memory::AttributeValue> fill(const Array& array, const HasTimes& times,
                                           const std::string& path) {
  std::optional<T> number;
  bool areAlike = true;
  forEachTime<T>(array, times, [&](T each, bool isMissing) {
    areAlike = areAlike && (!isMissing || !number || *number == each);
    number = isMissing ? each : number;
  });
  if (!number) {
    return std::nullopt;
  }
  for (const T candidate : {areAlike ? *number : OUTERMOST<T>, OUTERMOST<T>}) {
    if (!isOfATime(candidate, array, times)) {
      return std::vector<T>{candidate};
    }
  }
  throw Refusal(memory::inQuotes(path) + " has missing times, but " + std::to_string(OUTERMOST<T>) +
                ", which would stand for them, is the number of another one");
}

}  // namespace

const HasTimes* timesOf(const Array& array) {
  const ElementType type = array.getElementType();
  const bool isOfNumbers =
      type == ElementType::Int || type == ElementType::UInt || type == ElementType::Double;
  return isOfNumbers ? dynamic_cast<const HasTimes*>(&array) : nullptr;
}

std::optional<memory::AttributeValue> fillOfTimes(const Array& array, const HasTimes& times,
                                                  object_model::StoredType type,
                                                  const std::string& path) {
  std::optional<memory::AttributeValue> result;
  memory::visitStoredType(type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (IS_WHOLE<T>) {
      result = fill<T>(array, times, path);
    }
  });
  return result;
}

}  // namespace quillon::netcdf
