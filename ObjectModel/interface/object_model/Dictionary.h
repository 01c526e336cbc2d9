/// @file
/// The interface of a dictionary of named entries.
#pragma once

#include <object_model/Data.h>
#include <object_model/Export.h>

#include <string>

namespace object_model {

/// A set of named entries, each an `Array` or again a `Dictionary`.
///
/// Entries are addressed by position, from 0 to getNumOfData() - 1, and by name. The name that
/// getDataName() returns for an entry is the name under which data(name) finds it, and is the
/// entry's own getName().
///
/// Ownership, threads: as `Data`. ABI: as `Data`; the slots here follow those of `Data`.
class OBJECT_MODEL_EXPORT Dictionary : public Data {
 public:
  ~Dictionary() override;

  /// Returns true.
  bool isDictionary() const override;
  /// Returns false: a dictionary is never an array.
  bool isArray() const override;
  /// Returns the dictionary itself.
  const Dictionary* asDictionary() const override;
  /// Returns null: a dictionary is never an array.
  const Array* asArray() const override;
  /// Returns the dictionary itself.
  Dictionary* asDictionary() override;
  /// Returns null: a dictionary is never an array.
  Array* asArray() override;

  /// The number of entries.
  virtual unsigned long getNumOfData() const = 0;  // slot 16

  /// Holds a place in the virtual table for the toolkit; this library never calls it.
  virtual void reservedDictionary0() const = 0;  // slot 17
  /// Holds a place in the virtual table for the toolkit; this library never calls it.
  virtual void reservedDictionary1() const = 0;  // slot 18

  /// The name of the entry at position `index`, as an independent copy.
  virtual std::string getDataName(int index) const = 0;  // slot 19

  /// The entry called `name`, for writing. Borrowed, and never null: a concrete class throws when
  /// there is none; which exception is its choice.
  virtual Data* data(const std::string& name) = 0;  // slot 20
  /// The entry called `name`. Borrowed, and never null: a concrete class throws when there is none;
  /// which exception is its choice.
  virtual const Data* data(const std::string& name) const = 0;  // slot 21

  /// The entry at position `index`, for writing: the entry that is found under getDataName(index).
  /// The position is not checked here; what one outside the entries yields is up to the concrete
  /// getDataName() and data(name).
  Data* data(int index);
  /// The same, read-only.
  const Data* data(int index) const;
};

}  // namespace object_model
