/// @file
/// What every concrete dictionary needs besides its entries.
#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/AttributeList.h>
#include <quillon/memory/Descriptors.h>

#include <string>

namespace quillon::memory {

/// A dictionary without entries: descriptor, container and attributes. Derive from it to write a
/// dictionary over a storage of your own, and define the four operations on entries:
/// `getNumOfData()`, `getDataName(index)` and both `data(name)`; say
/// `using object_model::Dictionary::data;`, too, so that entries are found by position.
///
/// Ownership: owns its descriptor and attributes; knows its container without owning it.
/// Threads: const operations may run concurrently.
class DictionaryBase : public object_model::Dictionary, public AttributeList {
 public:
  /// A dictionary called `name`.
  explicit DictionaryBase(std::string name, std::string description = {});

  const DictionaryDescriptor* getInformation() const override;
  const object_model::Data* parent() const override;
  object_model::Data* parent() override;
  void setParent(object_model::Data* parent) override;

  /// Returns false.
  bool isDynamicDictionary() const override;
  /// Returns null.
  object_model::DynamicDictionary* asDynamicDictionary() override;
  /// Returns null.
  const object_model::DynamicDictionary* asDynamicDictionary() const override;
  void reservedDictionary0() const override;
  void reservedDictionary1() const override;

  /// Replaces the name.
  /// @throws std::invalid_argument when this is an entry of a dictionary, which finds it under its
  ///   name: see `Dictionary::rename`.
  void setName(std::string name);

  /// Replaces the description.
  void setDescription(std::string description);

 protected:
  /// Takes over everything but the container.
  DictionaryBase(DictionaryBase&& other) noexcept;
  /// Takes over everything but the container, which stays the one that it is.
  DictionaryBase& operator=(DictionaryBase&& other) noexcept;

 private:
  DictionaryDescriptor m_descriptor;
  object_model::Data* m_parent = nullptr;
};

}  // namespace quillon::memory
