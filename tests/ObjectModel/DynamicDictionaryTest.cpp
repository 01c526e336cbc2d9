#include <gtest/gtest.h>
#include <object_model/DynamicDictionary.h>

#include "support/Interfaces.h"

namespace object_model {
namespace {

using test::PlainDynamicDictionary;

TEST(DynamicDictionaryTest, IsADictionaryThatItsClassCallsDynamic) {
  const PlainDynamicDictionary dictionary;
  const Data& data = dictionary;
  EXPECT_TRUE(data.isDynamicDictionary());
  EXPECT_TRUE(data.isDictionary());
  EXPECT_FALSE(data.isArray());
}

TEST(DynamicDictionaryTest, CastsToBothKindsOfDictionary) {
  PlainDynamicDictionary dictionary;
  Data& data = dictionary;
  EXPECT_EQ(data.asDynamicDictionary(), &dictionary);
  EXPECT_EQ(data.asDictionary(), &dictionary);
  EXPECT_EQ(data.asArray(), nullptr);
  const Data& constant = dictionary;
  EXPECT_EQ(constant.asDynamicDictionary(), &dictionary);
  EXPECT_EQ(constant.asDictionary(), &dictionary);
  EXPECT_EQ(constant.asArray(), nullptr);
}

TEST(DynamicDictionaryTest, FindsEntriesByPositionAsEveryDictionary) {
  test::PlainArray entry;
  PlainDynamicDictionary dictionary;
  dictionary.add(entry);
  EXPECT_EQ(dictionary.data(0), &entry);
}

}  // namespace
}  // namespace object_model
