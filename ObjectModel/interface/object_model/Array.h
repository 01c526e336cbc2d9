/// @file
/// The interface of an n-dimensional typed array.
#pragma once

#include <object_model/Data.h>
#include <object_model/ElementType.h>
#include <object_model/Export.h>

#include <complex>
#include <string>

namespace object_model {

class Tuple;

/// The writable access object of an array. It belongs to the toolkit; this library only passes it
/// on.
class WritingInterface;

/// An n-dimensional block of elements of one `ElementType`.
///
/// A concrete array overrides the accessor (or accessors) that suit its element type; a call of any
/// other throws `InvalidCall`. A position has one index per dimension, in the order of size(), each
/// below the extent of its dimension; what a position outside the shape yields is the concrete
/// class's choice.
///
/// Ownership, threads: as `Data`. ABI: as `Data`; the slots here follow those of `Data`.
class OBJECT_MODEL_EXPORT Array : public Data {
 public:
  ~Array() override;

  /// Returns false: an array is never a dictionary.
  bool isDictionary() const override;
  /// Returns false: an array is never a dictionary.
  bool isDynamicDictionary() const override;
  /// Returns true.
  bool isArray() const override;
  /// Returns null: an array is never a dictionary.
  const Dictionary* asDictionary() const override;
  /// Returns the array itself.
  const Array* asArray() const override;
  /// Returns null: an array is never a dictionary.
  Dictionary* asDictionary() override;
  /// Returns null: an array is never a dictionary.
  DynamicDictionary* asDynamicDictionary() override;
  /// Returns null: an array is never a dictionary.
  const DynamicDictionary* asDynamicDictionary() const override;
  /// Returns the array itself.
  Array* asArray() override;

  /// The `Double` element at `index`. @throws InvalidCall unless overridden.
  virtual double getValueAsDouble(const Tuple& index) const;  // slot 16
  /// The `UInt` element at `index`. @throws InvalidCall unless overridden.
  virtual unsigned long getValueAsUInt(const Tuple& index) const;  // slot 17
  /// The `Int` element at `index`. @throws InvalidCall unless overridden.
  virtual long getValueAsInt(const Tuple& index) const;  // slot 18
  /// The `String` element at `index`, as an independent copy. @throws InvalidCall unless
  /// overridden.
  virtual std::string getValueAsString(const Tuple& index) const;  // slot 19
  /// The `Dictionary` element at `index`: borrowed, and a `Dictionary` by its class.
  /// @throws InvalidCall unless overridden.
  virtual const Data* getValueAsDictionary(const Tuple& index) const;  // slot 20
  /// The `Boolean` element at `index`. @throws InvalidCall unless overridden.
  virtual bool getValueAsBoolean(const Tuple& index) const;  // slot 21
  /// The `Complex` element at `index`. @throws InvalidCall unless overridden.
  virtual std::complex<double> getValueAsComplex(const Tuple& index) const;  // slot 22

  /// The shape: one extent per dimension, dimension 0 first. Borrowed from the array.
  virtual const Tuple& size() const = 0;  // slot 23

  /// The unit that the values are physically measured in; empty for none.
  virtual std::string getPhysicalUnit() const = 0;  // slot 24
  /// The unit as it is shown to people; empty for none.
  virtual std::string getUnit() const = 0;  // slot 25

  /// The array's writable access object, or null where it has none. Borrowed; what it offers is the
  /// toolkit's business.
  virtual WritingInterface* getWritingInterface() = 0;  // slot 26
  /// The same, read-only.
  virtual const WritingInterface* getWritingInterface() const = 0;  // slot 27

  /// What the elements hold, as the descriptor says. getInformation() must yield an `ArrayInfo`.
  ElementType getElementType() const;
};

}  // namespace object_model
