#include <gmock/gmock.h>
#include <object_model/TupleX.h>

#include "DeltaMap.h"
#include "Support.h"

namespace quillon::compare {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::NanSensitiveDoubleEq;

object_model::TupleX shapeOf(const std::vector<unsigned long>& extents) {
  object_model::TupleX shape(extents.size());
  for (std::size_t k = 0; k < extents.size(); ++k) {
    shape[k] = extents[k];
  }
  return shape;
}

std::string inWords(const Picture::Side& side) {
  return side.dimension + " " + std::to_string(side.size) + " in " + std::to_string(side.cells);
}

TEST(DeltaMapTest, APictureOfNothingHasNoCells) {
  EXPECT_EQ(inWords(Picture().across), " 0 in 0");
  EXPECT_EQ(inWords(Picture().down), " 0 in 0");
}

TEST(DeltaMapTest, ShowsTheLargestDeltaOfEachCell) {
  DeltaMap map(shapeOf({3, 2}));
  map.add(0, 0.5);
  map.add(4, 2);
  map.add(4, 1);
  map.add(4, 3);
  map.add(5, 2);
  map.add(5, 1);
  const Picture picture = map.picture({"x", "y"});
  EXPECT_EQ(inWords(picture.across), "x 3 in 3");
  EXPECT_EQ(inWords(picture.down), "y 2 in 2");
  EXPECT_THAT(picture.cells, ElementsAre(0.5, 0, 0, 0, 3, 2));
}

TEST(DeltaMapTest, ADeltaGoesBeforeNone) {
  DeltaMap map(shapeOf({2, 2}));
  for (const unsigned long offset : {0UL, 1UL, 2UL}) {
    map.add(offset, NOT_A_NUMBER);
  }
  map.add(1, 1);
  map.add(2, NOT_A_NUMBER);
  map.add(3, INFINITE);
  map.add(3, NOT_A_NUMBER);
  EXPECT_THAT(map.picture({"x", "y"}).cells,
              ElementsAre(NanSensitiveDoubleEq(NOT_A_NUMBER), DoubleEq(1),
                          NanSensitiveDoubleEq(NOT_A_NUMBER), DoubleEq(INFINITE)));
}

TEST(DeltaMapTest, TheTwoLongestDimensionsAreItsSides) {
  const Picture picture = DeltaMap(shapeOf({4, 2, 5})).picture({"x", "y", "z"});
  EXPECT_EQ(inWords(picture.across), "x 4 in 4");
  EXPECT_EQ(inWords(picture.down), "z 5 in 5");
  DeltaMap map(shapeOf({2, 4, 3, 4}));
  map.add(2UL * 4 * 3 * 3 + 2UL * 4 * 2 + 2UL * 1 + 1, 7);  // z = 3, third = 2, y = 1, x = 1
  const Picture longest = map.picture({"x", "y", "third", "z"});
  EXPECT_EQ(inWords(longest.across), "y 4 in 4");
  EXPECT_EQ(inWords(longest.down), "z 4 in 4");
  EXPECT_EQ(longest.cells.at(3 * 4 + 1), 7);
  const Picture divided = DeltaMap(shapeOf({129, 300, 400})).picture({"x", "y", "z"});
  EXPECT_EQ(inWords(divided.across), "y 300 in 128");
  EXPECT_EQ(inWords(divided.down), "z 400 in 128");
}

TEST(DeltaMapTest, OfDimensionsAsLongTheFastestAreItsSides) {
  const Picture picture = DeltaMap(shapeOf({3, 3, 3})).picture({"x", "y", "z"});
  EXPECT_EQ(picture.across.dimension, "x");
  EXPECT_EQ(picture.down.dimension, "y");
}

TEST(DeltaMapTest, LongDimensionsAreDividedIntoCellsThatAreAllUsed) {
  DeltaMap map(shapeOf({300, 129}));
  for (unsigned long x = 0; x < 300; ++x) {
    map.add(x, static_cast<double>(x + 1));
  }
  const Picture picture = map.picture({"x", "y"});
  EXPECT_EQ(inWords(picture.across), "x 300 in 128");
  EXPECT_EQ(inWords(picture.down), "y 129 in 128");
  // 300 = 44 * 3 + 84 * 2.
  for (unsigned long cell = 0; cell < 128; ++cell) {
    const unsigned long last = cell < 44 ? 3 * (cell + 1) : 132 + 2 * (cell - 43);
    EXPECT_EQ(picture.cells[cell], static_cast<double>(last)) << cell;
  }
}

TEST(DeltaMapTest, OneDimensionOrNoValueIsNotDrawn) {
  EXPECT_FALSE(DeltaMap(shapeOf({})).isDrawn());
  EXPECT_FALSE(DeltaMap(shapeOf({3})).isDrawn());
  EXPECT_FALSE(DeltaMap(shapeOf({3, 0})).isDrawn());
  EXPECT_TRUE(DeltaMap(shapeOf({1, 1})).isDrawn());
}

TEST(DeltaMapTest, ComparisonsHavePicturesWhereTheyAreAskedFor) {
  const memory::Dictionary first =
      dictionary("a", StoredArray<double>("v", {2, 2}, {1, 2, 3, 4}), row<double>("line", {1, 2}));
  const memory::Dictionary second = dictionary(
      "b", StoredArray<double>("v", {2, 2}, {1, 2, 3.5, 4}), row<double>("line", {1, 3}));
  Options options;
  EXPECT_FALSE(compare(first, second, options).rows.at(0).picture);
  options.pictures = true;
  const Report report = compare(first, second, options);
  ASSERT_EQ(report.rows.size(), 2);
  ASSERT_TRUE(report.rows[0].picture);
  EXPECT_EQ(report.rows[0].picture->across.dimension, "d0");
  EXPECT_EQ(report.rows[0].picture->down.dimension, "d1");
  EXPECT_THAT(report.rows[0].picture->cells, ElementsAre(0, 0, 0.5, 0));
  EXPECT_FALSE(report.rows[1].picture);
}

TEST(DeltaMapTest, TextsThatDifferAreInThePicture) {
  const std::vector<memory::Axis> axes = {{"x", 2}, {"y", 1}};
  Options options;
  options.pictures = true;
  const Report report = compare(memory::StringArray("a", axes, {"a", "b"}),
                                memory::StringArray("a", axes, {"a", "c"}), options);
  ASSERT_TRUE(report.rows.at(0).picture);
  EXPECT_THAT(report.rows[0].picture->cells,
              ElementsAre(DoubleEq(0), NanSensitiveDoubleEq(NOT_A_NUMBER)));
}

}  // namespace
}  // namespace quillon::compare
