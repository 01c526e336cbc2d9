#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/Nearest.h>

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(NearestTest, NamesThatTakeTheFewestChangesComeFirst) {
  EXPECT_THAT(nearestNames("tmp", {"pressure", "t2m", "temp", "tp"}),
              ElementsAre("temp", "tp", "t2m"));
}

TEST(NearestTest, InsertedRemovedAndReplacedLettersCountAlike) {
  EXPECT_THAT(nearestNames("abc", {"xyz", "abcd", "ab", "abx"}, 4),
              ElementsAre("abcd", "ab", "abx", "xyz"));
}

TEST(NearestTest, CaseIsNoChange) {
  EXPECT_THAT(nearestNames("AREA", {"AREXY", "area"}, 1), ElementsAre("area"));
}

TEST(NearestTest, FewerNamesAreAllOffered) {
  EXPECT_THAT(nearestNames("a", {"b"}), ElementsAre("b"));
  EXPECT_THAT(nearestNames("a", {}), IsEmpty());
}

TEST(NearestTest, AnEmptyNameIsNearestToTheShortest) {
  EXPECT_THAT(nearestNames("", {"abc", "a"}, 1), ElementsAre("a"));
}

TEST(NearestTest, LongNamesEndSoon) {
  const std::string longOne(1U << 24U, 'x');
  EXPECT_THAT(nearestNames(longOne, {longOne, "y"}, 1), ElementsAre(longOne));
}

TEST(OfferTest, NamesTheNearestThree) {
  EXPECT_EQ(offerOf("a", {}), "");
  EXPECT_EQ(offerOf("sts", {"sst"}), "; did you mean 'sst'?");
  EXPECT_EQ(offerOf("sts", {"wind", "sst"}), "; did you mean 'sst' or 'wind'?");
  EXPECT_EQ(offerOf("b", {"dddd", "bb", "b\n", "bbb"}), "; did you mean 'bb', 'b\\n' or 'bbb'?");
}

}  // namespace
}  // namespace quillon::memory
