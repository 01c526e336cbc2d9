#include <gtest/gtest.h>
#include <quillon/compare/Options.h>

namespace quillon::compare {
namespace {

TEST(OptionsTest, ValuesAloneAreComparedAndExactlyUnlessAskedForMore) {
  const Options options;
  EXPECT_EQ(options.root, "/");
  EXPECT_EQ(options.tolerance.absolute, 0.0);
  EXPECT_EQ(options.tolerance.relative, 0.0);
  EXPECT_TRUE(options.nanEqual);
  EXPECT_FALSE(options.attributes);
  EXPECT_EQ(options.largest, 1U);
  EXPECT_FALSE(options.pictures);
}

}  // namespace
}  // namespace quillon::compare
