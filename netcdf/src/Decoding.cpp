#include "Decoding.h"

#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>

namespace quillon::netcdf {
namespace {

constexpr unsigned long TILE = 4096;  // values that stay in the processor's cache between passes

/// The number as a `Stored` that is equal to it, or the nearest where both are of fractions; none
/// where there is no such one.
template <class Stored, class Number>
std::optional<Stored> heldAs(Number number) {
  if constexpr (std::is_floating_point_v<Stored>) {
    const auto held = static_cast<Stored>(number);
    return std::isinf(held) && !std::isinf(static_cast<double>(number)) ? std::nullopt
                                                                        : std::optional(held);
  } else if constexpr (std::is_floating_point_v<Number>) {
    // The limits are powers of two, which doubles hold; the greatest number itself is one less.
    const double end = std::ldexp(1.0, std::numeric_limits<Stored>::digits);
    // never true, never false: decided when compiled
    const double begin = std::is_signed_v<Stored> ? -end : 0.0;
    const auto wide = static_cast<double>(number);
    return wide >= begin && wide < end && wide == std::floor(wide)
               ? std::optional(static_cast<Stored>(number))
               : std::nullopt;
  } else {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): these are numbers, not characters
    const auto held = static_cast<Stored>(number);
    const bool isSame =
        static_cast<Number>(held) == number && (held < Stored{}) == (number < Number{});
    const bool isSameBits =
        // never true, never false: decided when compiled
        sizeof(Stored) == sizeof(Number) && std::is_signed_v<Number> && !std::is_signed_v<Stored>;
    // never true, never false: decided when compiled
    return isSame || isSameBits ? std::optional(held) : std::nullopt;
  }
}

template <class Stored>
void append(const memory::AttributeValue& value, std::vector<Stored>& to) {
  std::visit(
      [&to](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (!std::is_same_v<Content, std::string> &&
                      // never true, never false: decided when compiled
                      !std::is_same_v<Content, std::vector<std::string>>) {
          for (const auto number : content) {
            if (const std::optional<Stored> held = heldAs<Stored>(number)) {
              to.push_back(*held);
            }
          }
        }
      },
      value);
}

/// Turns values of the type `Stored` into those of the type `Value`.
template <class Stored, class Value>
class Decoder {
 public:
  explicit Decoder(const Encoding& encoding)
      : m_isPacked(encoding.isPacked),
        m_scale(encoding.scale),
        m_offset(encoding.offset),
        m_missing(missingValuesOf<Stored>(encoding.missing)) {}

  void operator()(const void* stored, unsigned long count, Value* values) const {
    const auto* from = static_cast<const Stored*>(stored);
    for (unsigned long first = 0; first < count; first += TILE) {
      decode(from + first, std::min(TILE, count - first), values + first);
    }
  }

 private:
  void decode(const Stored* stored, unsigned long count, Value* values) const {
    Stored kept[TILE];  // as both may be at one place
    std::copy(stored, stored + count, kept);
    if (m_isPacked) {
      std::transform(kept, kept + count, values, [this](Stored value) {
        return static_cast<Value>(static_cast<double>(value) * m_scale + m_offset);
      });
    } else {
      std::transform(kept, kept + count, values,
                     [](Stored value) { return static_cast<Value>(value); });
    }
    for (const Stored missing : m_missing) {
      for (unsigned long k = 0; k < count; ++k) {
        values[k] = kept[k] == missing ? std::numeric_limits<Value>::quiet_NaN() : values[k];
      }
    }
  }

  bool m_isPacked;
  double m_scale;
  double m_offset;
  std::vector<Stored> m_missing;
};

}  // namespace

template <class Stored>
std::vector<Stored> missingValuesOf(const std::vector<memory::AttributeValue>& missing) {
  std::vector<Stored> values;
  for (const memory::AttributeValue& value : missing) {
    append(value, values);
  }
  return values;
}

template <class Value>
Decode<Value> decoderOf(const Encoding& encoding) {
  if (!encoding.changesNumbers()) {
    return {};
  }
  switch (encoding.stored) {
    case NC_BYTE:
      return Decoder<signed char, Value>(encoding);
    case NC_UBYTE:
      return Decoder<unsigned char, Value>(encoding);
    case NC_SHORT:
      return Decoder<short, Value>(encoding);
    case NC_USHORT:
      return Decoder<unsigned short, Value>(encoding);
    case NC_INT:
      return Decoder<int, Value>(encoding);
    case NC_UINT:
      return Decoder<unsigned int, Value>(encoding);
    case NC_INT64:
      return Decoder<long, Value>(encoding);
    case NC_UINT64:
      return Decoder<unsigned long, Value>(encoding);
    case NC_FLOAT:
      return Decoder<float, Value>(encoding);
    default:
      return Decoder<double, Value>(encoding);
  }
}

template Decode<float> decoderOf(const Encoding& encoding);
template Decode<double> decoderOf(const Encoding& encoding);
template std::vector<long> missingValuesOf(const std::vector<memory::AttributeValue>&);
template std::vector<unsigned long> missingValuesOf(const std::vector<memory::AttributeValue>&);

}  // namespace quillon::netcdf
