/// The least that makes each interface of the object model concrete. What an interface implements
/// itself is left as it is, so that the tests meet the library's own defaults.
#pragma once

#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/DynamicDictionary.h>
#include <object_model/Request.h>
#include <object_model/TupleX.h>

#include <string>
#include <utility>
#include <vector>

namespace test {

class PlainAxisInfo : public object_model::AxisInfo {
 public:
  explicit PlainAxisInfo(object_model::AxisType type = object_model::AxisType::Slice)
      : m_type(type) {}
  object_model::AxisType getAxisType() const override { return m_type; }

 private:
  object_model::AxisType m_type;
};

class PlainArrayInfo : public object_model::ArrayInfo {
 public:
  explicit PlainArrayInfo(std::string name = "array",
                          object_model::ElementType type = object_model::ElementType::Double,
                          std::string description = {})
      : m_name(std::move(name)), m_description(std::move(description)), m_type(type) {}
  const std::string& getName() const override { return m_name; }
  const std::string& getDescription() const override { return m_description; }
  object_model::ElementType getElementType() const override { return m_type; }
  const object_model::AxisInfo* getAxisInfo(unsigned long) const override { return nullptr; }
  void reservedDataInfo0() const override {}
  void reservedArrayInfo0() const override {}
  void reservedArrayInfo1() const override {}
  void reservedArrayInfo2() const override {}
  void reservedArrayInfo3() const override {}

 private:
  std::string m_name;
  std::string m_description;
  object_model::ElementType m_type;
};

class PlainDictionaryInfo : public object_model::DictionaryInfo {
 public:
  explicit PlainDictionaryInfo(std::string name = "dictionary") : m_name(std::move(name)) {}
  const std::string& getName() const override { return m_name; }
  const std::string& getDescription() const override { return m_description; }
  void reservedDataInfo0() const override {}
  void reservedDictionaryInfo0() const override {}
  void reservedDictionaryInfo1() const override {}
  void reservedDictionaryInfo2() const override {}
  void reservedDictionaryInfo3() const override {}
  void reservedDictionaryInfo4() const override {}

 private:
  std::string m_name;
  std::string m_description;
};

/// An array that overrides none of the value accessors.
class PlainArray : public object_model::Array {
 public:
  explicit PlainArray(PlainArrayInfo info = PlainArrayInfo()) : m_info(std::move(info)) {}
  const object_model::DataInfo* getInformation() const override { return &m_info; }
  const object_model::Data* parent() const override { return m_parent; }
  object_model::Data* parent() override { return m_parent; }
  void setParent(object_model::Data* parent) override { m_parent = parent; }
  const object_model::Tuple& size() const override { return m_shape; }
  std::string getPhysicalUnit() const override { return {}; }
  std::string getUnit() const override { return {}; }
  object_model::WritingInterface* getWritingInterface() override { return nullptr; }
  const object_model::WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  PlainArrayInfo m_info;
  object_model::TupleX m_shape{1, 1};
  object_model::Data* m_parent = nullptr;
};

/// A dictionary, dynamic or not by its `Interface`, of the entries that the caller owns.
template <class Interface>
class PlainDictionaryOf : public Interface {
 public:
  explicit PlainDictionaryOf(std::string name = "dictionary") : m_info(std::move(name)) {}
  const object_model::DataInfo* getInformation() const override { return &m_info; }
  const object_model::Data* parent() const override { return m_parent; }
  object_model::Data* parent() override { return m_parent; }
  void setParent(object_model::Data* parent) override { m_parent = parent; }
  bool isDynamicDictionary() const override { return false; }
  object_model::DynamicDictionary* asDynamicDictionary() override { return nullptr; }
  const object_model::DynamicDictionary* asDynamicDictionary() const override { return nullptr; }
  unsigned long getNumOfData() const override { return m_entries.size(); }
  void reservedDictionary0() const override {}
  void reservedDictionary1() const override {}
  std::string getDataName(int index) const override {
    return m_entries.at(static_cast<std::size_t>(index))->getName();
  }
  using Interface::data;
  object_model::Data* data(const std::string& name) override { return find(name); }
  const object_model::Data* data(const std::string& name) const override { return find(name); }

  void add(object_model::Data& entry) { m_entries.push_back(&entry); }

 private:
  object_model::Data* find(const std::string& name) const {
    for (object_model::Data* entry : m_entries) {
      if (entry->getName() == name) {
        return entry;
      }
    }
    return nullptr;
  }

  PlainDictionaryInfo m_info;
  std::vector<object_model::Data*> m_entries;
  object_model::Data* m_parent = nullptr;
};

using PlainDictionary = PlainDictionaryOf<object_model::Dictionary>;

class PlainDynamicDictionary : public PlainDictionaryOf<object_model::DynamicDictionary> {
 public:
  bool isDynamicDictionary() const override { return true; }
  object_model::DynamicDictionary* asDynamicDictionary() override { return this; }
  const object_model::DynamicDictionary* asDynamicDictionary() const override { return this; }
  void reservedDynamicDictionary0() const override {}
  void reservedDynamicDictionary1() const override {}
  void reservedDynamicDictionary2() const override {}
  void reservedDynamicDictionary3() const override {}
  void reservedDynamicDictionary4() const override {}
  void reservedDynamicDictionary5() const override {}
  void reservedDynamicDictionary6() const override {}
};

class PlainRequest : public object_model::Request {
 public:
  void reservedRequest0() const override {}
  void reservedRequest1() const override {}
  void reservedRequest2() const override {}
  void reservedRequest3() const override {}
};

}  // namespace test
