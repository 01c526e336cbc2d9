#include <ostream>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

class GroupsTest : public testing::Test {
 protected:
  GroupsTest() {
    {
      const Writer writer(m_path, NC_NETCDF4);
      writer.text(NC_GLOBAL, "title", "cells and more");
      const int cells = writer.group("cells");
      writer.text(NC_GLOBAL, "title", "found by threshold", cells);
      writer.group("otsu", cells);
      writer.group("li", cells);
      writer.put<int>(writer.variable("count", NC_INT, {}), {}, {85});
    }
    m_file = std::make_unique<File>(m_path);
  }

  std::string groupError(const std::string& path) const {
    return errorOf([&] { m_file->group(path); });
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  std::unique_ptr<File> m_file;
};

TEST_F(GroupsTest, RootIsTheWholeFileWithItsTitle) {
  EXPECT_EQ(m_file->root().getName(), "/");
  EXPECT_EQ(m_file->root().getDescription(), "cells and more");
  EXPECT_EQ(m_file->title(), "cells and more");
  EXPECT_EQ(m_file->group("cells").getDescription(), "found by threshold");
  EXPECT_EQ(m_file->group("cells/li").getDescription(), "");
}

TEST_F(GroupsTest, VariablesStandBeforeGroups) {
  EXPECT_EQ(m_file->root().getDataName(0), "count");
  EXPECT_EQ(m_file->root().getDataName(1), "cells");
}

TEST_F(GroupsTest, PathsMayBeginAndEndWithASlash) {
  for (const char* path : {"", "/", "//"}) {
    EXPECT_EQ(&m_file->group(path), &m_file->root()) << path;
  }
  const auto* otsu = m_file->group("cells").data("otsu");
  for (const char* path : {"cells/otsu", "/cells/otsu", "cells/otsu/", "/cells//otsu"}) {
    EXPECT_EQ(&m_file->group(path), otsu) << path;
    EXPECT_EQ(&std::as_const(*m_file).group(path), otsu) << path;
  }
}

TEST_F(GroupsTest, MissingGroupIsNamedWithThoseThatAreThere) {
  EXPECT_EQ(groupError("nuclei/otsu"),
            "Cannot read '" + m_path + "': there is no group 'nuclei'; '/' has 'cells'");
  EXPECT_EQ(
      groupError("/cells/yen"),
      "Cannot read '" + m_path + "': there is no group '/cells/yen'; 'cells' has 'otsu', 'li'");
  EXPECT_EQ(groupError("cells/li/x"),
            "Cannot read '" + m_path + "': there is no group 'cells/li/x'; 'li' has no groups");
}

TEST_F(GroupsTest, VariableIsNoGroup) {
  EXPECT_EQ(groupError("count"),
            "Cannot read '" + m_path + "': there is no group 'count'; '/' has 'cells'");
}

TEST_F(GroupsTest, MovedFileKeepsItsEntries) {
  const object_model::Data* count = m_file->root().data("count");
  File moved(std::move(*m_file));
  m_file.reset();
  EXPECT_EQ(moved.root().data("count"), count);
  EXPECT_EQ(count->parent(), &moved.root());
  EXPECT_EQ(arrayAt(moved, "count").getValueAsInt(object_model::TupleX(0UL)), 85);
}

TEST_F(GroupsTest, DictionaryTakenOutKeepsTheFileOpen) {
  const memory::Dictionary taken = std::move(m_file->root());
  m_file.reset();
  EXPECT_EQ(taken.data("count")->asArray()->getValueAsInt(object_model::TupleX(0UL)), 85);
}

}  // namespace
}  // namespace quillon::netcdf
