#include <gtest/gtest.h>
#include <quillon/arrow/Owned.h>

#include <utility>

namespace quillon::arrow {
namespace {

/// A schema that counts its releases in `count`.
ArrowSchema counting(int& count) {
  ArrowSchema schema = {};
  schema.private_data = &count;
  schema.release = [](ArrowSchema* released) {
    ++*static_cast<int*>(released->private_data);
    released->release = nullptr;
  };
  return schema;
}

TEST(OwnedTest, ReleasesWhatItHoldsOnce) {
  int releases = 0;
  {
    ArrowSchema schema = counting(releases);
    Owned<ArrowSchema> owned(&schema);
    EXPECT_EQ(schema.release, nullptr);
    EXPECT_TRUE(owned);
    owned.reset();
    EXPECT_FALSE(owned);
    EXPECT_EQ(releases, 1);
  }
  EXPECT_EQ(releases, 1);
}

TEST(OwnedTest, NothingIsHeldAtFirst) {
  EXPECT_FALSE(Owned<ArrowArray>());
  EXPECT_FALSE(Owned<ArrowArray>(nullptr));
}

TEST(OwnedTest, NothingOfWhatWasReleasedIsLeft) {
  int releases = 0;
  ArrowSchema schema = counting(releases);
  Owned<ArrowSchema> owned(&schema);
  owned.reset();
  EXPECT_EQ(releases, 1);
  EXPECT_EQ(owned->private_data, nullptr);
}

TEST(OwnedTest, IsMovedWithoutARelease) {
  int first = 0;
  int second = 0;
  ArrowSchema one = counting(first);
  ArrowSchema other = counting(second);
  Owned<ArrowSchema> a(&one);
  Owned<ArrowSchema> b(std::move(a));
  EXPECT_EQ(first, 0);
  Owned<ArrowSchema> c(&other);
  c = std::move(b);
  EXPECT_EQ(second, 1);
  EXPECT_EQ(first, 0);
  Owned<ArrowSchema>& same = c;
  c = std::move(same);
  EXPECT_EQ(first, 0);
  c.reset();
  EXPECT_EQ(first, 1);
}

}  // namespace
}  // namespace quillon::arrow
