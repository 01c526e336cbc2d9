#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/testing/Blocks.h>

#include <limits>
#include <sstream>

namespace quillon::testing {
namespace {

using memory::DoubleArray;
using ::testing::ElementsAre;
using Extents = std::vector<unsigned long>;

/// "FIRST COUNT at START of EXTENT".
std::string inWords(const memory::Block& block) {
  std::ostringstream text;
  text << block.first << ' ' << block.count << " at";
  for (const unsigned long index : block.start) {
    text << ' ' << index;
  }
  text << " of";
  for (const unsigned long extent : block.extent) {
    text << ' ' << extent;
  }
  return text.str();
}

std::vector<std::string> inWords(const std::vector<memory::Block>& blocks) {
  std::vector<std::string> words;
  for (const memory::Block& block : blocks) {
    words.push_back(inWords(block));
  }
  return words;
}

TEST(BlocksTest, ExtentsAreThoseOfTheShape) {
  EXPECT_EQ(extentsOf(object_model::TupleX{3, 0, 2}), (Extents{3, 0, 2}));
  EXPECT_EQ(extentsOf(object_model::TupleX(0)), Extents());
}

TEST(BlocksTest, PositionsStandInStorageOrder) {
  EXPECT_THAT(positionsIn({2, 3}), ElementsAre(Extents{0, 0}, Extents{1, 0}, Extents{0, 1},
                                               Extents{1, 1}, Extents{0, 2}, Extents{1, 2}));
  EXPECT_THAT(positionsIn({1, 2}, {5, 7}), ElementsAre(Extents{5, 7}, Extents{5, 8}));
  EXPECT_THAT(positionsIn({}), ElementsAre(Extents{}));
  EXPECT_THAT(positionsIn({2, 0}), ElementsAre());
}

TEST(BlocksTest, ABlockKnowsWhereItBeginsAndHowManyValuesItHas) {
  EXPECT_EQ(inWords(blockOf({4, 3, 2}, {1, 2, 1}, {2, 1, 1})), "21 2 at 1 2 1 of 2 1 1");
  EXPECT_EQ(inWords(blockOf({}, {}, {})), "0 1 at of");
}

TEST(BlocksTest, AreTheWholeTheHalvesThePositionsAndTheInnerPart) {
  EXPECT_THAT(inWords(blocksIn({3, 2})),
              ElementsAre("0 6 at 0 0 of 3 2", "0 2 at 0 0 of 1 2", "1 4 at 1 0 of 2 2",
                          "0 3 at 0 0 of 3 1", "3 3 at 0 1 of 3 1", "0 1 at 0 0 of 1 1",
                          "1 1 at 1 0 of 1 1", "2 1 at 2 0 of 1 1", "3 1 at 0 1 of 1 1",
                          "4 1 at 1 1 of 1 1", "5 1 at 2 1 of 1 1", "1 2 at 1 0 of 1 2"));
  EXPECT_EQ(inWords(blocksIn({2, 4}).back()), "2 4 at 0 1 of 2 2");
  EXPECT_THAT(inWords(blocksIn({})), ElementsAre("0 1 at of", "0 1 at of", "0 1 at of"));
}

TEST(BlocksTest, MissingValuesAreTheSameAndEqualToNothingElse) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(isSame(nan, nan));
  EXPECT_TRUE(isSame(1.0, 1.0));
  EXPECT_FALSE(isSame(nan, 1.0));
  EXPECT_FALSE(isSame(1.0, nan));
  EXPECT_FALSE(isSame(1.0, 2.0));
}

TEST(BlocksTest, AStoredValueIsWidenedToWhatTheAccessorGives) {
  const memory::TypedArray<float> array("a", {{"x", 2}}, {0.5, 2});
  EXPECT_EQ(readAt<double>(array, {1}), 2.0);
  EXPECT_TRUE(isValueAt(array, {0}, 0.5F));
  EXPECT_FALSE(isValueAt(array, {1}, 0.5F));
}

/// The integers 10, 11, ... of which bulk values and values in place may be others.
class Tens final : public memory::ArrayBase, public object_model::BulkValues {
 public:
  explicit Tens(unsigned long count)
      : ArrayBase("tens", object_model::ElementType::Int, {{"x", count}}) {}
  long getValueAsInt(const object_model::Tuple& index) const override {
    return static_cast<long>(10 + offsetOf(index));
  }
  object_model::StoredType storedType() const override { return object_model::StoredType::Int64; }
  void readValues(const unsigned long* start, const unsigned long* extent,
                  void* destination) const override {
    auto* const to = static_cast<long*>(destination);
    for (unsigned long k = 0; k < extent[0]; ++k) {
      to[k] = static_cast<long>(10 + start[0] + k) + (start[0] + k == wrongAt ? 1 : 0);
    }
    if (isTooLong) {
      to[extent[0]] = -1;
    }
  }
  object_model::ValuesInPlace valuesInPlace() const override {
    return {inPlace.empty() ? nullptr : inPlace.data(), &m_stride};
  }

  unsigned long wrongAt = std::numeric_limits<unsigned long>::max();
  bool isTooLong = false;
  std::vector<long> inPlace;

 private:
  long m_stride = sizeof(long);
};

std::string messageFor(const Tens& tens) {
  const ::testing::AssertionResult result =
      areBulkValuesTrue<long>(tens, tens, blockOf({4}, {1}, {3}));
  return result ? "true" : result.message();
}

TEST(BlocksTest, BulkValuesAreTrueWhereTheyAreThoseOfTheAccessor) {
  Tens tens(4);
  EXPECT_EQ(messageFor(tens), "true");
  tens.inPlace = {10, 11, 12, 13};
  EXPECT_EQ(messageFor(tens), "true");
}

TEST(BlocksTest, FaultsOfBulkValuesAreNamed) {
  Tens wrong(4);
  wrong.wrongAt = 1;
  EXPECT_EQ(messageFor(wrong), "readValues() gives another value at { 1 }");
  wrong.wrongAt = 3;
  EXPECT_EQ(messageFor(wrong), "readValues() gives another value at { 3 }");
  wrong.wrongAt = 0;
  EXPECT_EQ(messageFor(wrong), "true");
  Tens tooLong(4);
  tooLong.isTooLong = true;
  EXPECT_EQ(messageFor(tooLong), "readValues() writes past the end of the block");
  Tens elsewhere(4);
  elsewhere.inPlace = {10, 11, 0, 13};
  EXPECT_EQ(messageFor(elsewhere), "valuesInPlace() leads to another value at { 2 }");
}

TEST(BlocksTest, AttributesThatOccurTwiceAreNamed) {
  static DoubleArray array("a", {}, {1});
  array.setAttribute("k", "v");
  expectUniqueAttributes(array);

  class Twice final : public memory::ArrayBase {
   public:
    Twice() : ArrayBase("twice", object_model::ElementType::Int, {}) {}
    std::vector<memory::Attribute> attributes() const override { return {{"k", "v"}, {"k", "w"}}; }
  };
  static const Twice twice;
  EXPECT_NONFATAL_FAILURE(expectUniqueAttributes(twice), "k occurs twice");
}

}  // namespace
}  // namespace quillon::testing
