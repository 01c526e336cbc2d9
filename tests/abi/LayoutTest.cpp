// Sizes and field places of the public classes. Code that was built against the headers reads the
// fields in place, so released ones never change.
#include <gtest/gtest.h>
#include <object_model/Array.h>
#include <object_model/ArrayInfo.h>
#include <object_model/AxisInfo.h>
#include <object_model/Buffer.h>
#include <object_model/BulkValues.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/DynamicDictionary.h>
#include <object_model/InvalidCall.h>
#include <object_model/Namespace.h>
#include <object_model/Request.h>
#include <object_model/TupleX.h>

#include <cstddef>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/Interfaces.h"
#include "support/Values.h"

namespace object_model {
namespace {

/// A row of a frozen table; rows are only ever appended.
struct Layout {
  const char* name;
  std::size_t size, alignment;
  std::size_t releasedSize, releasedAlignment;
};
void PrintTo(const Layout& layout, std::ostream* out) { *out << layout.name; }

template <class Class>
Layout layoutOf(const char* name, std::size_t releasedSize) {
  return {name, sizeof(Class), alignof(Class), releasedSize, 8};
}

class LayoutTest : public ::testing::TestWithParam<Layout> {};

TEST_P(LayoutTest, IsAsReleased) {
  EXPECT_EQ(GetParam().size, GetParam().releasedSize);
  EXPECT_EQ(GetParam().alignment, GetParam().releasedAlignment);
}

INSTANTIATE_TEST_SUITE_P(
    Classes, LayoutTest,
    ::testing::Values(
        layoutOf<Exception>("Exception", 40), layoutOf<InvalidCall>("InvalidCall", 40),
        layoutOf<Tuple>("Tuple", 24), layoutOf<TupleX>("TupleX", 32), layoutOf<Data>("Data", 8),
        layoutOf<Array>("Array", 8), layoutOf<Dictionary>("Dictionary", 8),
        layoutOf<DynamicDictionary>("DynamicDictionary", 8), layoutOf<Buffer>("Buffer", 16),
        layoutOf<Request>("Request", 8), layoutOf<DataInfo>("DataInfo", 8),
        layoutOf<ArrayInfo>("ArrayInfo", 8), layoutOf<DictionaryInfo>("DictionaryInfo", 8),
        layoutOf<AxisInfo>("AxisInfo", 8), layoutOf<Namespace>("Namespace", 8),
        layoutOf<BulkValues>("BulkValues", 8), layoutOf<ValuesInPlace>("ValuesInPlace", 16)),
    [](const auto& row) { return row.param.name; });

// A class that can be copied byte by byte is passed in registers, every other one by address, so a
// copy operation or a destructor that is added or removed changes how functions are called.
TEST(PassingTest, OnlyABufferAndThePlaceOfValuesArePassedInRegisters) {
  EXPECT_TRUE(std::is_trivially_copyable_v<Buffer>);
  EXPECT_TRUE(std::is_trivially_copyable_v<ValuesInPlace>);
  EXPECT_FALSE(std::is_trivially_copyable_v<Exception>);
  EXPECT_FALSE(std::is_trivially_copyable_v<InvalidCall>);
  EXPECT_FALSE(std::is_trivially_copyable_v<Tuple>);
  EXPECT_FALSE(std::is_trivially_copyable_v<TupleX>);
}

/// The field of type `Field` that stands `offset` bytes into `object`, whatever its access.
template <class Field, class Class>
const Field& fieldAt(const Class& object, std::size_t offset) {
  return *reinterpret_cast<const Field*>(reinterpret_cast<const char*>(&object) + offset);
}

TEST(FieldPlaceTest, AnExceptionHasItsMessageAfterTheTable) {
  EXPECT_EQ(fieldAt<std::string>(Exception("message"), 8), "message");
  EXPECT_EQ(fieldAt<std::string>(InvalidCall("other message"), 8), "other message");
}

TEST(FieldPlaceTest, ATupleHasTheAddressAndThenTheCountAfterTheTable) {
  unsigned long values[] = {5, 6};
  const test::View view(values, 2);
  EXPECT_EQ(fieldAt<unsigned long*>(view, 8), values);
  EXPECT_EQ(fieldAt<unsigned long>(view, 16), 2U);
}

TEST(FieldPlaceTest, AnOwningTupleHasItsStorageLast) {
  const TupleX tuple({7, 8, 9});
  EXPECT_EQ(fieldAt<const unsigned long*>(tuple, 8), &tuple[0]);
  EXPECT_EQ(fieldAt<unsigned long>(tuple, 16), 3U);
  EXPECT_EQ(*fieldAt<const std::vector<unsigned long>*>(tuple, 24),
            (std::vector<unsigned long>{7, 8, 9}));
}

// The vector is there for no values too.
TEST(FieldPlaceTest, AnEmptyOwningTupleHasAnEmptyStorage) {
  const TupleX tuple(0UL);
  const auto* storage = fieldAt<const std::vector<unsigned long>*>(tuple, 24);
  ASSERT_NE(storage, nullptr);
  EXPECT_TRUE(storage->empty());
}

TEST(FieldPlaceTest, ABufferHasTheAddressAndThenTheSize) {
  char byte = 0;
  const Buffer buffer(&byte, 77);
  EXPECT_EQ(fieldAt<char*>(buffer, 0), &byte);
  EXPECT_EQ(fieldAt<unsigned long>(buffer, 8), 77U);
}

TEST(FieldPlaceTest, ThePlaceOfValuesHasTheAddressAndThenTheSteps) {
  const double value = 0;
  const long stride = 8;
  const ValuesInPlace place = {&value, &stride};
  EXPECT_EQ(fieldAt<const void*>(place, 0), &value);
  EXPECT_EQ(fieldAt<const long*>(place, 8), &stride);
}

TEST(FieldPlaceTest, ANamespaceHasTheAddressOfItsMap) {
  Namespace names;
  const test::PlainDictionaryInfo info;
  names.registerObject("name", &info);
  using Infos = std::map<std::string, const DictionaryInfo*>;
  EXPECT_EQ(*fieldAt<const Infos*>(names, 0), (Infos{{"name", &info}}));
}

}  // namespace
}  // namespace object_model
