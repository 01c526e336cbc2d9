#include <gtest/gtest.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/TypedArray.h>

#include <array>
#include <complex>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::Array;
using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;
using test::thrownBy;

/// Three distinguishable values of each element type, its enumerator and its accessor.
template <class T>
struct Samples;

template <>
struct Samples<unsigned long> {
  static constexpr ElementType TYPE = ElementType::UInt;
  static std::vector<unsigned long> values() {
    return {0, 7, std::numeric_limits<unsigned long>::max()};
  }
  static unsigned long read(const Array& a, const Tuple& i) { return a.getValueAsUInt(i); }
};
template <>
struct Samples<long> {
  static constexpr ElementType TYPE = ElementType::Int;
  static std::vector<long> values() { return {0, -7, std::numeric_limits<long>::min()}; }
  static long read(const Array& a, const Tuple& i) { return a.getValueAsInt(i); }
};
template <>
struct Samples<double> {
  static constexpr ElementType TYPE = ElementType::Double;
  static std::vector<double> values() {
    return {0.5, -1e300, std::numeric_limits<double>::infinity()};
  }
  static double read(const Array& a, const Tuple& i) { return a.getValueAsDouble(i); }
};
template <>
struct Samples<std::complex<double>> {
  static constexpr ElementType TYPE = ElementType::Complex;
  static std::vector<std::complex<double>> values() { return {{1, 2}, {-1, 0}, {0, 5}}; }
  static std::complex<double> read(const Array& a, const Tuple& i) {
    return a.getValueAsComplex(i);
  }
};
template <>
struct Samples<std::string> {
  static constexpr ElementType TYPE = ElementType::String;
  static std::vector<std::string> values() { return {"", "short", std::string(100, 'x')}; }
  static std::string read(const Array& a, const Tuple& i) { return a.getValueAsString(i); }
};
template <>
struct Samples<bool> {
  static constexpr ElementType TYPE = ElementType::Boolean;
  static std::vector<bool> values() { return {true, false, true}; }
  static bool read(const Array& a, const Tuple& i) { return a.getValueAsBoolean(i); }
};

template <class T>
class ElementArrayTest : public ::testing::Test {};

struct TypeNames {
  template <class T>
  static std::string GetName(int) {
    static const char* const NAMES[] = {"UInt", "Int", "Double", "Complex", "String", "Boolean"};
    return NAMES[static_cast<std::size_t>(Samples<T>::TYPE)];
  }
};

using ValueTypes =
    ::testing::Types<unsigned long, long, double, std::complex<double>, std::string, bool>;
TYPED_TEST_SUITE(ElementArrayTest, ValueTypes, TypeNames);

template <class T>
void expectSamples(const TypedArray<T>& array) {
  EXPECT_EQ(array.getElementType(), Samples<T>::TYPE);
  for (unsigned long k = 0; k < 3; ++k) {
    const T expected = Samples<T>::values()[k];
    EXPECT_EQ(Samples<T>::read(array, TupleX({k})), expected);
    EXPECT_EQ(array.value(TupleX({k})), expected);
  }
}

TYPED_TEST(ElementArrayTest, OwnsItsValues) {
  const TypedArray<TypeParam> array("a", {{"x", 3}}, Samples<TypeParam>::values());
  expectSamples(array);
}

TYPED_TEST(ElementArrayTest, ViewsABufferWithoutCopying) {
  const auto samples = Samples<TypeParam>::values();
  std::array<TypeParam, 3> buffer = {samples[0], samples[1], samples[2]};
  const auto array = TypedArray<TypeParam>::view("a", {{"x", 3}}, buffer.data(), buffer.size());
  expectSamples(array);
  EXPECT_EQ(&array.value(TupleX({1})), &buffer[1]);
  buffer[1] = samples[2];
  EXPECT_EQ(array.value(TupleX({1})), samples[2]);
}

TYPED_TEST(ElementArrayTest, OwnedValuesAreReplaced) {
  const auto samples = Samples<TypeParam>::values();
  TypedArray<TypeParam> array("a", {{"x", 3}}, {samples[0], samples[0], samples[0]});
  array.setValue(TupleX({2}), samples[1]);
  EXPECT_EQ(array.value(TupleX({0})), samples[0]);
  EXPECT_EQ(array.value(TupleX({1})), samples[0]);
  EXPECT_EQ(array.value(TupleX({2})), samples[1]);
}

TYPED_TEST(ElementArrayTest, ViewedValuesAreNotWritten) {
  const auto samples = Samples<TypeParam>::values();
  const std::array<TypeParam, 1> buffer = {samples[0]};
  auto array = TypedArray<TypeParam>::view("a", {{"x", 1}}, buffer.data(), 1);
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.setValue(TupleX({0}), samples[1]); }),
            "Array 'a' views values that it does not own; change them where they are");
  EXPECT_EQ(buffer[0], samples[0]);
}

TYPED_TEST(ElementArrayTest, MovingTakesOverOwnedAndViewedValues) {
  TypedArray<TypeParam> owning("a", {{"x", 3}}, Samples<TypeParam>::values());
  owning.setUnit("m");
  owning.setPhysicalUnit("km");
  const TypedArray<TypeParam> moved(std::move(owning));
  expectSamples(moved);
  EXPECT_EQ(moved.getUnit(), "m");
  EXPECT_EQ(moved.getPhysicalUnit(), "km");
  const auto samples = Samples<TypeParam>::values();
  const std::array<TypeParam, 3> buffer = {samples[0], samples[1], samples[2]};
  auto view = TypedArray<TypeParam>::view("a", {{"x", 3}}, buffer.data(), 3);
  const TypedArray<TypeParam> movedView(std::move(view));
  expectSamples(movedView);
  EXPECT_EQ(&movedView.value(TupleX({0})), buffer.data());
}

TYPED_TEST(ElementArrayTest, AnswersOnlyAsItsOwnType) {
  const TypedArray<TypeParam> array("a", {{"x", 3}}, Samples<TypeParam>::values());
  const TupleX position({0});
  const bool answers[] = {
      thrownBy<InvalidCall>([&] { array.getValueAsUInt(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsInt(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsDouble(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsComplex(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsString(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsBoolean(position); }) == "(nothing thrown)",
      thrownBy<InvalidCall>([&] { array.getValueAsDictionary(position); }) == "(nothing thrown)"};
  for (std::size_t k = 0; k < 7; ++k) {
    EXPECT_EQ(answers[k], k == static_cast<std::size_t>(Samples<TypeParam>::TYPE)) << k;
  }
}

TYPED_TEST(ElementArrayTest, AnotherNumberOfValuesIsRefused) {
  const auto samples = Samples<TypeParam>::values();
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              const TypedArray<TypeParam> array("a", {{"x", 2}, {"y", 2}}, samples);
            }),
            "Array 'a' of shape (2;2) needs 4 values and was given 3");
  const std::array<TypeParam, 3> buffer = {};
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              TypedArray<TypeParam>::view("a", {{"x", 2}}, buffer.data(), buffer.size());
            }),
            "Array 'a' of shape (2) needs 2 values and was given 3");
}

TYPED_TEST(ElementArrayTest, ANullBufferIsViewedForNoValuesOnly) {
  EXPECT_EQ(thrownBy<std::invalid_argument>([&] {
              TypedArray<TypeParam>::view("a", {{"x", 2}}, nullptr, 2);
            }),
            "Array 'a' was given no values to view");
  EXPECT_EQ(
      thrownBy<std::invalid_argument>([] { TypedArray<TypeParam>::view("one", {}, nullptr, 1); }),
      "Array 'one' was given no values to view");
  EXPECT_EQ(TypedArray<TypeParam>::view("a", {{"x", 0}}, nullptr, 0).numberOfElements(), 0U);
}

TYPED_TEST(ElementArrayTest, APositionOutsideIsRefusedForReadingAndWriting) {
  const auto samples = Samples<TypeParam>::values();
  TypedArray<TypeParam> array("a", {{"x", 3}}, samples);
  const char* const message = "Array 'a': position (3) is outside the shape (3)";
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(TupleX({3})); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { Samples<TypeParam>::read(array, TupleX({3})); }),
            message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.setValue(TupleX({3}), samples[0]); }), message);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] {
              array.value(TupleX({0, 0}));
            }),
            "Array 'a': position (0;0) is outside the shape (3)");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(Tuple()); }),
            "Array 'a': position () is outside the shape (3)");
}

TEST(TypedArrayTest, DimensionZeroVariesFastest) {
  const IntArray array("a", {{"x", 2}, {"y", 3}}, {10, 11, 20, 21, 30, 31});
  EXPECT_EQ(array.value(TupleX({1, 0})), 11);
  EXPECT_EQ(array.value(TupleX({0, 2})), 30);
}

TEST(TypedArrayTest, WithoutDimensionsItHoldsOneValue) {
  const DoubleArray scalar("pi", {}, {3.25});
  EXPECT_EQ(scalar.size().size(), 0U);
  EXPECT_EQ(scalar.getValueAsDouble(Tuple()), 3.25);
}

TEST(TypedArrayTest, WithFiveDimensionsEachPositionHasItsValue) {
  std::vector<long> values(2 * 3 * 2 * 2 * 2);
  values[1 + 2 * (2 + 3 * (1 + 2 * (0 + 2 * 1)))] = 5;
  const IntArray array("a", {{"p", 2}, {"q", 3}, {"r", 2}, {"s", 2}, {"t", 2}}, std::move(values));
  EXPECT_EQ(array.value(TupleX({1, 2, 1, 0, 1})), 5);
  EXPECT_EQ(array.value(TupleX({1, 2, 1, 1, 1})), 0);
}

TEST(TypedArrayTest, MayHoldNothing) {
  const DoubleArray array("a", {{"x", 3}, {"y", 0}}, {});
  EXPECT_EQ(array.numberOfElements(), 0U);
  EXPECT_EQ(thrownBy<std::out_of_range>([&] {
              array.value(TupleX({0, 0}));
            }),
            "Array 'a': position (0;0) is outside the shape (3;0)");
}

TEST(TypedArrayTest, AnOverflowingShapeIsRefused) {
  EXPECT_EQ(thrownBy<std::length_error>([] {
              const DoubleArray array("a", {{"x", 1UL << 63U}, {"y", 2}}, {});
            }),
            "Array 'a' of shape (9223372036854775808;2) has more elements than 64 bits can count");
}

TEST(TypedArrayTest, MovesButIsNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<DoubleArray>);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<DoubleArray>);
  EXPECT_FALSE(std::is_move_assignable_v<DoubleArray>);
}

TEST(TypedArrayTest, AMovedArrayStandsInNoContainer) {
  Dictionary container("d");
  DoubleArray array("a", {}, {1});
  array.setParent(&container);
  const DoubleArray moved(std::move(array));
  EXPECT_EQ(moved.parent(), nullptr);
}

// Stored types

template <class T>
class StoredArrayTest : public ::testing::Test {
 protected:
  /// Six distinguishable values, as far as the type has so many.
  static std::vector<T> values() {
    std::vector<T> values;
    for (int k = 0; k < 6; ++k) {
      const int value = std::is_signed_v<T> && k % 2 == 1 ? -k : k;
      values.push_back(static_cast<T>(static_cast<float>(value)));
    }
    return values;
  }
  static TypedArray<T> array() { return TypedArray<T>("a", {{"x", 3}, {"y", 2}}, values()); }
};

template <class List>
struct TestTypes;
template <class... T>
struct TestTypes<TypeList<T...>> {
  using Type = ::testing::Types<T...>;
};

struct StoredTypeNames {
  template <class T>
  static std::string GetName(int) {
    return StoredTraits<T>::NAME;
  }
};

using AllStoredTypes = TestTypes<StoredTypes>::Type;
TYPED_TEST_SUITE(StoredArrayTest, AllStoredTypes, StoredTypeNames);

TYPED_TEST(StoredArrayTest, AccessorGivesTheWidenedValue) {
  const auto array = this->array();
  using Element = ElementOf<TypeParam>;
  EXPECT_EQ(array.getElementType(), ElementTraits<Element>::TYPE);
  const Array& contract = array;
  for (unsigned long k = 0; k < 6; ++k) {
    const Element value = (contract.*ElementTraits<Element>::READ)(TupleX{k % 3, k / 3});
    EXPECT_EQ(value, static_cast<Element>(TypeParam(this->values()[k]))) << k;
  }
}

TYPED_TEST(StoredArrayTest, ValuesAreFoundByTheirIndices) {
  const auto array = this->array();
  for (unsigned long k = 0; k < 6; ++k) {
    EXPECT_EQ(array.value(k % 3, k / 3), TypeParam(this->values()[k])) << k;
  }
  EXPECT_EQ(array.value(2, 1U), TypeParam(this->values()[5]));
}

TYPED_TEST(StoredArrayTest, IsALoopsRangeInStorageOrder) {
  std::vector<TypeParam> seen;
  for (const TypeParam& value : this->array()) {
    seen.push_back(value);
  }
  EXPECT_EQ(seen, this->values());
}

TYPED_TEST(StoredArrayTest, DataLeadsToTheValues) {
  auto array = this->array();
  EXPECT_EQ(std::as_const(array).data(), &array.value(0, 0));
  array.data()[1] = array.value(0, 0);
  EXPECT_EQ(array.value(1, 0), TypeParam(this->values()[0]));
}

TYPED_TEST(StoredArrayTest, AnEmptyArrayMayBeAskedForWriting) {
  TypedArray<TypeParam> array("a", {{"x", 0}}, std::vector<TypeParam>());
  EXPECT_NO_THROW(array.data());
}

TYPED_TEST(StoredArrayTest, ACloneIsIndependent) {
  auto array = this->array();
  auto clone = array.clone("b");
  EXPECT_EQ(clone.getName(), "b");
  EXPECT_EQ(array.clone().getName(), "a");
  array.setValue(TupleX{0, 0}, TypeParam(this->values()[1]));
  EXPECT_EQ(clone.value(0, 0), TypeParam(this->values()[0]));
}

TYPED_TEST(StoredArrayTest, OffersItsValuesInBulkAsTheyAreStored) {
  const auto array = this->array();
  EXPECT_EQ(bulkValuesOf(array)->storedType(), StoredTraits<TypeParam>::TYPE);
  const unsigned long start[] = {1, 0};
  const unsigned long extent[] = {1, 2};
  TypeParam read[2];
  bulkValuesOf(array)->readValues(start, extent, read);
  EXPECT_EQ(read[0], TypeParam(this->values()[1]));
  EXPECT_EQ(read[1], TypeParam(this->values()[4]));
}

TYPED_TEST(StoredArrayTest, AViewOffersItsValuesWhereTheyAre) {
  const auto array = this->array();
  const auto view = TypedArray<TypeParam>::view("v", {{"x", 3}, {"y", 2}}, array.data(), 6);
  const object_model::ValuesInPlace values = bulkValuesOf(view)->valuesInPlace();
  ASSERT_EQ(values.first, array.data());
  EXPECT_EQ(values.strides[0], static_cast<long>(sizeof(TypeParam)));
  EXPECT_EQ(values.strides[1], static_cast<long>(3 * sizeof(TypeParam)));
}

// Conveniences

TEST(TypedArrayTest, IndicesOutsideAreRefused) {
  const IntArray array("a", {{"x", 2}, {"y", 3}}, {10, 11, 20, 21, 30, 31});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(2, 0); }),
            "Array 'a': position (2;0) is outside the shape (2;3)");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(0); }),
            "Array 'a': position (0) is outside the shape (2;3)");
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { array.value(); }),
            "Array 'a': position () is outside the shape (2;3)");
  EXPECT_THROW(array.value(-1, 0), std::out_of_range);
  EXPECT_EQ(DoubleArray("pi", {}, {3.25}).value(), 3.25);
}

TEST(TypedArrayTest, AViewGivesItsValuesForReadingAlone) {
  const std::array<double, 2> buffer = {1, 2};
  auto view = DoubleArray::view("v", {{"x", 2}}, buffer.data(), 2);
  EXPECT_EQ(std::as_const(view).data(), buffer.data());
  EXPECT_EQ(view.begin(), buffer.data());
  EXPECT_EQ(view.end(), buffer.data() + 2);
  EXPECT_EQ(thrownBy<InvalidCall>([&] { view.data(); }),
            "Array 'v' views values that it does not own; change them where they are");
}

TEST(TypedArrayTest, ACloneOwnsWhatAViewLooksAt) {
  std::array<double, 2> buffer = {1, 2};
  const auto view = DoubleArray::view("v", {{"x", 2}}, buffer.data(), 2);
  DoubleArray clone = view.clone();
  buffer[0] = 7;
  EXPECT_EQ(clone.value(0), 1);
  EXPECT_NE(clone.data(), nullptr);
}

TEST(TypedArrayTest, ACloneHasAllRemarksButNoContainer) {
  Dictionary container("d");
  DoubleArray& array = container.add(DoubleArray("a", {{"x", 1}}, {1}));
  array.setUnit("m");
  array.setPhysicalUnit("km");
  array.setDescription("how long");
  array.setAttribute("k", "v");
  const auto x =
      std::make_shared<const IntArray>("x", std::vector<Axis>{{"x", 1}}, std::vector<long>{5});
  array.setCoordinates(0, x);
  const DoubleArray clone = array.clone("b");
  EXPECT_EQ(clone.getUnit(), "m");
  EXPECT_EQ(clone.getPhysicalUnit(), "km");
  EXPECT_EQ(clone.getDescription(), "how long");
  EXPECT_EQ(clone.attributes(), array.attributes());
  EXPECT_EQ(clone.coordinates(0), x);
  EXPECT_EQ(clone.getInformation()->getAxisInfo(0)->getAxisName(), "x");
  EXPECT_EQ(clone.parent(), nullptr);
}

TEST(TypedArrayTest, RemarksOfAnotherShapeAreTakenWithoutCoordinates) {
  DoubleArray array("a", {{"x", 1}}, {1});
  array.setDescription("how long");
  array.setCoordinates(
      0, std::make_shared<const IntArray>("x", std::vector<Axis>{{"x", 1}}, std::vector<long>{5}));
  DoubleArray other("b", {{"x", 2}}, {1, 2});
  other.copyRemarksOf(array);
  EXPECT_EQ(other.getDescription(), "how long");
  EXPECT_EQ(other.coordinates(0), nullptr);
}

TEST(TypedArrayTest, AStringArrayIsClonedAndLoopedOver) {
  const StringArray array("a", {{"x", 2}}, {"one", "two"});
  std::string text;
  for (const std::string& value : array.clone()) {
    text += value + " ";
  }
  EXPECT_EQ(text, "one two ");
}

// Arrays of dictionaries

std::vector<Dictionary> twoDictionaries() {
  std::vector<Dictionary> dictionaries;
  dictionaries.emplace_back("first");
  dictionaries.back().add(DoubleArray("length", {}, {1.5}));
  dictionaries.emplace_back("second");
  return dictionaries;
}

void expectParentOfElements(const DictionaryArray& array) {
  for (unsigned long k = 0; k < 2; ++k) {
    EXPECT_EQ(array.value(TupleX({k})).parent(), &array) << k;
  }
}

TEST(DictionaryArrayTest, YieldsItsDictionaries) {
  const DictionaryArray array("d", {{"x", 2}}, twoDictionaries());
  EXPECT_EQ(array.getElementType(), ElementType::Dictionary);
  const object_model::Data* first = array.getValueAsDictionary(TupleX({0}));
  ASSERT_EQ(first, &array.value(TupleX({0})));
  EXPECT_EQ(first->getName(), "first");
  EXPECT_NE(dynamic_cast<const object_model::Dictionary*>(first), nullptr);
}

TEST(DictionaryArrayTest, IsTheParentOfItsElements) {
  expectParentOfElements(DictionaryArray("d", {{"x", 2}}, twoDictionaries()));
}

TEST(DictionaryArrayTest, StaysTheParentWhenItMoves) {
  DictionaryArray array("d", {{"x", 2}}, twoDictionaries());
  const DictionaryArray moved(std::move(array));
  expectParentOfElements(moved);
  const Dictionary& first = moved.value(TupleX({0}));
  EXPECT_EQ(first.data("length")->parent(), &first);
}

TEST(DictionaryArrayTest, IsTheParentOfAReplacedElement) {
  DictionaryArray array("d", {{"x", 2}}, twoDictionaries());
  Dictionary replacement("replacement");
  replacement.add(DoubleArray("width", {}, {2}));
  array.setValue(TupleX({1}), std::move(replacement));
  expectParentOfElements(array);
  const Dictionary& element = array.value(TupleX({1}));
  EXPECT_EQ(element.getName(), "replacement");
  EXPECT_EQ(element.data("width")->parent(), &element);
}

TEST(DictionaryArrayTest, AnElementInADictionaryKnowsTheWholeWayUp) {
  Dictionary root("root");
  const DictionaryArray& array = root.add(DictionaryArray("d", {{"x", 2}}, twoDictionaries()));
  const object_model::Data* length = array.value(TupleX({0})).data("length");
  EXPECT_EQ(length->parent()->parent()->parent(), &root);
}

TEST(DictionaryArrayTest, AViewLeavesTheDictionariesWhereTheyAre) {
  Dictionary owner("owner");
  const Dictionary& viewed = owner.add(Dictionary("viewed"));
  const auto view = DictionaryArray::view("d", {{"x", 1}}, &viewed, 1);
  EXPECT_EQ(view.getValueAsDictionary(TupleX({0})), &viewed);
  EXPECT_EQ(viewed.parent(), &owner);
}

TEST(DictionaryArrayTest, CannotBeReadAsAnythingElse) {
  const DictionaryArray array("d", {{"x", 2}}, twoDictionaries());
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.getValueAsString(TupleX({0})); }),
            "Array 'd' holds Dictionary elements and cannot be read as String");
}

}  // namespace
}  // namespace quillon::memory
