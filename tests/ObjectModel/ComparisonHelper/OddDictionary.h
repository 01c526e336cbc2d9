#pragma once

#include <object_model/Dictionary.h>
#include <quillon/memory/Descriptors.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace quillon::test {

/// A dictionary that claims any number of entries and answers every lookup alike: at first by
/// throwing `std::out_of_range`.
class OddDictionary : public object_model::Dictionary {
 public:
  OddDictionary(const std::string& name, unsigned long count)
      : m_descriptor(name), m_count(count) {}

  std::function<const object_model::Data*()> onLookup = []() -> const object_model::Data* {
    throw std::out_of_range("no entry");
  };

  const object_model::DataInfo* getInformation() const override { return &m_descriptor; }
  const object_model::Data* parent() const override { return nullptr; }
  object_model::Data* parent() override { return nullptr; }
  void setParent(object_model::Data* /*parent*/) override {}
  bool isDynamicDictionary() const override { return false; }
  object_model::DynamicDictionary* asDynamicDictionary() override { return nullptr; }
  const object_model::DynamicDictionary* asDynamicDictionary() const override { return nullptr; }
  unsigned long getNumOfData() const override { return m_count; }
  void reservedDictionary0() const override {}
  void reservedDictionary1() const override {}
  std::string getDataName(int index) const override { return std::to_string(index); }
  object_model::Data* data(const std::string& /*name*/) override { return nullptr; }
  const object_model::Data* data(const std::string& /*name*/) const override { return onLookup(); }

 private:
  memory::DictionaryDescriptor m_descriptor;
  unsigned long m_count;
};

/// Data that is neither an array nor a dictionary.
class NeitherKind : public object_model::Data {
 public:
  explicit NeitherKind(const std::string& name) : m_descriptor(name) {}

  const object_model::DataInfo* getInformation() const override { return &m_descriptor; }
  const object_model::Data* parent() const override { return nullptr; }
  object_model::Data* parent() override { return nullptr; }
  void setParent(object_model::Data* /*parent*/) override {}
  bool isDictionary() const override { return false; }
  bool isDynamicDictionary() const override { return false; }
  bool isArray() const override { return false; }
  const object_model::Dictionary* asDictionary() const override { return nullptr; }
  const object_model::Array* asArray() const override { return nullptr; }
  object_model::Dictionary* asDictionary() override { return nullptr; }
  object_model::DynamicDictionary* asDynamicDictionary() override { return nullptr; }
  const object_model::DynamicDictionary* asDynamicDictionary() const override { return nullptr; }
  object_model::Array* asArray() override { return nullptr; }

 private:
  memory::DictionaryDescriptor m_descriptor;
};

}  // namespace quillon::test
