#include "support/Recording.h"

#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/Dictionary.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/Tuple.h>

#include <complex>
#include <map>
#include <utility>
#include <vector>

#include "support/Allocations.h"

namespace test {
namespace {

using object_model::Array;
using object_model::ArrayInfo;
using object_model::AxisInfo;
using object_model::AxisType;
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

std::string show(unsigned long number) { return "(" + std::to_string(number) + ")"; }

/// What all recorders share: who they are and where they note their calls.
class Notes {
 public:
  Notes(std::string label, CallLog& log) : m_label(std::move(label)), m_log(log) {}

  const std::string& label() const { return m_label; }
  CallLog& log() const { return m_log; }
  void note(const std::string& operation) const { m_log.note(m_label + "." + operation); }

 private:
  std::string m_label;
  CallLog& m_log;
};

class RecordingAxisInfo final : public AxisInfo {
 public:
  RecordingAxisInfo(const AxisInfo& inner, Notes notes)
      : m_inner(inner), m_notes(std::move(notes)) {}

  AxisType getAxisType() const override {
    const SparedAllocations spared;
    m_notes.note("type");
    return m_inner.getAxisType();
  }
  std::string getAxisName() const override {
    const SparedAllocations spared;
    m_notes.note("name");
    return m_inner.getAxisName();
  }

 private:
  const AxisInfo& m_inner;
  Notes m_notes;
};

/// What the descriptors of both kinds are asked for.
template <class Base>
class RecordingInfo : public Base {
 public:
  RecordingInfo(const Data& inner, Notes notes) : m_inner(inner), m_notes(std::move(notes)) {}

  const std::string& getName() const override {
    const SparedAllocations spared;
    m_notes.note("name");
    return m_inner.getInformation()->getName();
  }
  const std::string& getDescription() const override {
    const SparedAllocations spared;
    m_notes.note("description");
    return m_inner.getInformation()->getDescription();
  }
  void reservedDataInfo0() const override {}

 protected:
  const Data& m_inner;
  Notes m_notes;
};

class RecordingArrayInfo final : public RecordingInfo<ArrayInfo> {
 public:
  RecordingArrayInfo(const Array& inner, const Notes& notes) : RecordingInfo(inner, notes) {
    for (unsigned long k = 0; k < inner.size().size(); ++k) {
      const AxisInfo* axis = inner.getInformation()->asArrayInfo()->getAxisInfo(k);
      m_axes.emplace_back(*axis, Notes(notes.label() + ".axis" + show(k), notes.log()));
    }
  }

  const ArrayInfo* asArrayInfo() const override {
    const SparedAllocations spared;
    m_notes.note("asArrayInfo");
    return this;
  }
  ElementType getElementType() const override {
    const SparedAllocations spared;
    m_notes.note("elementType");
    return m_inner.asArray()->getElementType();
  }
  const AxisInfo* getAxisInfo(unsigned long dimension) const override {
    const SparedAllocations spared;
    m_notes.note("axis" + show(dimension));
    return &m_axes.at(dimension);
  }
  void reservedArrayInfo0() const override {}
  void reservedArrayInfo1() const override {}
  void reservedArrayInfo2() const override {}
  void reservedArrayInfo3() const override {}

 private:
  std::vector<RecordingAxisInfo> m_axes;
};

class RecordingDictionaryInfo final : public RecordingInfo<DictionaryInfo> {
 public:
  using RecordingInfo::RecordingInfo;
  void reservedDictionaryInfo0() const override {}
  void reservedDictionaryInfo1() const override {}
  void reservedDictionaryInfo2() const override {}
  void reservedDictionaryInfo3() const override {}
  void reservedDictionaryInfo4() const override {}
};

/// What the recorders of both kinds share.
template <class Base, class Info>
class RecordingData : public Base {
 public:
  RecordingData(const Base& inner, const Notes& notes)
      : m_inner(inner), m_notes(notes), m_information(inner, notes) {}

  const Info* getInformation() const override {
    const SparedAllocations spared;
    m_notes.note("info");
    return &m_information;
  }
  const Data* parent() const override { return nullptr; }
  Data* parent() override { return nullptr; }
  void setParent(Data* /*parent*/) override {}
  bool isDictionary() const override {
    const SparedAllocations spared;
    m_notes.note("isDictionary");
    return Base::isDictionary();
  }
  bool isArray() const override {
    const SparedAllocations spared;
    m_notes.note("isArray");
    return Base::isArray();
  }

 protected:
  Data* wrap(const Data* inner, const std::string& step) const {
    auto& wrapped = m_wrapped[inner];
    if (wrapped == nullptr && inner != nullptr) {
      wrapped = record(*inner, m_notes.label() + step, m_notes.log());
    }
    return wrapped.get();
  }

  const Base& m_inner;
  Notes m_notes;

 private:
  Info m_information;
  mutable std::map<const Data*, std::unique_ptr<Data>> m_wrapped;
};

class RecordingArray final : public RecordingData<Array, RecordingArrayInfo> {
 public:
  using RecordingData::RecordingData;

  double getValueAsDouble(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("double", index).getValueAsDouble(index);
  }
  unsigned long getValueAsUInt(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("uint", index).getValueAsUInt(index);
  }
  long getValueAsInt(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("int", index).getValueAsInt(index);
  }
  std::string getValueAsString(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("string", index).getValueAsString(index);
  }
  const Data* getValueAsDictionary(const Tuple& index) const override {
    const SparedAllocations spared;
    return wrap(noted("dictionary", index).getValueAsDictionary(index), show(index));
  }
  bool getValueAsBoolean(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("boolean", index).getValueAsBoolean(index);
  }
  std::complex<double> getValueAsComplex(const Tuple& index) const override {
    const SparedAllocations spared;
    return noted("complex", index).getValueAsComplex(index);
  }
  const Tuple& size() const override {
    const SparedAllocations spared;
    m_notes.note("size");
    return m_inner.size();
  }
  std::string getPhysicalUnit() const override {
    const SparedAllocations spared;
    m_notes.note("physicalUnit");
    return m_inner.getPhysicalUnit();
  }
  std::string getUnit() const override {
    const SparedAllocations spared;
    m_notes.note("unit");
    return m_inner.getUnit();
  }
  WritingInterface* getWritingInterface() override { return nullptr; }
  const WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  const Array& noted(const std::string& type, const Tuple& index) const {
    m_notes.note(type + show(index));
    return m_inner;
  }
};

class RecordingDictionary final : public RecordingData<Dictionary, RecordingDictionaryInfo> {
 public:
  using RecordingData::RecordingData;

  bool isDynamicDictionary() const override { return false; }
  DynamicDictionary* asDynamicDictionary() override { return nullptr; }
  const DynamicDictionary* asDynamicDictionary() const override { return nullptr; }
  unsigned long getNumOfData() const override {
    const SparedAllocations spared;
    m_notes.note("count");
    return m_inner.getNumOfData();
  }
  void reservedDictionary0() const override {}
  void reservedDictionary1() const override {}
  std::string getDataName(int index) const override {
    const SparedAllocations spared;
    m_notes.note("dataName(" + std::to_string(index) + ")");
    return m_inner.getDataName(index);
  }
  Data* data(const std::string& name) override {
    const SparedAllocations spared;
    m_notes.note("dataToWrite(" + name + ")");
    return wrap(m_inner.data(name), "/" + name);
  }
  const Data* data(const std::string& name) const override {
    const SparedAllocations spared;
    m_notes.note("data(" + name + ")");
    return wrap(m_inner.data(name), "/" + name);
  }
};

}  // namespace

std::unique_ptr<Data> record(const Data& data, std::string label, CallLog& log) {
  const Notes notes(std::move(label), log);
  if (const auto* dictionary = data.asDictionary()) {
    return std::make_unique<RecordingDictionary>(*dictionary, notes);
  }
  return std::make_unique<RecordingArray>(*data.asArray(), notes);
}

}  // namespace test
