// Runs the suites over classes with known faults and fails unless just the tests that are about
// these faults fail.
#include <quillon/memory/TypedArray.h>
#include <quillon/testing.h>
#include <tabra/MemoryDataFrame.h>

#include <iostream>
#include <set>
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

const std::set<std::string> EXPECTED = {"AccessorGivesTheExpectedValues",
                                        "OtherAccessorsRefuse",
                                        "BulkValuesAreWhatTheAccessorGives",
                                        "ParentIsWhatItIsTold",
                                        "EntriesStandInTheExpectedOrder",
                                        "MissingNamesThrow",
                                        "EntriesKnowTheirParent",
                                        "ARunOfRemovalsCountsColumnsAsTheyWere",
                                        "RemovingAllColumnsInTheirOrderEmptiesTheTable"};

std::set<std::string> failedTests() {
  std::set<std::string> failed;
  const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const ::testing::TestSuite& suite = *all.GetTestSuite(i);
    for (int k = 0; k < suite.total_test_count(); ++k) {
      const ::testing::TestInfo& test = *suite.GetTestInfo(k);
      if (test.result()->Failed()) {
        failed.insert(test.name());
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
