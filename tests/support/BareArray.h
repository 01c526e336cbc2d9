#pragma once

#include <object_model/Array.h>
#include <quillon/memory/TypedArray.h>

#include <string>
#include <utility>
#include <vector>

namespace test {

/// Numbers with nothing of what an array may offer besides the contract: neither attributes nor
/// coordinates nor bulk values.
class BareArray final : public object_model::Array {
 public:
  BareArray(std::string name, std::vector<quillon::memory::Axis> axes, std::vector<double> values)
      : m_array(std::move(name), std::move(axes), std::move(values)) {}

  const object_model::DataInfo* getInformation() const override { return m_array.getInformation(); }
  const object_model::Data* parent() const override { return m_parent; }
  object_model::Data* parent() override { return m_parent; }
  void setParent(object_model::Data* parent) override { m_parent = parent; }
  double getValueAsDouble(const object_model::Tuple& index) const override {
    return m_array.value(index);
  }
  const object_model::Tuple& size() const override { return m_array.size(); }
  std::string getPhysicalUnit() const override { return {}; }
  std::string getUnit() const override { return {}; }
  object_model::WritingInterface* getWritingInterface() override { return nullptr; }
  const object_model::WritingInterface* getWritingInterface() const override { return nullptr; }

 private:
  quillon::memory::DoubleArray m_array;
  object_model::Data* m_parent = nullptr;
};

}  // namespace test
