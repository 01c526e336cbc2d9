// Runs the suites over classes with known faults and fails unless just the tests that are about
// these faults fail.
#include <quillon/memory/TypedArray.h>
#include <quillon/testing.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <iostream>
#include <limits>
#include <memory>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string>

namespace quillon::testing {
namespace {

using memory::Axis;

/// Its bulk values are transposed, it reads integers as numbers, too, and stands where it likes.
struct FaultyArray {
  class Faulty final : public memory::ArrayBase, public object_model::BulkValues {
   public:
    Faulty() : ArrayBase("faulty", object_model::ElementType::Int, {{"x", 2}, {"y", 2}}) {}
    long getValueAsInt(const object_model::Tuple& index) const override {
      return static_cast<long>(offsetOf(index));
    }
    double getValueAsDouble(const object_model::Tuple& index) const override {
      return static_cast<double>(offsetOf(index));
    }
    object_model::StoredType storedType() const override { return object_model::StoredType::Int64; }
    void readValues(const unsigned long* start, const unsigned long* extent,
                    void* destination) const override {
      auto* to = static_cast<long*>(destination);
      for (unsigned long x = start[0]; x < start[0] + extent[0]; ++x) {
        for (unsigned long y = start[1]; y < start[1] + extent[1]; ++y) {
          *to++ = static_cast<long>(x + 2 * y);
        }
      }
    }
    void setParent(object_model::Data* /*parent*/) override {}
  };
  static std::unique_ptr<object_model::Array> make() { return std::make_unique<Faulty>(); }
  static std::vector<long> values() { return {0, 1, 2, 4}; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Faulty, ArraySuite, FaultyArray, );

/// It writes past the end of blocks, and what it says besides its values fits neither them nor
/// itself.
struct OddArray {
  class Odd final : public memory::ArrayBase,
                    public object_model::BulkValues,
                    public memory::HasTimes {
   public:
    Odd() : ArrayBase("odd", object_model::ElementType::Int, {{"x", 2}}) {}
    long getValueAsInt(const object_model::Tuple& index) const override {
      return static_cast<long>(offsetOf(index));
    }
    object_model::StoredType storedType() const override { return object_model::StoredType::Int64; }
    void readValues(const unsigned long* start, const unsigned long* extent,
                    void* destination) const override {
      auto* to = static_cast<long*>(destination);
      for (unsigned long x = start[0]; x < start[0] + extent[0]; ++x) {
        *to++ = static_cast<long>(x);
      }
      *to = -1;
    }
    const unsigned long* chunkExtents() const override { return &m_chunk; }
    std::vector<memory::Attribute> attributes() const override { return {{"k", "v"}, {"k", "w"}}; }
    std::shared_ptr<const object_model::Array> coordinates(
        unsigned long /*dimension*/) const override {
      return std::make_shared<memory::IntArray>("x", std::vector<Axis>{{"x", 1}},
                                                std::vector<long>{0});
    }
    memory::Calendar calendar() const override { return memory::Calendar::Standard; }
    void readTimes(const unsigned long* /*start*/, const unsigned long* extent,
                   long* destination) const override {
      std::fill_n(destination, extent[0], static_cast<long>(extent[0]));
    }

   private:
    unsigned long m_chunk = 0;
  };
  static std::unique_ptr<object_model::Array> make() { return std::make_unique<Odd>(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Odd, ArraySuite, OddArray, );

/// Its values lie elsewhere.
struct LyingArray {
  class Lying final : public memory::ArrayBase, public object_model::BulkValues {
   public:
    Lying() : ArrayBase("lying", object_model::ElementType::Int, {{"x", 2}}) {}
    long getValueAsInt(const object_model::Tuple& index) const override {
      return static_cast<long>(offsetOf(index));
    }
    object_model::StoredType storedType() const override { return object_model::StoredType::Int64; }
    object_model::ValuesInPlace valuesInPlace() const override { return {m_values, &m_stride}; }
    void readValues(const unsigned long* start, const unsigned long* extent,
                    void* destination) const override {
      auto* const to = static_cast<long*>(destination);
      std::iota(to, to + extent[0], static_cast<long>(start[0]));
    }

   private:
    long m_stride = sizeof(long);
    long m_values[2] = {7, 8};
  };
  static std::unique_ptr<object_model::Array> make() { return std::make_unique<Lying>(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Lying, ArraySuite, LyingArray, );

/// Its values are NaN for the accessor alone, or in bulk alone.
template <bool IS_BULK>
struct HalfNanArray {
  class HalfNan final : public memory::ArrayBase, public object_model::BulkValues {
   public:
    HalfNan() : ArrayBase("half", object_model::ElementType::Double, {{"x", 2}}) {}
    double getValueAsDouble(const object_model::Tuple& /*index*/) const override {
      return IS_BULK ? 0 : NOT_A_NUMBER;
    }
    object_model::StoredType storedType() const override {
      return object_model::StoredType::Float64;
    }
    void readValues(const unsigned long* /*start*/, const unsigned long* extent,
                    void* destination) const override {
      std::fill_n(static_cast<double*>(destination), extent[0], IS_BULK ? NOT_A_NUMBER : 0);
    }

   private:
    static constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
  };
  static std::unique_ptr<object_model::Array> make() { return std::make_unique<HalfNan>(); }
};
using HalfNanArrays = ::testing::Types<HalfNanArray<false>, HalfNanArray<true>>;
INSTANTIATE_TYPED_TEST_SUITE_P(HalfNan, ArraySuite, HalfNanArrays, );

/// It has one name twice, under which it finds an entry of another name.
struct TwinDictionary {
  class Twin final : public memory::DictionaryBase {
   public:
    Twin() : DictionaryBase("twin") { m_entry.setParent(this); }
    unsigned long getNumOfData() const override { return 2; }
    std::string getDataName(int /*index*/) const override { return "a"; }
    using object_model::Dictionary::data;
    object_model::Data* data(const std::string& name) override { return find(name); }
    const object_model::Data* data(const std::string& name) const override { return find(name); }
    std::vector<memory::Attribute> attributes() const override { return {{"k", "v"}, {"k", "w"}}; }

   private:
    object_model::Data* find(const std::string& name) const {
      return name == "a" ? &m_entry : throw std::out_of_range(name);
    }

    mutable memory::DoubleArray m_entry{"b", {}, {1}};
  };
  static std::unique_ptr<object_model::Dictionary> make() { return std::make_unique<Twin>(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Twin, DictionarySuite, TwinDictionary, );

/// It finds its one entry under every name and is not its parent.
struct FaultyDictionary {
  class Faulty final : public memory::DictionaryBase {
   public:
    Faulty() : DictionaryBase("faulty") {}
    unsigned long getNumOfData() const override { return 1; }
    std::string getDataName(int /*index*/) const override { return m_entry.getName(); }
    using object_model::Dictionary::data;
    object_model::Data* data(const std::string& /*name*/) override { return &m_entry; }
    const object_model::Data* data(const std::string& /*name*/) const override { return &m_entry; }

   private:
    memory::DoubleArray m_entry{"entry", {}, {1}};
  };
  static std::unique_ptr<object_model::Dictionary> make() { return std::make_unique<Faulty>(); }
  static std::vector<std::string> names() { return {"another entry"}; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Faulty, DictionarySuite, FaultyDictionary, );

/// It counts columns anew after each removal.
struct FaultyFrame {
  class Faulty final : public tabra::MemoryDataFrame {
   public:
    void removeColumn(unsigned long column) override {
      MemoryDataFrame::removeColumn(column);
      MemoryDataFrame::removeRows(0, 0);
    }
  };
  static std::unique_ptr<tabra::DataFrameView> make() { return std::make_unique<Faulty>(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Faulty, DataFrameSuite, FaultyFrame, );

const std::set<std::string> EXPECTED = {
    "Faulty/ArraySuite/0.AccessorGivesTheExpectedValues",
    "Faulty/ArraySuite/0.OtherAccessorsRefuse",
    "Faulty/ArraySuite/0.BulkValuesAreWhatTheAccessorGives",
    "Faulty/ArraySuite/0.ParentIsWhatItIsTold",
    "Odd/ArraySuite/0.BulkValuesAreWhatTheAccessorGives",
    "Odd/ArraySuite/0.ChunksHaveAnExtentInEachDimension",
    "Odd/ArraySuite/0.CoordinatesFitTheirAxes",
    "Odd/ArraySuite/0.TimesAreTheSameInEachBlock",
    "Odd/ArraySuite/0.AttributesHaveNamesOfTheirOwn",
    "Lying/ArraySuite/0.BulkValuesAreWhatTheAccessorGives",
    "HalfNan/ArraySuite/0.BulkValuesAreWhatTheAccessorGives",
    "HalfNan/ArraySuite/1.BulkValuesAreWhatTheAccessorGives",
    "Twin/DictionarySuite/0.NamesAreUnique",
    "Twin/DictionarySuite/0.EachEntryIsFoundUnderItsName",
    "Twin/DictionarySuite/0.AttributesHaveNamesOfTheirOwn",
    "Faulty/DictionarySuite/0.EntriesStandInTheExpectedOrder",
    "Faulty/DictionarySuite/0.MissingNamesThrow",
    "Faulty/DictionarySuite/0.EntriesKnowTheirParent",
    "Faulty/DataFrameSuite/0.ARunOfRemovalsCountsColumnsAsTheyWere",
    "Faulty/DataFrameSuite/0.RemovingAllColumnsInTheirOrderEmptiesTheTable"};

std::set<std::string> failedTests() {
  std::set<std::string> failed;
  const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const ::testing::TestSuite& suite = *all.GetTestSuite(i);
    for (int k = 0; k < suite.total_test_count(); ++k) {
      const ::testing::TestInfo& test = *suite.GetTestInfo(k);
      if (test.result()->Failed()) {
        failed.insert(std::string(suite.name()) + "." + test.name());
      }
    }
  }
  return failed;
}

}  // namespace
}  // namespace quillon::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const bool hasFailed = RUN_ALL_TESTS() != 0;
  const std::set<std::string> failed = quillon::testing::failedTests();
  std::cout << "Failed: " << ::testing::PrintToString(failed) << "\n";
  return hasFailed && failed == quillon::testing::EXPECTED ? 0 : 1;
}
