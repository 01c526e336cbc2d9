#include <gtest/gtest.h>

#include "abi/DestructorAt.h"
#include "support/Interfaces.h"

namespace object_model {
namespace {

using binary::expectDestructorAt;

class PlainTuple : public Tuple {};

class PlainTupleX : public TupleX {
 public:
  PlainTupleX() : TupleX(0UL) {}
};

TEST(DestructorPlaceTest, IsFirstInDataObjects) {
  expectDestructorAt<test::PlainArray>(0);
  expectDestructorAt<test::PlainDictionary>(0);
  expectDestructorAt<test::PlainDynamicDictionary>(0);
}

TEST(DestructorPlaceTest, IsFirstInTuplesAxesAndRequests) {
  expectDestructorAt<PlainTuple>(0);
  expectDestructorAt<PlainTupleX>(0);
  expectDestructorAt<test::PlainAxisInfo>(0);
  expectDestructorAt<test::PlainRequest>(0);
}

TEST(DestructorPlaceTest, FollowsTheCastsInDescriptors) {
  expectDestructorAt<test::PlainArrayInfo>(7);
  expectDestructorAt<test::PlainDictionaryInfo>(7);
}

}  // namespace
}  // namespace object_model
