/// @file
/// What an array or dictionary may offer besides what the contract has a place for: attributes,
/// coordinates along its axes, times, missing integers, the bytes that it stores. Each is an
/// optional interface, to be found by `dynamic_cast` and to be derived from beside `Array` or
/// `Dictionary`.
///
/// Ownership: what is returned belongs to the caller, or is shared with it. Threads: const
/// operations may run concurrently where the object's may.
#pragma once

#include <object_model/Array.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace quillon::memory {

/// What an attribute holds: a text, several texts, or numbers in the type in which they are stored.
using AttributeValue =
    std::variant<std::string, std::vector<std::string>, std::vector<signed char>,
                 std::vector<short>, std::vector<int>, std::vector<long>,
                 std::vector<unsigned char>, std::vector<unsigned short>, std::vector<unsigned int>,
                 std::vector<unsigned long>, std::vector<float>, std::vector<double>>;

/// A named remark on an array or dictionary, such as `standard_name`.
struct Attribute {
  std::string name;      ///< unique in its object
  AttributeValue value;  ///< never without a value but for empty lists of numbers or texts
};

/// Whether name and value are the same, the value down to the type of its numbers.
inline bool operator==(const Attribute& a, const Attribute& b) {
  return a.name == b.name && a.value == b.value;
}
/// Whether name or value is another one.
inline bool operator!=(const Attribute& a, const Attribute& b) { return !(a == b); }

/// An array or dictionary with attributes.
class HasAttributes {
 public:
  /// All attributes in their order. Unit and description of the object, which the contract has a
  /// place for, are not among them.
  virtual std::vector<Attribute> attributes() const = 0;

 protected:
  // Made, copied and moved as part of an array or dictionary only.
  /// @cond
  HasAttributes() = default;
  HasAttributes(const HasAttributes&) = default;
  HasAttributes(HasAttributes&&) = default;
  HasAttributes& operator=(const HasAttributes&) = default;
  HasAttributes& operator=(HasAttributes&&) = default;
  ~HasAttributes() = default;
  /// @endcond
};

/// An array that knows what the indices of its axes stand for.
class HasCoordinates {
 public:
  /// The coordinates along dimension `dimension`: an array of one dimension of that size, of
  /// numbers, texts or times (see `HasTimes`), with a name and a unit of its own. Null where there
  /// are none. It stays valid without the array that it was asked of.
  virtual std::shared_ptr<const object_model::Array> coordinates(unsigned long dimension) const = 0;

 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  HasCoordinates() = default;
  HasCoordinates(const HasCoordinates&) = default;
  HasCoordinates(HasCoordinates&&) = default;
  HasCoordinates& operator=(const HasCoordinates&) = default;
  HasCoordinates& operator=(HasCoordinates&&) = default;
  ~HasCoordinates() = default;
  /// @endcond
};

/// The rule by which days are grouped into months and years, as the CF conventions name them.
enum class Calendar {
  Standard,            ///< Julian until 1582-10-04, Gregorian from 1582-10-15 on
  ProlepticGregorian,  ///< Gregorian always
  Julian,              ///< every fourth year has 366 days
  NoLeap,              ///< every year has 365 days
  Day360,              ///< every month has 30 days
};

/// The time that is none.
inline constexpr long MISSING_TIME = -0x7FFFFFFFFFFFFFFFL - 1;

/// An array of numbers each of which stands for a point in time, such as hours since a date. As an
/// `Array` it has the numbers and their unit; here it has the times.
class HasTimes {
 public:
  /// The calendar of all times.
  virtual Calendar calendar() const = 0;

  /// Copies the times of a block of positions to `destination`, in storage order: microseconds
  /// since 1970-01-01T00:00:00 of calendar(), MISSING_TIME where there is none.
  /// @param start, extent as for `object_model::BulkValues::readValues`.
  /// @param destination room for one number for each position of the block.
  virtual void readTimes(const unsigned long* start, const unsigned long* extent,
                         long* destination) const = 0;

 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  HasTimes() = default;
  HasTimes(const HasTimes&) = default;
  HasTimes(HasTimes&&) = default;
  HasTimes& operator=(const HasTimes&) = default;
  HasTimes& operator=(HasTimes&&) = default;
  ~HasTimes() = default;
  /// @endcond
};

/// An array of `Int` values of 64 bits the lowest of which, MISSING_TIME, stands for none, such as
/// one of durations. An array that has times is one of these where its values are such integers.
class HasMissing {
 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  HasMissing() = default;
  HasMissing(const HasMissing&) = default;
  HasMissing(HasMissing&&) = default;
  HasMissing& operator=(const HasMissing&) = default;
  HasMissing& operator=(HasMissing&&) = default;
  virtual ~HasMissing() = default;
  /// @endcond
};

/// An array that can tell, without reading its values, that another one has the same: both take
/// them from the same stored bytes.
class HasStoredBytes {
 public:
  /// Whether both arrays are known to give the same values for a block of positions, bit by bit, as
  /// what they keep for it is the same in bytes, type, byte order, packing and decoding. False
  /// where it is not so and where it is not known: then the values are to be read.
  /// @param other an array of the same shape, of any class.
  /// @param start, extent as for `object_model::BulkValues::readValues`. Blocks of whole chunks
  ///   (`object_model::BulkValues::chunkExtents`) are answered fastest.
  /// @throws whatever `readValues` throws where values cannot be had.
  virtual bool holdsSameBytes(const object_model::Array& other, const unsigned long* start,
                              const unsigned long* extent) const = 0;

 protected:
  // Made, copied and moved as part of an array only.
  /// @cond
  HasStoredBytes() = default;
  HasStoredBytes(const HasStoredBytes&) = default;
  HasStoredBytes(HasStoredBytes&&) = default;
  HasStoredBytes& operator=(const HasStoredBytes&) = default;
  HasStoredBytes& operator=(HasStoredBytes&&) = default;
  ~HasStoredBytes() = default;
  /// @endcond
};

}  // namespace quillon::memory
