#include <gtest/gtest.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/Descriptors.h>

#include <stdexcept>

#include "support/Thrown.h"

namespace quillon::memory {
namespace {

using object_model::AxisType;
using object_model::ElementType;
using test::thrownBy;

TEST(ArrayDescriptorTest, TellsNameTypeDescriptionAndAxesInOrder) {
  const ArrayDescriptor descriptor("SST", ElementType::Double,
                                   {{"COADSX", 180}, {AxisType::Time, 12}}, "sea temperature");
  const object_model::DataInfo& info = descriptor;
  EXPECT_EQ(info.getName(), "SST");
  EXPECT_EQ(info.getDescription(), "sea temperature");
  EXPECT_TRUE(info.isArrayInfo());
  EXPECT_EQ(info.asArrayInfo(), &descriptor);
  EXPECT_EQ(descriptor.getElementType(), ElementType::Double);
  ASSERT_EQ(descriptor.axes().size(), 2U);
  EXPECT_EQ(descriptor.getAxisInfo(0)->getAxisName(), "COADSX");
  EXPECT_EQ(descriptor.getAxisInfo(1)->getAxisName(), "time");
  EXPECT_EQ(descriptor.getAxisInfo(1), &descriptor.axes()[1]);
}

TEST(ArrayDescriptorTest, HasNoDescriptionUnlessGiven) {
  ArrayDescriptor descriptor("a", ElementType::Int, {});
  EXPECT_EQ(descriptor.getDescription(), "");
  descriptor.setDescription("later");
  EXPECT_EQ(descriptor.getDescription(), "later");
}

TEST(ArrayDescriptorTest, HasNoAxisBeyondItsDimensions) {
  const ArrayDescriptor flat("flat", ElementType::Int, {{"x", 3}});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { flat.getAxisInfo(1); }),
            "Array 'flat' has 1 axes; there is none for dimension 1");
  const ArrayDescriptor scalar("scalar", ElementType::Int, {});
  EXPECT_EQ(thrownBy<std::out_of_range>([&] { scalar.getAxisInfo(0); }),
            "Array 'scalar' has 0 axes; there is none for dimension 0");
}

TEST(ArrayDescriptorTest, IsNoDictionarysDescriptor) {
  const ArrayDescriptor descriptor("a", ElementType::Int, {});
  EXPECT_EQ(thrownBy<object_model::InvalidCall>([&] { descriptor.asDictionaryInfo(); }),
            "Invalid call at ObjectModel/src/ArrayInfo.cpp (32)");
}

TEST(DictionaryDescriptorTest, TellsNameAndDescription) {
  const DictionaryDescriptor descriptor("climate", "monthly means");
  const object_model::DataInfo& info = descriptor;
  EXPECT_EQ(info.getName(), "climate");
  EXPECT_EQ(info.getDescription(), "monthly means");
  EXPECT_TRUE(info.isDictionaryInfo());
  EXPECT_EQ(info.asDictionaryInfo(), &descriptor);
  EXPECT_EQ(DictionaryDescriptor("plain").getDescription(), "");
}

// What the toolkit may call does nothing here.
TEST(DescriptorTest, ReservedOperationsDoNothing) {
  const ArrayDescriptor array("a", ElementType::Int, {});
  array.reservedDataInfo0();
  array.reservedArrayInfo0();
  array.reservedArrayInfo1();
  array.reservedArrayInfo2();
  array.reservedArrayInfo3();
  const DictionaryDescriptor dictionary("d");
  dictionary.reservedDataInfo0();
  dictionary.reservedDictionaryInfo0();
  dictionary.reservedDictionaryInfo1();
  dictionary.reservedDictionaryInfo2();
  dictionary.reservedDictionaryInfo3();
  dictionary.reservedDictionaryInfo4();
  EXPECT_EQ(array.getName() + dictionary.getName(), "ad");
}

}  // namespace
}  // namespace quillon::memory
