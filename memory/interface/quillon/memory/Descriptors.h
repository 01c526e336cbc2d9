/// @file
/// The descriptors of arrays and dictionaries in memory.
#pragma once

#include <object_model/ArrayInfo.h>
#include <object_model/DictionaryInfo.h>
#include <quillon/memory/Axis.h>

#include <string>
#include <vector>

namespace quillon::memory {

/// The descriptor of an array.
///
/// Ownership: owns its texts and axes; references stay valid until it is destroyed or changed.
/// Threads: const operations may run concurrently.
class ArrayDescriptor final : public object_model::ArrayInfo {
 public:
  /// Describes an array called `name` whose elements are of `elementType`, with one axis for each
  /// dimension, dimension 0 first.
  ArrayDescriptor(std::string name, object_model::ElementType elementType, std::vector<Axis> axes,
                  std::string description = {});

  const std::string& getName() const override;
  const std::string& getDescription() const override;
  object_model::ElementType getElementType() const override;

  /// @throws std::out_of_range when `dimension` is not below the number of dimensions.
  const Axis* getAxisInfo(unsigned long dimension) const override;

  /// All axes, dimension 0 first.
  const std::vector<Axis>& axes() const;

  /// Replaces the name.
  void setName(std::string name);

  /// Replaces the description.
  void setDescription(std::string description);

  void reservedDataInfo0() const override;
  void reservedArrayInfo0() const override;
  void reservedArrayInfo1() const override;
  void reservedArrayInfo2() const override;
  void reservedArrayInfo3() const override;

 private:
  std::string m_name;
  std::string m_description;
  object_model::ElementType m_elementType;
  std::vector<Axis> m_axes;
};

/// The descriptor of a dictionary.
///
/// Ownership: owns its texts. Threads: const operations may run concurrently.
class DictionaryDescriptor final : public object_model::DictionaryInfo {
 public:
  /// Describes a dictionary called `name`.
  explicit DictionaryDescriptor(std::string name, std::string description = {});

  const std::string& getName() const override;
  const std::string& getDescription() const override;

  /// Replaces the name.
  void setName(std::string name);

  /// Replaces the description.
  void setDescription(std::string description);

  void reservedDataInfo0() const override;
  void reservedDictionaryInfo0() const override;
  void reservedDictionaryInfo1() const override;
  void reservedDictionaryInfo2() const override;
  void reservedDictionaryInfo3() const override;
  void reservedDictionaryInfo4() const override;

 private:
  std::string m_name;
  std::string m_description;
};

}  // namespace quillon::memory
