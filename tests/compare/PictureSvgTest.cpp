#include <gmock/gmock.h>

#include "PictureSvg.h"
#include "Support.h"

namespace quillon::compare {
namespace {

using ::testing::StartsWith;

Picture pictureOf(unsigned long across, unsigned long down, std::vector<double> cells) {
  return {{"x", across, across}, {"y", down, down}, std::move(cells)};
}

std::string drawn(const std::string& viewBox, const std::string& paths) {
  return "<svg viewBox=\"" + viewBox +
         "\" preserveAspectRatio=\"none\"><g id=\"p\">"
         "<rect class=\"d0\" width=\"100%\" height=\"100%\"/>" +
         paths + "</g></svg>";
}

TEST(PictureSvgTest, CellsOfOneColourInARowAreOneStroke) {
  EXPECT_EQ(drawingOf(pictureOf(3, 2, {8, 8, 0, 0, 8, 8}), "p"),
            drawn("0 0 3 2", "<path class=\"d8\" d=\"M0 0.5h2M1 1.5h2\"/>"));
}

TEST(PictureSvgTest, StrokesEndWithTheirRow) {
  EXPECT_EQ(drawingOf(pictureOf(2, 2, {0, 8, 8, 0}), "p"),
            drawn("0 0 2 2", "<path class=\"d8\" d=\"M1 0.5h1M0 1.5h1\"/>"));
}

TEST(PictureSvgTest, DeltasTooSmallForAPartHaveTheFirstColour) {
  EXPECT_EQ(
      drawingOf(pictureOf(2, 1, {5e-324, 1e308}), "p"),
      drawn("0 0 2 1", "<path class=\"d1\" d=\"M0 0.5h1\"/><path class=\"d8\" d=\"M1 0.5h1\"/>"));
}

TEST(PictureSvgTest, ColoursAreEqualPartsOfTheLargestDeltaEndIncluded) {
  EXPECT_EQ(drawingOf(pictureOf(5, 1, {1, 1.01, 2, 1e-9, 8}), "p"),
            drawn("0 0 5 1",
                  "<path class=\"d1\" d=\"M0 0.5h1M3 0.5h1\"/>"
                  "<path class=\"d2\" d=\"M1 0.5h2\"/>"
                  "<path class=\"d8\" d=\"M4 0.5h1\"/>"));
}

TEST(PictureSvgTest, InfiniteDeltasHaveTheColourOfTheLargest) {
  const Picture picture = pictureOf(3, 1, {INFINITE, 2, 1});
  EXPECT_EQ(drawingOf(picture, "p"), drawn("0 0 3 1",
                                           "<path class=\"d4\" d=\"M2 0.5h1\"/>"
                                           "<path class=\"d8\" d=\"M0 0.5h2\"/>"));
  EXPECT_THAT(legendOf(picture), ::testing::EndsWith("</svg> up to 2"));
}

TEST(PictureSvgTest, LegendIsOfTheColoursThatThereAre) {
  EXPECT_EQ(legendOf(pictureOf(2, 1, {0, NOT_A_NUMBER})),
            "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"dn\" "
            "d=\"M0 .5h1\"/></svg> without a delta");
}

TEST(PictureSvgTest, LegendIsOfDeltasBelowOneToo) {
  EXPECT_THAT(legendOf(pictureOf(2, 1, {0, 0.5})), ::testing::EndsWith("</svg> up to 0.5"));
}

TEST(PictureSvgTest, ItsSidesAreAsLongAsTheirCellsButNotTooShort) {
  EXPECT_THAT(drawingAgain(pictureOf(4, 2, std::vector<double>(8)), "p"),
              StartsWith("<svg width=\"384\" height=\"192\" viewBox=\"0 0 4 2\""));
  EXPECT_THAT(drawingAgain(pictureOf(1, 100, std::vector<double>(100)), "p"),
              StartsWith("<svg width=\"24\" height=\"384\" viewBox=\"0 0 1 100\""));
}

}  // namespace
}  // namespace quillon::compare
