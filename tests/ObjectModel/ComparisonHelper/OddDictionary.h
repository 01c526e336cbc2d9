#pragma once

#include <quillon/memory/Descriptors.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "support/Interfaces.h"

namespace quillon::test {

/// A dictionary that claims any number of entries and answers every lookup alike: at first by
/// throwing `std::out_of_range`.
class OddDictionary : public ::test::PlainDictionary {
 public:
  OddDictionary(const std::string& name, unsigned long count)
      : PlainDictionaryOf(name), m_count(count) {}

  std::function<const object_model::Data*()> onLookup = []() -> const object_model::Data* {
    throw std::out_of_range("no entry");
  };

  unsigned long getNumOfData() const override { return m_count; }
  std::string getDataName(int index) const override { return std::to_string(index); }
  using PlainDictionaryOf::data;
  const object_model::Data* data(const std::string& /*name*/) const override { return onLookup(); }

 private:
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
