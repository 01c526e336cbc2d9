#include <gtest/gtest.h>
#include <object_model/DataInfo.h>

#include <string>

#include "support/Destruction.h"
#include "support/Interfaces.h"

namespace object_model {
namespace {

TEST(DataInfoTest, AnswersThroughTheBaseAsTheConcreteClassDoes) {
  const test::PlainArrayInfo array("a", ElementType::Int, "counts");
  const DataInfo& info = array;
  EXPECT_EQ(info.getName(), "a");
  EXPECT_EQ(info.getDescription(), "counts");
  EXPECT_TRUE(info.isArrayInfo());
  EXPECT_EQ(info.asArrayInfo(), &array);
}

TEST(DataInfoTest, NamesAreBorrowedFromTheDescriptor) {
  const test::PlainArrayInfo array("a");
  EXPECT_EQ(&array.getName(), &array.getName());
}

TEST(DataInfoTest, IsDestroyedThroughTheBase) {
  EXPECT_TRUE((test::isDestroyedThrough<DataInfo, test::PlainDictionaryInfo>()));
}

}  // namespace
}  // namespace object_model
