#include <gtest/gtest.h>

#include "ComparisonHelper/CheckedView.h"
#include "ObjectModel/ComparisonHelper/OddDictionary.h"
#include "ObjectModel/ComparisonHelper/Samples.h"
#include "support/Interfaces.h"

namespace object_model::helper {
namespace {

using quillon::test::dictionary;
using quillon::test::list;
using quillon::test::NeitherKind;

TEST(CheckedView, YieldsTheObjectsWhateverTheirClasses) {
  const auto a = list<long>("a", {1});
  const auto b = list<long>("b", {1});
  const auto c = list<double>("c", {1});
  CheckedView<Array> asArray;
  for (const Array* array : std::vector<const Array*>{&a, &b, &c, &c, &a}) {
    EXPECT_EQ(&asArray.of(array), array);
  }
}

TEST(CheckedView, RefusesOtherKindsAndNullAtAnyTime) {
  const auto array = list<long>("a", {1});
  const auto other = dictionary("d");
  CheckedView<Array> asArray;
  for (int round = 0; round < 3; ++round) {
    EXPECT_THROW(asArray.of(&other), std::bad_cast);
    EXPECT_THROW(asArray.of(nullptr), std::bad_cast);
    EXPECT_EQ(&asArray.of(&array), &array);
    EXPECT_EQ(&asArray.of(&array), &array);
  }
}

// The classes of the next two tests are two `Data`, one of which is an array.
struct BesideAnother : public NeitherKind, public ::test::PlainArray {
  BesideAnother() : NeitherKind("beside") {}
};

struct BeforeAnother : public ::test::PlainArray, public NeitherKind {
  BeforeAnother() : NeitherKind("before") {}
};

template <class Both>
void findsTheArray() {
  const Both both;
  const Data* const neither = static_cast<const NeitherKind*>(&both);
  const Array* const array = &both;
  CheckedView<Array> asArray;
  for (const Data* data : {neither, neither, static_cast<const Data*>(array), neither,
                           static_cast<const Data*>(array)}) {
    EXPECT_EQ(&asArray.of(data), array);
  }
}

TEST(CheckedView, FindsTheKindInAnObjectThatStartsWithAnother) { findsTheArray<BesideAnother>(); }

TEST(CheckedView, FindsTheKindInAnObjectThatGoesOnWithAnother) { findsTheArray<BeforeAnother>(); }

TEST(CheckedView, FindsTheKindInTheMidstOfAnObject) {
  struct BetweenOthers : public BesideAnother, public ::test::PlainDictionary {};
  const BetweenOthers all;
  const Array* const array = &all;
  CheckedView<Array> asArray;
  EXPECT_EQ(&asArray.of(array), array);
  EXPECT_EQ(&asArray.of(static_cast<const Dictionary*>(&all)), array);
}

}  // namespace
}  // namespace object_model::helper
