#include <gmock/gmock.h>
#include <quillon/memory/Paths.h>
#include <quillon/memory/TypedArray.h>

namespace quillon::memory {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PathsTest : public ::testing::Test {
 protected:
  Dictionary m_root{"/"};
  Dictionary& m_climate = m_root.add(Dictionary("climate"));
  Dictionary& m_cells = m_root.add(Dictionary("cells"));
  Dictionary& m_otsu = m_cells.add(Dictionary("otsu"));
};

TEST_F(PathsTest, PathLeadsFromTheRoot) {
  EXPECT_EQ(pathOf(m_root), "/");
  EXPECT_EQ(pathOf(m_cells), "/cells");
  EXPECT_EQ(pathOf(m_otsu), "/cells/otsu");
  EXPECT_EQ(pathOf(m_root, "area"), "/area");
  EXPECT_EQ(pathOf(m_otsu, "area"), "/cells/otsu/area");
}

TEST_F(PathsTest, GroupsBelowAreListedBeforeTheirNextSiblings) {
  m_root.add(memory::IntArray("A", {}, {1}));
  EXPECT_THAT(groupsBelow(m_root), ElementsAre("climate", "cells", "cells/otsu"));
  EXPECT_THAT(groupsBelow(m_cells), ElementsAre("otsu"));
  EXPECT_THAT(groupsBelow(m_otsu), IsEmpty());
}

TEST_F(PathsTest, AnArrayHasAPathToo) {
  EXPECT_EQ(pathOf(m_otsu.add(IntArray("A", {}, {1}))), "/cells/otsu/A");
  EXPECT_EQ(pathOf(IntArray("A", {}, {1})), "/");
}

TEST(LastNameTest, StandsBehindTheLastSlash) {
  EXPECT_EQ(lastNameOf("/cells/otsu"), "otsu");
  EXPECT_EQ(lastNameOf("otsu"), "otsu");
  EXPECT_EQ(lastNameOf("/cells/"), "");
  EXPECT_EQ(lastNameOf("/"), "");
  EXPECT_EQ(lastNameOf(""), "");
}

}  // namespace
}  // namespace quillon::memory
