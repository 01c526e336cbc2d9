#include <gtest/gtest.h>
#include <object_model/DataInfo.h>

#include <memory>
#include <string>

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
  class Watched : public test::PlainDictionaryInfo {
   public:
    explicit Watched(bool& destroyed) : m_destroyed(destroyed) {}
    ~Watched() override { m_destroyed = true; }

   private:
    bool& m_destroyed;
  };
  bool destroyed = false;
  std::unique_ptr<DataInfo>(std::make_unique<Watched>(destroyed)).reset();
  EXPECT_TRUE(destroyed);
}

}  // namespace
}  // namespace object_model
