#include "FlagArray.h"

#include <algorithm>
#include <map>

namespace quillon::netcdf {
namespace {

using memory::ArrayBase;
using memory::Axis;
using object_model::Tuple;

class FlagArray final : public FileArray, public object_model::BulkValues {
 public:
  FlagArray(Variable variable, const std::string& name, std::vector<Axis> axes,
            const std::string& description)
      : FileArray(object_model::ElementType::Boolean, std::move(variable), name, std::move(axes),
                  description),
        m_blocks(m_variable.blocks()),
        m_window(m_variable.windows(0, 1)) {}

  bool getValueAsBoolean(const Tuple& index) const override {
    return m_window.at(
               offsetOf(index),
               [this](const memory::Block& block, std::vector<signed char>& values) {
                 m_variable.makeRoom(values, block.count);
                 m_variable.read(block.start.data(), block.extent.data(), values.data());
                 return block.count;
               },
               [this](unsigned long bytes) { m_variable.reportRead(bytes); }) != 0;
  }

  object_model::StoredType storedType() const override { return object_model::StoredType::Boolean; }

  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    std::vector<signed char> stored;
    const unsigned long count = m_variable.countOf(extent);
    m_variable.makeRoom(stored, count);
    m_variable.read(start, extent, stored.data());
    std::transform(stored.begin(), stored.end(), static_cast<bool*>(destination),
                   [](signed char value) { return value != 0; });
    m_variable.reportRead(count);
  }

  const unsigned long* chunkExtents() const override {
    return m_blocks.empty() ? nullptr : m_blocks.data();
  }

 private:
  std::vector<unsigned long> m_blocks;
  mutable Window<signed char> m_window;
};

class NameArray final : public FileArray {
 public:
  NameArray(const std::vector<std::pair<std::string, long>>& members,
            std::unique_ptr<ArrayBase> integers, Variable variable, const std::string& name,
            std::vector<Axis> axes, const std::string& description)
      : FileArray(object_model::ElementType::String, std::move(variable), name, std::move(axes),
                  description),
        m_integers(std::move(integers)) {
    for (const auto& [member, value] : members) {
      m_names.emplace(value, member);
    }
  }

  std::string getValueAsString(const Tuple& index) const override {
    const bool isSigned = m_integers->getElementType() == object_model::ElementType::Int;
    const long value = isSigned ? m_integers->getValueAsInt(index)
                                : static_cast<long>(m_integers->getValueAsUInt(index));
    const auto named = m_names.find(value);
    if (named != m_names.end()) {
      return named->second;
    }
    return isSigned ? std::to_string(value) : std::to_string(static_cast<unsigned long>(value));
  }

 private:
  std::map<long, std::string> m_names;  // of unsigned values by their bits
  std::unique_ptr<ArrayBase> m_integers;
};

}  // namespace

std::unique_ptr<ArrayBase> makeFlagArray(Variable variable, const std::string& name,
                                         std::vector<Axis> axes, const std::string& description) {
  return std::make_unique<FlagArray>(std::move(variable), name, std::move(axes), description);
}

std::unique_ptr<ArrayBase> makeNameArray(const std::vector<std::pair<std::string, long>>& members,
                                         const Encoding& encoding, Variable variable,
                                         const std::string& name, std::vector<Axis> axes,
                                         const std::string& description) {
  std::unique_ptr<ArrayBase> integers =
      makeNumericArray(encoding, variable, name, axes, description);
  return std::make_unique<NameArray>(members, std::move(integers), std::move(variable), name,
                                     std::move(axes), description);
}

}  // namespace quillon::netcdf
