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

TEST(NearestTest, LettersAreInsertedAndRemovedAtTheStartAsElsewhere) {
  EXPECT_THAT(nearestNames("ab", {"xy", "b", "ab"}), ElementsAre("ab", "b", "xy"));
  EXPECT_THAT(nearestNames("b", {"xy", "ab", "b"}), ElementsAre("b", "ab", "xy"));
}

TEST(NearestTest, CaseIsNoChange) {
  EXPECT_THAT(nearestNames("AREA", {"AREXY", "area"}, 1), ElementsAre("area"));
  for (char lower = 'a'; lower <= 'z'; ++lower) {
    const std::string name(1, lower);
    const std::string upper(1, static_cast<char>(lower - 'a' + 'A'));
    EXPECT_THAT(nearestNames(name, {"0", upper}, 1), ElementsAre(upper));
  }
  EXPECT_THAT(nearestNames("@[", {"00", "`{", "@["}), ElementsAre("@[", "00", "`{"));
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

TEST(NearestTest, NamesAreComparedUpTo200Letters) {
  const std::string name(201, 'x');
  const std::string last = std::string(199, 'x') + "yx";
  const std::string behind = std::string(200, 'x') + "y";
  EXPECT_THAT(nearestNames(name, {last, behind, name}), ElementsAre(behind, name, last));
}

TEST(OfferTest, NamesTheNearestThree) {
  EXPECT_EQ(offerOf("a", {}), "");
  EXPECT_EQ(offerOf("sts", {"sst"}), "; did you mean 'sst'?");
  EXPECT_EQ(offerOf("sts", {"wind", "sst"}), "; did you mean 'sst' or 'wind'?");
  EXPECT_EQ(offerOf("b", {"dddd", "bb", "b\n", "bbb"}), "; did you mean 'bb', 'b\\n' or 'bbb'?");
}

}  // namespace
}  // namespace quillon::memory
