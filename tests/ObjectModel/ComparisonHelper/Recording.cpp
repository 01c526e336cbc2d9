#include "ObjectModel/ComparisonHelper/Recording.h"

#include <object_model/InvalidCall.h>

#include <stdexcept>
#include <utility>

namespace quillon::test {
namespace {

using object_model::Array;
using object_model::ArrayInfo;
using object_model::AxisInfo;
using object_model::Data;
using object_model::Dictionary;
using object_model::DictionaryInfo;
using object_model::DynamicDictionary;
using object_model::ElementType;
using object_model::Tuple;
using object_model::WritingInterface;

std::string show(const Tuple& position) {
  std::string text;
  for (unsigned long i = 0; i < position.size(); ++i) {
    text += (i == 0 ? "" : ";") + std::to_string(position[i]);
  }
  return "(" + text + ")";
}

class RecordingArrayInfo final : public ArrayInfo {
 public:
  RecordingArrayInfo(const Array& inner, const std::string& label, CallLog& log)
      : m_inner(inner), m_label(label), m_log(log) {}

  const std::string& getName() const override {
    m_log.note(m_label + ".name");
    return m_inner.getInformation()->getName();
  }
  const std::string& getDescription() const override {
    return m_inner.getInformation()->getDescription();
  }
  ElementType getElementType() const override {
    m_log.note(m_label + ".elementType");
    return m_inner.getElementType();
  }
  const AxisInfo* getAxisInfo(unsigned long /*dimension*/) const override { return nullptr; }
  void reservedDataInfo0() const override {}
  void reservedArrayInfo0() const override {}
  void reservedArrayInfo1() const override {}
  void reservedArrayInfo2() const override {}
  void reservedArrayInfo3() const override {}

 private:
  const Array& m_inner;
  const std::string& m_label;
  CallLog& m_log;
};

class RecordingArray final : public RecordingData<Array> {
 public:
  RecordingArray(const Array& inner, std::string label, CallLog& log)
      : RecordingData(std::move(label), log), m_inner(inner), m_information(inner, m_label, log) {}

  const ArrayInfo* getInformation() const override { return &m_information; }
  double getValueAsDouble(const Tuple& index) const override {
    return noted("double", index).getValueAsDouble(index);
  }
  unsigned long getValueAsUInt(const Tuple& index) const override {
    return noted("uint", index).getValueAsUInt(index);
  }
  long getValueAsInt(const Tuple& index) const override {
    return noted("int", index).getValueAsInt(index);
  }
  std::string getValueAsString(const Tuple& index) const override {
    return noted("string", index).getValueAsString(index);
  }
  const Data* getValueAsDictionary(const Tuple& index) const override {
    return wrap(noted("dictionary", index).getValueAsDictionary(index), show(index));
  }
  bool getValueAsBoolean(const Tuple& index) const override {
    return noted("boolean", index).getValueAsBoolean(index);
  }
  std::complex<double> getValueAsComplex(const Tuple& index) const override {
    return noted("complex", index).getValueAsComplex(index);
  }
  const Tuple& size() const override {
    note("size");
    return m_inner.size();
  }
  std::string getPhysicalUnit() const override { return {}; }
  std::string getUnit() const override { return {}; }
  WritingInterface* getWritingInterface() override { return nullptr; }
  const WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  const Array& noted(const std::string& type, const Tuple& index) const {
    note(type + show(index));
    return m_inner;
  }

  const Array& m_inner;
  RecordingArrayInfo m_information;
};

class RecordingDictionaryInfo final : public DictionaryInfo {
 public:
  RecordingDictionaryInfo(const Dictionary& inner, const std::string& label, CallLog& log)
      : m_inner(inner), m_label(label), m_log(log) {}

  const std::string& getName() const override {
    m_log.note(m_label + ".name");
    return m_inner.getInformation()->getName();
  }
  const std::string& getDescription() const override {
    return m_inner.getInformation()->getDescription();
  }
  void reservedDataInfo0() const override {}
  void reservedDictionaryInfo0() const override {}
  void reservedDictionaryInfo1() const override {}
  void reservedDictionaryInfo2() const override {}
  void reservedDictionaryInfo3() const override {}
  void reservedDictionaryInfo4() const override {}

 private:
  const Dictionary& m_inner;
  const std::string& m_label;
  CallLog& m_log;
};

class RecordingDictionary final : public RecordingData<Dictionary> {
 public:
  RecordingDictionary(const Dictionary& inner, std::string label, CallLog& log)
      : RecordingData(std::move(label), log), m_inner(inner), m_information(inner, m_label, log) {}

  const DictionaryInfo* getInformation() const override { return &m_information; }
  bool isDynamicDictionary() const override { return false; }
  DynamicDictionary* asDynamicDictionary() override { return nullptr; }
  const DynamicDictionary* asDynamicDictionary() const override { return nullptr; }
  unsigned long getNumOfData() const override {
    note("count");
    return m_inner.getNumOfData();
  }
  void reservedDictionary0() const override {}
  void reservedDictionary1() const override {}
  std::string getDataName(int index) const override {
    note("dataName(" + std::to_string(index) + ")");
    return m_inner.getDataName(index);
  }
  Data* data(const std::string& /*name*/) override {
    throw std::logic_error("asked for an entry to write to");
  }
  const Data* data(const std::string& name) const override {
    note("data(" + name + ")");
    return wrap(m_inner.data(name), "/" + name);
  }

 private:
  const Dictionary& m_inner;
  RecordingDictionaryInfo m_information;
};

}  // namespace

void CallLog::failAt(std::size_t call, Failure failure) {
  reset();
  m_failing = call;
  m_failure = failure;
}

void CallLog::reset() {
  m_calls.clear();
  m_failing.reset();
}

void CallLog::note(const std::string& call) {
  m_calls.push_back(call);
  if (m_failing != m_calls.size() - 1) {
    return;
  }
  switch (m_failure) {
    case Failure::StandardException:
      throw std::runtime_error("failed at " + call);
    case Failure::InvalidCall:
      throw object_model::InvalidCall("failed at " + call);
    case Failure::Number:
      throw 42;
  }
}

std::unique_ptr<Data> record(const Data& data, std::string label, CallLog& log) {
  if (const auto* dictionary = data.asDictionary()) {
    return std::make_unique<RecordingDictionary>(*dictionary, std::move(label), log);
  }
  return std::make_unique<RecordingArray>(*data.asArray(), std::move(label), log);
}

}  // namespace quillon::test
