#include <gtest/gtest.h>
#include <object_model/Data.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "support/Destruction.h"
#include "support/Interfaces.h"
#include "support/Thrown.h"

namespace object_model {
namespace {

using test::PlainArray;
using test::PlainArrayInfo;
using test::PlainDictionary;

TEST(DataTest, NameAndDescriptionAreTheDescriptors) {
  const PlainArray array(PlainArrayInfo("TIME", ElementType::Double, "hours since the start"));
  const Data& data = array;
  EXPECT_EQ(data.getName(), "TIME");
  EXPECT_EQ(data.getDescription(), "hours since the start");
}

TEST(DataTest, NameAndDescriptionAreIndependentCopies) {
  const PlainArray array(PlainArrayInfo("name", ElementType::Double, "description"));
  array.getName()[0] = 'X';
  array.getDescription()[0] = 'X';
  EXPECT_EQ(array.getName(), "name");
  EXPECT_EQ(array.getDescription(), "description");
}

TEST(DataTest, TheVersionIsZero) {
  EXPECT_EQ(PlainArray().version(), 0);
  EXPECT_EQ(PlainDictionary().version(), 0);
}

TEST(DataTest, AConcreteClassMayCountVersions) {
  class Versioned : public PlainArray {
   public:
    int version() const override { return 12; }
  };
  const Versioned versioned;
  const Data& data = versioned;
  EXPECT_EQ(data.version(), 12);
}

TEST(DataTest, TheParentIsWhatTheContainerSet) {
  PlainDictionary container;
  PlainArray array;
  EXPECT_EQ(array.parent(), nullptr);
  array.setParent(&container);
  EXPECT_EQ(array.parent(), &container);
  EXPECT_EQ(std::as_const(array).parent(), &container);
}

class Unnamed : public PlainArray {
 public:
  const DataInfo* getInformation() const override { throw std::runtime_error("no descriptor"); }
};

TEST(DataTest, ExceptionsOfTheDescriptorPassThrough) {
  const Unnamed unnamed;
  EXPECT_EQ(test::thrownBy<std::runtime_error>([&] { unnamed.getName(); }), "no descriptor");
  EXPECT_EQ(test::thrownBy<std::runtime_error>([&] { unnamed.getDescription(); }), "no descriptor");
}

TEST(DataTest, IsDestroyedThroughTheBase) {
  EXPECT_TRUE((test::isDestroyedThrough<Data, PlainArray>()));
}

}  // namespace
}  // namespace object_model
