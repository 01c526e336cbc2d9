#include <gtest/gtest.h>
#include <object_model/TupleX.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/InvalidCall.h>
#include <quillon/memory/ValueArray.h>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::ElementType;
using object_model::Tuple;
using object_model::TupleX;
using test::thrownBy;

/// One value for all positions.
template <class T>
class ConstantArray final : public ValueArray<T> {
 public:
  explicit ConstantArray(ResultOf<T> value)
      : ValueArray<T>("constant", {{"x", 2}}, "the same everywhere"), m_value(std::move(value)) {}
  ResultOf<T> valueAt(const Tuple& /*index*/) const override { return m_value; }

 private:
  ResultOf<T> m_value;
};

TEST(ValueArrayTest, TheAccessorOfItsTypeGivesTheValue) {
  const TupleX position{1};
  const Dictionary dictionary("d");
  EXPECT_EQ(ConstantArray<unsigned long>(7).getValueAsUInt(position), 7U);
  EXPECT_EQ(ConstantArray<long>(-7).getValueAsInt(position), -7);
  EXPECT_EQ(ConstantArray<double>(0.5).getValueAsDouble(position), 0.5);
  EXPECT_EQ(ConstantArray<std::complex<double>>({1, 2}).getValueAsComplex(position),
            std::complex<double>(1, 2));
  EXPECT_EQ(ConstantArray<std::string>("text").getValueAsString(position), "text");
  EXPECT_EQ(ConstantArray<bool>(true).getValueAsBoolean(position), true);
  EXPECT_EQ(ConstantArray<Dictionary>(&dictionary).getValueAsDictionary(position), &dictionary);
}

TEST(ValueArrayTest, AStoredTypeIsWidened) {
  const ConstantArray<float> array(0.25);
  EXPECT_EQ(array.getElementType(), ElementType::Double);
  EXPECT_EQ(array.getValueAsDouble(TupleX{0}), 0.25);
  EXPECT_EQ(ConstantArray<unsigned char>(255).getElementType(), ElementType::UInt);
}

TEST(ValueArrayTest, AllOtherAccessorsRefuse) {
  const ConstantArray<float> array(0.25);
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.getValueAsInt(TupleX{0}); }),
            "Array 'constant' holds Double elements and cannot be read as Int");
  EXPECT_EQ(thrownBy<InvalidCall>([&] { array.getValueAsString(TupleX{0}); }),
            "Array 'constant' holds Double elements and cannot be read as String");
}

TEST(ValueArrayTest, HasDescriptorAndShape) {
  const ConstantArray<long> array(1);
  EXPECT_EQ(array.getDescription(), "the same everywhere");
  EXPECT_EQ(array.numberOfElements(), 2U);
}

}  // namespace
}  // namespace quillon::memory
