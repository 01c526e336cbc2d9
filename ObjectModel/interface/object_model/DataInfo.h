/// @file
/// The root of the descriptors.
#pragma once

#include <object_model/Export.h>

#include <string>

namespace object_model {

class ArrayInfo;
class DictionaryInfo;

/// Describes a data object: what it is called and what it is for.
///
/// Unlike the casts of the data objects, which yield null, a cast to the wrong kind of descriptor
/// is a programming error and throws: test with isArrayInfo() or isDictionaryInfo() first.
///
/// Ownership: every pointer or reference that an operation returns is borrowed from the descriptor.
/// Threads: the library takes no locks; what may run concurrently is the concrete class's choice.
/// ABI: an interface without fields. Each virtual is a slot in the order declared here, the
/// destructor in its unusual place included.
class OBJECT_MODEL_EXPORT DataInfo {
 public:
  /// The object's name.
  virtual const std::string& getName() const = 0;  // slot 0
  /// What the object is for, in words; may be empty.
  virtual const std::string& getDescription() const = 0;  // slot 1

  /// Holds a place in the virtual table for the toolkit; this library never calls it.
  virtual void reservedDataInfo0() const = 0;  // slot 2

  /// Whether this describes an array.
  virtual bool isArrayInfo() const = 0;  // slot 3
  /// Whether this describes a dictionary.
  virtual bool isDictionaryInfo() const = 0;  // slot 4

  /// The descriptor of an array. @throws InvalidCall when this describes something else.
  virtual const ArrayInfo* asArrayInfo() const = 0;  // slot 5
  /// The descriptor of a dictionary. @throws InvalidCall when this describes something else.
  virtual const DictionaryInfo* asDictionaryInfo() const = 0;  // slot 6

  virtual ~DataInfo();  // slots 7 and 8
};

}  // namespace object_model
