#include "Encoding.h"

#include <netcdf.h>
#include <quillon/memory/AsciiText.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <variant>

#include "Attributes.h"

namespace quillon::netcdf {
namespace {

using memory::Attribute;
using memory::AttributeValue;
using Attributes = std::vector<Attribute>;

bool isOf64Bits(int type) { return type == NC_INT64 || type == NC_UINT64; }

bool hasAtMost16Bits(int type) {
  return type == NC_BYTE || type == NC_UBYTE || type == NC_SHORT || type == NC_USHORT;
}

/// The type of the same size with or without a sign, as `_Unsigned` says.
int withSignOf(int type, const Attributes& attributes) {
  static constexpr std::array<std::pair<int, int>, 3> PAIRS = {
      {{NC_BYTE, NC_UBYTE}, {NC_SHORT, NC_USHORT}, {NC_INT, NC_UINT}}};
  const std::string isUnsigned = memory::lowerCase(textOf(attributes, "_Unsigned"));
  for (const auto& [withSign, withoutSign] : PAIRS) {
    if (type == withSign && isUnsigned == "true") {
      return withoutSign;
    }
    if (type == withoutSign && isUnsigned == "false") {
      return withSign;
    }
  }
  return type;
}

/// The one number of an attribute; none where it has several or is no number.
std::optional<double> numberOf(const Attribute* attribute) {
  if (attribute == nullptr) {
    return std::nullopt;
  }
  return std::visit(
      [](const auto& content) -> std::optional<double> {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (!std::is_same_v<Content, std::string> &&
                      // never true, never false: decided when compiled
                      !std::is_same_v<Content, std::vector<std::string>>) {
          if (content.size() == 1) {
            return static_cast<double>(content.front());
          }
        }
        return std::nullopt;
      },
      attribute->value);
}

bool isText(const Attribute& attribute) {
  return std::holds_alternative<std::string>(attribute.value) ||
         std::holds_alternative<std::vector<std::string>>(attribute.value);
}

bool isFloat(const Attribute& attribute) {
  return std::holds_alternative<std::vector<float>>(attribute.value);
}

/// Takes the packing over. Returns whether it is no wider than `float`.
bool takePacking(const Attributes& attributes, Encoding& encoding) {
  const Packing packing = packingOf(attributes);
  encoding.isPacked = packing.scaleFactor || packing.addOffset;
  encoding.scale = packing.scaleFactor.value_or(1);
  encoding.offset = packing.addOffset.value_or(0);
  if (packing.scaleFactor) {
    encoding.consumed.emplace_back("scale_factor");
  }
  if (packing.addOffset) {
    encoding.consumed.emplace_back("add_offset");
  }
  return (!packing.scaleFactor || isFloat(*findAttribute(attributes, "scale_factor"))) &&
         (!packing.addOffset || isFloat(*findAttribute(attributes, "add_offset")));
}

/// Adds the numbers that an attribute names to those that are `missing`.
bool takeMissing(const Attributes& attributes, const char* name, Encoding& encoding,
                 std::vector<memory::AttributeValue>& missing) {
  const Attribute* attribute = findAttribute(attributes, name);
  if (attribute == nullptr || isText(*attribute)) {
    return false;
  }
  missing.push_back(attribute->value);
  encoding.consumed.emplace_back(name);
  return true;
}

void addDefaultFill(Encoding& encoding) {
  if (encoding.stored == NC_FLOAT) {
    encoding.missing.emplace_back(std::vector<float>{NC_FILL_FLOAT});
  } else if (encoding.stored == NC_DOUBLE) {
    encoding.missing.emplace_back(std::vector<double>{NC_FILL_DOUBLE});
  }
}

void takeAllMissing(const Attributes& attributes, Encoding& encoding) {
  if (!takeMissing(attributes, "_FillValue", encoding, encoding.missing)) {
    addDefaultFill(encoding);
  }
  takeMissing(attributes, "missing_value", encoding, encoding.missing);
}

/// The type of decoded numbers. Those of a `float` variable stay `float` unless their packing is
/// wider.
int resultOf(const Encoding& encoding, bool hasFloatPacking) {
  if (!encoding.changesNumbers()) {
    return encoding.stored;
  }
  const bool isSmall = hasAtMost16Bits(encoding.stored) || encoding.stored == NC_FLOAT;
  return isSmall && hasFloatPacking ? NC_FLOAT : NC_DOUBLE;
}

void takeNumbers(const Attributes& attributes, Encoding& encoding) {
  const bool hasFloatPacking = takePacking(attributes, encoding);
  if (encoding.isPacked || !isOf64Bits(encoding.stored)) {
    takeAllMissing(attributes, encoding);
  }
  encoding.result = resultOf(encoding, hasFloatPacking);
}

void takeTimes(const Attributes& attributes, Encoding& encoding) {
  encoding.times = timeUnitsOf(attributes);
  if (!encoding.times) {
    return;
  }
  encoding.consumed.emplace_back("calendar");
  if (!encoding.changesNumbers()) {
    takeMissing(attributes, "_FillValue", encoding, encoding.missingTimes);
    takeMissing(attributes, "missing_value", encoding, encoding.missingTimes);
  }
}

/// HDF5 has no booleans: its programs write an enumeration of these two.
bool isBooleanEnumeration(const StoredForm& form) {
  const std::vector<std::pair<std::string, long>> flags = {{"FALSE", 0}, {"TRUE", 1}};
  return form.bytes == 1 && form.members == flags;
}

void decode(const StoredForm& form, const Attributes& attributes, Encoding& encoding) {
  if (form.base == NC_BYTE && form.members.empty() && textOf(attributes, "dtype") == "bool") {
    encoding.isBoolean = true;
    encoding.consumed.emplace_back("dtype");
    return;
  }
  encoding.isBoolean = isBooleanEnumeration(form);
  encoding.hasNames = !form.members.empty();
  if (!isNumber(form.base) || !form.members.empty()) {
    return;
  }
  encoding.stored = withSignOf(form.base, attributes);
  if (encoding.stored != form.base) {
    encoding.consumed.emplace_back("_Unsigned");
  }
  takeNumbers(attributes, encoding);
  takeTimes(attributes, encoding);
}

/// Whether both make the same of all numbers: zeros of both signs do not.
bool areAlike(double first, double second) {
  return std::signbit(first) == std::signbit(second) &&
         (first == second || (std::isnan(first) && std::isnan(second)));
}

/// Whether both are the same numbers of one type, NaN like any other.
bool areSameNumbers(const AttributeValue& first, const AttributeValue& second) {
  return first.index() == second.index() &&
         std::visit(
             [&second](const auto& numbers) {
               using Numbers = std::decay_t<decltype(numbers)>;
               const auto& others = std::get<Numbers>(second);
               if constexpr (std::is_same_v<Numbers, std::vector<float>> ||
                             // never true, never false: decided when compiled
                             std::is_same_v<Numbers, std::vector<double>>) {
                 return std::equal(numbers.begin(), numbers.end(), others.begin(), others.end(),
                                   areAlike);
               } else {
                 return numbers == others;
               }
             },
             first);
}

}  // namespace

std::optional<memory::TimeUnits> timeUnitsOf(const Attributes& attributes) {
  const std::optional<memory::Calendar> calendar =
      memory::calendarCalled(textOf(attributes, "calendar"));
  return calendar ? memory::TimeUnits::parse(textOf(attributes, "units"), *calendar) : std::nullopt;
}

Packing packingOf(const Attributes& attributes) {
  return {numberOf(findAttribute(attributes, "scale_factor")),
          numberOf(findAttribute(attributes, "add_offset"))};
}

Encoding encodingOf(const StoredForm& form, const Attributes& attributes,
                    const OpenOptions& options) {
  Encoding encoding;
  encoding.stored = form.base;
  encoding.result = form.base;
  if (options.decode) {
    decode(form, attributes, encoding);
  }
  return encoding;
}

bool decodeAlike(const Encoding& first, const Encoding& second) {
  return first.stored == second.stored && first.isPacked == second.isPacked &&
         areAlike(first.scale, second.scale) && areAlike(first.offset, second.offset) &&
         std::equal(first.missing.begin(), first.missing.end(), second.missing.begin(),
                    second.missing.end(), areSameNumbers);
}

}  // namespace quillon::netcdf
