#include <gtest/gtest.h>
#include <object_model/DictionaryInfo.h>
#include <object_model/InvalidCall.h>

#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

TEST(DictionaryInfoTest, DescribesADictionary) {
  const test::PlainDictionaryInfo info;
  EXPECT_FALSE(info.isArrayInfo());
  EXPECT_TRUE(info.isDictionaryInfo());
  EXPECT_EQ(info.asDictionaryInfo(), &info);
}

TEST(DictionaryInfoTest, TheCastToAnArraysDescriptorIsAnInvalidCall) {
  const test::PlainDictionaryInfo info;
  EXPECT_EQ(test::thrownBy<InvalidCall>([&] { info.asArrayInfo(); }),
            "Invalid call at ObjectModel/src/DictionaryInfo.cpp (25)");
}

}  // namespace
}  // namespace object_model
