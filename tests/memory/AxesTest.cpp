#include <gmock/gmock.h>
#include <quillon/memory/Axes.h>
#include <quillon/memory/TypedArray.h>

namespace quillon::memory {
namespace {

using object_model::AxisType;

IntArray withAxes(const std::string& name, std::vector<Axis> axes) {
  unsigned long count = 1;
  for (const Axis& axis : axes) {
    count *= axis.size();
  }
  return IntArray(name, std::move(axes), std::vector<long>(count));
}

TEST(AxesTest, EachAxisHasItsNameSizeAndKind) {
  const std::vector<AxisFacts> axes =
      axesOf(withAxes("a", {{"x", 3}, {AxisType::Time, 2}, {"", 0}}));
  ASSERT_EQ(axes.size(), 3U);
  EXPECT_EQ(axes[0].name, "x");
  EXPECT_EQ(axes[0].size, 3U);
  EXPECT_EQ(axes[0].type, OTHER_AXIS);
  EXPECT_EQ(axes[1].name, "time");
  EXPECT_EQ(axes[1].size, 2U);
  EXPECT_EQ(axes[1].type, AxisType::Time);
  EXPECT_EQ(axes[2].name, "");
  EXPECT_EQ(axes[2].size, 0U);
}

TEST(AxesTest, WithoutDimensionsThereAreNone) {
  EXPECT_THAT(axesOf(withAxes("a", {})), ::testing::IsEmpty());
}

TEST(AxesTest, TheFirstRepeatedNameIsNamed) {
  const auto repeated = [](std::vector<Axis> axes) {
    return repeatedAxis(axesOf(withAxes("a", std::move(axes))));
  };
  EXPECT_EQ(repeated({{"x", 1}, {"y", 1}}), "");
  EXPECT_EQ(repeated({{"x", 1}, {"y", 1}, {"y", 1}, {"x", 1}}), "x");
  EXPECT_EQ(repeated({}), "");
}

TEST(AxesTest, AxesOfANameAreCounted) {
  const std::vector<AxisFacts> axes = axesOf(withAxes("a", {{"x", 1}, {"y", 1}, {"x", 1}}));
  EXPECT_EQ(countOf("x", axes), 2);
  EXPECT_EQ(countOf("y", axes), 1);
  EXPECT_EQ(countOf("z", axes), 0);
}

TEST(AxesTest, ACoordinateIsCalledAsItsOnlyAxis) {
  EXPECT_TRUE(isCoordinate(withAxes("x", {{"x", 2}})));
  EXPECT_FALSE(isCoordinate(withAxes("x", {{"y", 2}})));
  EXPECT_FALSE(isCoordinate(withAxes("x", {{"x", 2}, {"y", 1}})));
  EXPECT_FALSE(isCoordinate(withAxes("x", {})));
}

TEST(AxesTest, ShapeStartsWithTheFirstDimension) {
  EXPECT_EQ(shapeOf(withAxes("a", {{"x", 2}, {"y", 1}})), (std::vector<unsigned long>{2, 1}));
  EXPECT_EQ(shapeOf(withAxes("a", {})), std::vector<unsigned long>());
}

TEST(AxesTest, ShapesAreTheSameInNumberAndExtents) {
  const IntArray array = withAxes("a", {{"x", 2}, {"y", 1}});
  EXPECT_TRUE(haveSameShape(array, withAxes("b", {{"p", 2}, {"q", 1}})));
  EXPECT_FALSE(haveSameShape(array, withAxes("b", {{"x", 1}, {"y", 2}})));
  EXPECT_FALSE(haveSameShape(array, withAxes("b", {{"x", 2}, {"y", 2}})));
  EXPECT_FALSE(haveSameShape(array, withAxes("b", {{"x", 2}})));
  EXPECT_TRUE(haveSameShape(withAxes("a", {}), withAxes("b", {})));
}

}  // namespace
}  // namespace quillon::memory
