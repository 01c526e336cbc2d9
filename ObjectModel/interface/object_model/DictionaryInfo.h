/// @file
/// The descriptor of a dictionary.
#pragma once

#include <object_model/DataInfo.h>
#include <object_model/Export.h>

namespace object_model {

/// Describes a dictionary.
///
/// Ownership, threads: as `DataInfo`. ABI: as `DataInfo`; the slots here follow those of
/// `DataInfo`.
class OBJECT_MODEL_EXPORT DictionaryInfo : public DataInfo {
 public:
  /// Returns false.
  bool isArrayInfo() const override;
  /// Returns true.
  bool isDictionaryInfo() const override;
  /// Fails: a dictionary's descriptor describes no array. @throws InvalidCall always.
  const ArrayInfo* asArrayInfo() const override;
  /// Returns the descriptor itself.
  const DictionaryInfo* asDictionaryInfo() const override;

  ~DictionaryInfo() override;

  virtual void reservedDictionaryInfo0() const = 0;  ///< never called here; slot 9
  virtual void reservedDictionaryInfo1() const = 0;  ///< never called here; slot 10
  virtual void reservedDictionaryInfo2() const = 0;  ///< never called here; slot 11
  virtual void reservedDictionaryInfo3() const = 0;  ///< never called here; slot 12
  virtual void reservedDictionaryInfo4() const = 0;  ///< never called here; slot 13
};

}  // namespace object_model
