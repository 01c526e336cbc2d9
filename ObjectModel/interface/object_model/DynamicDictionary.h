/// @file
/// The interface of a dictionary that the toolkit can reshape.
#pragma once

#include <object_model/Dictionary.h>
#include <object_model/Export.h>

namespace object_model {

/// A further kind of dictionary, recognised with isDynamicDictionary(). What it adds belongs to the
/// toolkit: the operations here hold their places in the virtual table and this library never calls
/// them.
///
/// Ownership, threads: as `Data`. ABI: as `Data`; the slots here follow those of `Dictionary`.
class OBJECT_MODEL_EXPORT DynamicDictionary : public Dictionary {
 public:
  ~DynamicDictionary() override;

  virtual void reservedDynamicDictionary0() const = 0;  ///< never called here; slot 22
  virtual void reservedDynamicDictionary1() const = 0;  ///< never called here; slot 23
  virtual void reservedDynamicDictionary2() const = 0;  ///< never called here; slot 24
  virtual void reservedDynamicDictionary3() const = 0;  ///< never called here; slot 25
  virtual void reservedDynamicDictionary4() const = 0;  ///< never called here; slot 26
  virtual void reservedDynamicDictionary5() const = 0;  ///< never called here; slot 27
  virtual void reservedDynamicDictionary6() const = 0;  ///< never called here; slot 28
};

}  // namespace object_model
