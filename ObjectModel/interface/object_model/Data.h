/// @file
/// The root of the data objects.
#pragma once

#include <object_model/Export.h>

#include <string>

namespace object_model {

class Array;
class DataInfo;
class Dictionary;
class DynamicDictionary;

/// Any piece of data that the toolkit passes around: an `Array` or a `Dictionary`.
///
/// Ownership: every pointer that an operation returns is borrowed from the object that returned it
/// and stays valid as long as that object does; strings are independent copies.
/// Threads: the library takes no locks; what may run concurrently is the concrete class's choice.
/// Errors: the tests and casts never fail; a cast to a kind that the object is not yields null.
/// ABI: an interface without fields. Each virtual is a slot in the order declared here; append
/// after the last, never insert, reorder or remove.
class OBJECT_MODEL_EXPORT Data {
 public:
  virtual ~Data();  // slots 0 and 1

  /// The object's descriptor: an `ArrayInfo` for an array, a `DictionaryInfo` for a dictionary.
  /// Never null.
  virtual const DataInfo* getInformation() const = 0;  // slot 2

  /// The object that contains this one, or null.
  virtual const Data* parent() const = 0;  // slot 3
  /// The same, for writing.
  virtual Data* parent() = 0;  // slot 4

  /// Tells the object which object contains it (null for none). Called by the container.
  virtual void setParent(Data* parent) = 0;  // slot 5

  /// Whether the object is a dictionary of any kind.
  virtual bool isDictionary() const = 0;  // slot 6
  /// Whether the object is a dynamic dictionary.
  virtual bool isDynamicDictionary() const = 0;  // slot 7
  /// Whether the object is an array.
  virtual bool isArray() const = 0;  // slot 8

  /// The object as a dictionary, or null.
  virtual const Dictionary* asDictionary() const = 0;  // slot 9
  /// The object as an array, or null.
  virtual const Array* asArray() const = 0;  // slot 10
  /// The object as a dictionary for writing, or null.
  virtual Dictionary* asDictionary() = 0;  // slot 11
  /// The object as a dynamic dictionary for writing, or null.
  virtual DynamicDictionary* asDynamicDictionary() = 0;  // slot 12
  /// The object as a dynamic dictionary, or null.
  virtual const DynamicDictionary* asDynamicDictionary() const = 0;  // slot 13
  /// The object as an array for writing, or null.
  virtual Array* asArray() = 0;  // slot 14

  /// The version number of the object's content: 0 unless a concrete class counts versions.
  virtual int version() const;  // slot 15

  /// The descriptor's name. What getInformation() throws passes through.
  std::string getName() const;

  /// The descriptor's description. What getInformation() throws passes through.
  std::string getDescription() const;
};

}  // namespace object_model
