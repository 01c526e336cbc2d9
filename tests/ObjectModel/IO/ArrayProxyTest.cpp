#include <gmock/gmock.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <stdexcept>

#include "IO/ArrayProxy.h"
#include "support/Liars.h"

namespace object_model {
namespace {

using quillon::memory::Axis;
using quillon::memory::DoubleArray;
using quillon::memory::IntArray;

constexpr unsigned long NONE = ~0UL;

/// A proxy over `wrapped` whose own extents are `extents`.
ArrayProxy proxyOver(Array& wrapped, std::vector<unsigned long> axisMap,
                     std::vector<unsigned long> extents = {}) {
  extents.resize(axisMap.size(), 9);
  return {extents.data(), extents.size(), axisMap, &wrapped};
}

TEST(ArrayProxy, IgnoresADimensionThatStandsForNoAxis) {
  IntArray wrapped("a", {{"x", 3}}, {7, 8, 9});
  const ArrayProxy proxy = proxyOver(wrapped, {NONE, 0});
  EXPECT_EQ(proxy.getValueAsInt(TupleX({0, 1})), 8);
  EXPECT_EQ(proxy.getValueAsInt(TupleX({5, 1})), 8);
  EXPECT_EQ(proxy.getValueAsInt(TupleX({2, 1})), 8);
}

TEST(ArrayProxy, SwapsDimensions) {
  DoubleArray wrapped("a", {{"x", 2}, {"y", 3}}, {0, 1, 10, 11, 20, 21});
  EXPECT_EQ(proxyOver(wrapped, {1, 0}).getValueAsDouble(TupleX({2, 1})), 21);
}

TEST(ArrayProxy, ReadsAnAxisThatNoDimensionStandsForAt0) {
  DoubleArray wrapped("a", {{"x", 2}, {"y", 3}}, {0, 1, 10, 11, 20, 21});
  EXPECT_EQ(proxyOver(wrapped, {0}).getValueAsDouble(TupleX({1})), 1);
  EXPECT_EQ(proxyOver(wrapped, {}).getValueAsDouble(TupleX(0UL)), 0);
}

TEST(ArrayProxy, LetsTheLaterOfTwoDimensionsForOneAxisCount) {
  IntArray wrapped("a", {{"x", 3}}, {7, 8, 9});
  EXPECT_EQ(proxyOver(wrapped, {0, 0}).getValueAsInt(TupleX({1, 2})), 9);
}

TEST(ArrayProxy, ReachesArraysOfManyDimensions) {
  std::vector<Axis> axes;
  for (int k = 0; k < 7; ++k) {
    axes.emplace_back("d" + std::to_string(k), 2);
  }
  std::vector<long> values(128);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<long>(i);
  }
  IntArray wrapped("a", axes, values);
  EXPECT_EQ(proxyOver(wrapped, {6, 0}).getValueAsInt(TupleX({1, 1})), 65);
}

TEST(ArrayProxy, SurvivesAnAxisMapBeyondTheWrappedArray) {
  IntArray wrapped("a", {{"x", 3}}, {7, 8, 9});
  EXPECT_EQ(proxyOver(wrapped, {0, 5}).getValueAsInt(TupleX({2, 1})), 9);
  IntArray four("b", {{"x", 2}, {"y", 1}, {"z", 1}, {"t", 1}}, {7, 8});
  EXPECT_EQ(proxyOver(four, {0, 4}).getValueAsInt(TupleX({1, 1})), 8);
}

TEST(ArrayProxyReader, SurvivesAnAxisMapBeyondTheWrappedArray) {
  IntArray wrapped("a", {{"x", 2}, {"y", 1}, {"z", 1}, {"t", 1}}, {7, 8});
  const ArrayProxy proxy = proxyOver(wrapped, {0, 4});
  ArrayProxy::Reader<2> reader(proxy);
  EXPECT_EQ(reader.read(&Array::getValueAsInt, {1, 1}), 8);
  EXPECT_EQ(reader.read(&Array::getValueAsInt, {0, 5}), 7);
}

TEST(ArrayProxy, ReportsItsOwnExtents) {
  IntArray wrapped("a", {{"x", 3}}, {7, 8, 9});
  const ArrayProxy proxy = proxyOver(wrapped, {NONE, 0}, {4, 5});
  ASSERT_EQ(proxy.size().size(), 2U);
  EXPECT_EQ(proxy.size()[0], 4U);
  EXPECT_EQ(proxy.size()[1], 5U);
}

TEST(ArrayProxy, PassesOnTheUnitsAndTheParent) {
  quillon::memory::Dictionary parent("parent");
  IntArray array("a", {{"x", 1}}, {7});
  array.setUnit("um");
  array.setPhysicalUnit("m");
  IntArray& wrapped = parent.add(std::move(array));
  ArrayProxy proxy = proxyOver(wrapped, {0});
  EXPECT_EQ(proxy.getUnit(), "um");
  EXPECT_EQ(proxy.getPhysicalUnit(), "m");
  EXPECT_EQ(proxy.parent(), &parent);
  EXPECT_EQ(std::as_const(proxy).parent(), &parent);
}

/// An array whose parent is another one for those who may change it.
class HalfAdopted : public test::ClaimingArray {
 public:
  HalfAdopted(const Data& seen, Data& changed)
      : ClaimingArray("a", {{"x", 1}}), m_seen(seen), m_changed(changed) {}
  const Data* parent() const override { return &m_seen; }
  Data* parent() override { return &m_changed; }

 private:
  const Data& m_seen;
  Data& m_changed;
};

TEST(ArrayProxy, AsksForTheParentAsItIsAskedItself) {
  quillon::memory::Dictionary seen("seen");
  quillon::memory::Dictionary changed("changed");
  HalfAdopted wrapped(seen, changed);
  ArrayProxy proxy = proxyOver(wrapped, {0});
  EXPECT_EQ(std::as_const(proxy).parent(), &seen);
  EXPECT_EQ(proxy.parent(), &changed);
}

/// An array that writes to the position that it is asked for, and says where it was asked.
class Scribbler : public test::ClaimingArray {
 public:
  Scribbler() : ClaimingArray("a", {{"x", 3}, {"y", 3}}) {}
  long getValueAsInt(const Tuple& index) const override {
    const long at = static_cast<long>(10 * index[0] + index[1]);
    // The proxy's position is no const object, so this is defined, if rude.
    auto& position = const_cast<Tuple&>(index);
    position[0] = 2;
    position[1] = 2;
    return at;
  }
};

TEST(ArrayProxyReader, StartsEachPositionAnew) {
  Scribbler wrapped;
  const ArrayProxy proxy = proxyOver(wrapped, {0});
  ArrayProxy::Reader<1> reader(proxy);
  EXPECT_EQ(reader.read(&Array::getValueAsInt, {1}), 10);
  EXPECT_EQ(reader.read(&Array::getValueAsInt, {0}), 0);
}

TEST(ArrayProxy, PassesOnEveryAccessor) {
  const TupleX at({1});
  quillon::memory::UIntArray uints("u", {{"x", 2}}, {1, ~0UL});
  EXPECT_EQ(proxyOver(uints, {0}).getValueAsUInt(at), ~0UL);
  quillon::memory::ComplexArray complexes("c", {{"x", 2}}, {{1, 2}, {3, 4}});
  EXPECT_EQ(proxyOver(complexes, {0}).getValueAsComplex(at), std::complex<double>(3, 4));
  quillon::memory::StringArray strings("s", {{"x", 2}}, {"one", "two"});
  EXPECT_EQ(proxyOver(strings, {0}).getValueAsString(at), "two");
  quillon::memory::BooleanArray booleans("b", {{"x", 2}}, {false, true});
  EXPECT_TRUE(proxyOver(booleans, {0}).getValueAsBoolean(at));
  std::vector<quillon::memory::Dictionary> entries;
  entries.emplace_back("first");
  entries.emplace_back("second");
  quillon::memory::DictionaryArray dictionaries("d", {{"x", 2}}, std::move(entries));
  EXPECT_EQ(proxyOver(dictionaries, {0}).getValueAsDictionary(at)->getName(), "second");
}

TEST(ArrayProxy, LetsErrorsOfTheWrappedArrayThrough) {
  IntArray wrapped("a", {{"x", 3}}, {7, 8, 9});
  const ArrayProxy proxy = proxyOver(wrapped, {0});
  EXPECT_THROW(proxy.getValueAsInt(TupleX({3})), std::out_of_range);
  EXPECT_THROW(proxy.getValueAsDouble(TupleX({0})), InvalidCall);
}

TEST(ArrayProxy, HasNoDescriptorAndCannotBeMovedOrWritten) {
  IntArray wrapped("a", {{"x", 1}}, {7});
  ArrayProxy proxy = proxyOver(wrapped, {0});
  const auto textOf = [](const auto& call) -> std::string {
    try {
      call();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "no error";
  };
  EXPECT_EQ(textOf([&] { proxy.getInformation(); }), "Not Implemented");
  EXPECT_EQ(textOf([&] { proxy.getElementType(); }), "Not Implemented");
  EXPECT_EQ(textOf([&] { proxy.setParent(nullptr); }), "Not Implemented");
  EXPECT_EQ(textOf([&] { proxy.getWritingInterface(); }), "Not Implemented");
  EXPECT_EQ(textOf([&] { std::as_const(proxy).getWritingInterface(); }), "Not Implemented");
}

TEST(ArrayProxy, IsAnArrayOfVersion0) {
  IntArray wrapped("a", {{"x", 1}}, {7});
  ArrayProxy proxy = proxyOver(wrapped, {0});
  EXPECT_TRUE(proxy.isArray());
  EXPECT_FALSE(proxy.isDictionary());
  EXPECT_EQ(proxy.asArray(), &proxy);
  EXPECT_EQ(proxy.asDictionary(), nullptr);
  EXPECT_EQ(proxy.version(), 0);
}

}  // namespace
}  // namespace object_model
