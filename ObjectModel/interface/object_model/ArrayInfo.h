/// @file
/// The descriptor of an array.
#pragma once

#include <object_model/DataInfo.h>
#include <object_model/ElementType.h>
#include <object_model/Export.h>

namespace object_model {

class AxisInfo;

/// Describes an array: what its elements hold and what each of its axes means.
///
/// Ownership, threads: as `DataInfo`. ABI: as `DataInfo`; the slots here follow those of
/// `DataInfo`.
class OBJECT_MODEL_EXPORT ArrayInfo : public DataInfo {
 public:
  /// Returns true.
  bool isArrayInfo() const override;
  /// Returns false.
  bool isDictionaryInfo() const override;
  /// Returns the descriptor itself.
  const ArrayInfo* asArrayInfo() const override;
  /// Fails: an array's descriptor describes no dictionary. @throws InvalidCall always.
  const DictionaryInfo* asDictionaryInfo() const override;

  ~ArrayInfo() override;

  /// What every element of the array holds.
  virtual ElementType getElementType() const = 0;  // slot 9

  /// Holds a place in the virtual table for the toolkit; this library never calls it.
  virtual void reservedArrayInfo0() const = 0;  // slot 10

  /// The descriptor of one axis, borrowed. `dimension` counts from 0 in the order of the array's
  /// shape and must be below the number of dimensions.
  virtual const AxisInfo* getAxisInfo(unsigned long dimension) const = 0;  // slot 11

  virtual void reservedArrayInfo1() const = 0;  ///< never called here; slot 12
  virtual void reservedArrayInfo2() const = 0;  ///< never called here; slot 13
  virtual void reservedArrayInfo3() const = 0;  ///< never called here; slot 14
};

}  // namespace object_model
