#include <gtest/gtest.h>
#include <object_model/Array.h>
#include <object_model/InvalidCall.h>
#include <object_model/TupleX.h>

#include <ostream>
#include <stdexcept>
#include <utility>

#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using test::PlainArray;
using test::PlainArrayInfo;
using test::thrownBy;

TEST(ArrayTest, IsAnArrayAndNoDictionary) {
  const PlainArray array;
  EXPECT_TRUE(array.isArray());
  EXPECT_FALSE(array.isDictionary());
  EXPECT_FALSE(array.isDynamicDictionary());
}

TEST(ArrayTest, CastsToItselfAlone) {
  PlainArray array;
  Data& data = array;
  EXPECT_EQ(data.asArray(), &array);
  EXPECT_EQ(data.asDictionary(), nullptr);
  EXPECT_EQ(data.asDynamicDictionary(), nullptr);
  const Data& constant = array;
  EXPECT_EQ(constant.asArray(), &array);
  EXPECT_EQ(constant.asDictionary(), nullptr);
  EXPECT_EQ(constant.asDynamicDictionary(), nullptr);
}

struct AccessorCase {
  const char* accessor;
  void (*call)(const Array&, const Tuple&);
  const char* message;
};
void PrintTo(const AccessorCase& row, std::ostream* out) { *out << row.accessor; }

const AccessorCase ACCESSORS[] = {
    {"getValueAsDouble", [](const Array& a, const Tuple& i) { a.getValueAsDouble(i); },
     "Invalid call at ObjectModel/src/Array.cpp (15)"},
    {"getValueAsUInt", [](const Array& a, const Tuple& i) { a.getValueAsUInt(i); },
     "Invalid call at ObjectModel/src/Array.cpp (18)"},
    {"getValueAsInt", [](const Array& a, const Tuple& i) { a.getValueAsInt(i); },
     "Invalid call at ObjectModel/src/Array.cpp (21)"},
    {"getValueAsString", [](const Array& a, const Tuple& i) { a.getValueAsString(i); },
     "Invalid call at ObjectModel/src/Array.cpp (24)"},
    {"getValueAsDictionary", [](const Array& a, const Tuple& i) { a.getValueAsDictionary(i); },
     "Invalid call at ObjectModel/src/Array.cpp (29)"},
    {"getValueAsBoolean", [](const Array& a, const Tuple& i) { a.getValueAsBoolean(i); },
     "Invalid call at ObjectModel/src/Array.cpp (34)"},
    {"getValueAsComplex", [](const Array& a, const Tuple& i) { a.getValueAsComplex(i); },
     "Invalid call at ObjectModel/src/Array.cpp (37)"},
};

class DefaultAccessorTest : public ::testing::TestWithParam<AccessorCase> {};

TEST_P(DefaultAccessorTest, IsAnInvalidCallAtItsOwnLine) {
  const PlainArray array;
  const TupleX position({0, 0});
  EXPECT_EQ(thrownBy<InvalidCall>([&] { GetParam().call(array, position); }), GetParam().message);
}

TEST_P(DefaultAccessorTest, DoesNotLookAtThePosition) {
  const PlainArray array;
  const Tuple nowhere;
  EXPECT_EQ(thrownBy<InvalidCall>([&] { GetParam().call(array, nowhere); }), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Accessors, DefaultAccessorTest, ::testing::ValuesIn(ACCESSORS),
                         [](const auto& row) { return row.param.accessor; });

class DoubleOnlyArray : public PlainArray {
 public:
  double getValueAsDouble(const Tuple& index) const override {
    return 0.5 + static_cast<double>(index[0]);
  }
};

TEST(ArrayTest, AnArrayOfDoublesAnswersAsDoubleAlone) {
  const DoubleOnlyArray array;
  const TupleX position({3, 0});
  EXPECT_EQ(static_cast<const Array&>(array).getValueAsDouble(position), 3.5);
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.getValueAsInt(position); }),
            "Invalid call at ObjectModel/src/Array.cpp (21)");
}

TEST(ArrayTest, TheElementTypeIsTheDescriptors) {
  EXPECT_EQ(PlainArray(PlainArrayInfo("a", ElementType::Dictionary)).getElementType(),
            ElementType::Dictionary);
  const auto unknown = static_cast<ElementType>(-7);
  EXPECT_EQ(PlainArray(PlainArrayInfo("a", unknown)).getElementType(), unknown);
}

// The descriptor is taken as an array's directly, without asking it for a cast.
TEST(ArrayTest, TheElementTypeNeedsNoCastOfTheDescriptor) {
  class Strict : public PlainArrayInfo {
   public:
    Strict() : PlainArrayInfo("a", ElementType::Boolean) {}
    bool isArrayInfo() const override { throw std::logic_error("asked"); }
    const ArrayInfo* asArrayInfo() const override { throw std::logic_error("asked"); }
  };
  class StrictArray : public PlainArray {
   public:
    const DataInfo* getInformation() const override { return &m_strict; }

   private:
    Strict m_strict;
  };
  EXPECT_EQ(StrictArray().getElementType(), ElementType::Boolean);
}

TEST(ArrayTest, ExceptionsOfTheDescriptorPassThrough) {
  class Broken : public PlainArray {
   public:
    const DataInfo* getInformation() const override { throw std::runtime_error("no descriptor"); }
  };
  const Broken broken;
  EXPECT_EQ(thrownBy<std::runtime_error>([&] { broken.getElementType(); }), "no descriptor");
}

}  // namespace
}  // namespace object_model
