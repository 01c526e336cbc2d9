#include <gtest/gtest.h>
#include <object_model/ArrayInfo.h>
#include <object_model/InvalidCall.h>

#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

TEST(ArrayInfoTest, DescribesAnArray) {
  const test::PlainArrayInfo info;
  EXPECT_TRUE(info.isArrayInfo());
  EXPECT_FALSE(info.isDictionaryInfo());
  EXPECT_EQ(info.asArrayInfo(), &info);
}

TEST(ArrayInfoTest, TheCastToADictionarysDescriptorIsAnInvalidCall) {
  const test::PlainArrayInfo info;
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] { info.asDictionaryInfo(); }),
            "Invalid call at ObjectModel/src/ArrayInfo.cpp (32)");
}

}  // namespace
}  // namespace object_model
