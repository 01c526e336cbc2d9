#include <object_model/ComparisonHelper.h>
#include <quillon/memory/TypedArray.h>

#include <cstring>

#include "Case.h"
#include "Opaque.h"

namespace benchmarks {
namespace {

using object_model::helper::areSameArrays;
using object_model::helper::ComparisonType;
using quillon::memory::DoubleArray;

std::vector<double> valuesUpTo(unsigned long size) {
  std::vector<double> values(size);
  for (unsigned long k = 0; k < size; ++k) {
    values[k] = static_cast<double>(k) + 0.5;
  }
  return values;
}

DoubleArray arrayOf(const std::vector<double>& values) {
  return {"array", {{"axis", values.size()}}, values};
}

/// Two equal arrays whose values lie in memory. The floor looks at the same bytes.
class BulkComparison final : public Operation {
 public:
  BulkComparison(unsigned long size, ComparisonType type)
      : m_values(valuesUpTo(size)),
        m_others(m_values),
        m_first(arrayOf(m_values)),
        m_second(arrayOf(m_values)),
        m_type(type) {}

  void runLibrary() override {
    m_byLibrary = areSameArrays(m_first, m_second, m_type, 1e-5, nullptr);
  }

  void runFloor() override {
    m_byHand = std::memcmp(opaque(m_values).data(), opaque(m_others).data(),
                           m_values.size() * sizeof(double)) == 0;
  }

  void check() override {
    runLibrary();
    runFloor();
    require(m_byHand, "memcmp of equal values");
    require(m_byLibrary, "areSameArrays() of equal values");
  }

 private:
  std::vector<double> m_values;
  std::vector<double> m_others;
  DoubleArray m_first;
  DoubleArray m_second;
  ComparisonType m_type;
  bool m_byLibrary = false;
  bool m_byHand = false;
};

void add(Cases& cases, const std::string& rule, ComparisonType type, double goal) {
  cases.push_back(
      {"areSameArrays/in-bulk/Double/" + rule + "/equal", "tall", 10'000'000, goal,
       [type](unsigned long size) { return std::make_unique<BulkComparison>(size, type); }});
}

}  // namespace

void addBulkComparisonCases(Cases& cases) {
  add(cases, "Exact", ComparisonType::Exact, 2.5);
  add(cases, "Absolute", ComparisonType::Absolute, 3);
  add(cases, "Relative", ComparisonType::Relative, 4);
}

}  // namespace benchmarks
