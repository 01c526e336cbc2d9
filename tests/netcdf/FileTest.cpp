#include <fcntl.h>

#include <filesystem>
#include <ostream>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

/// How the descriptors of this process that lead to a file were opened: O_RDONLY, O_WRONLY, O_RDWR.
std::vector<int> waysOfOpening(const std::string& path) {
  std::vector<int> ways;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    if (std::filesystem::read_symlink(entry.path(), error) == path) {
      ways.push_back(::fcntl(std::stoi(entry.path().filename()), F_GETFL) & O_ACCMODE);
    }
  }
  return ways;
}

TEST(OpenedFileTest, IsDecodedWithWindowsOf64MiBUnlessAskedForOthers) {
  EXPECT_TRUE(OpenOptions().decode);
  EXPECT_EQ(OpenOptions().windowBytes, 67'108'864U);
}

TEST(RangeTest, IsOfNoIndicesFromTheFirstOnUnlessToldOtherwise) {
  EXPECT_EQ(Range().first, 0);
  EXPECT_EQ(Range().count, 0);
  EXPECT_EQ(Range().step, 1);
}

TEST(OpenedFileTest, IsOpenForReadingAlone) {
  const Scratch scratch;
  for (const int format : {0, NC_64BIT_DATA, NC_NETCDF4}) {
    const std::string path =
        std::filesystem::canonical(scratch.path(".")) / ("a" + std::to_string(format) + ".nc");
    {
      const Writer writer(path, format);
      writer.put<int>(writer.variable("count", NC_INT, {}), {}, {85});
    }
    const File file(path);
    arrayAt(file, "count").getValueAsInt(object_model::TupleX(0));
    EXPECT_THAT(waysOfOpening(path),
                testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(O_RDONLY)));
  }
}

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

class CornerTest : public testing::Test {
 protected:
  CornerTest() {
    const Writer writer(m_path, NC_NETCDF4);
    const int x = writer.dimension("x", 2);
    const int group = writer.group("inner", writer.group("outer"));
    const int y = writer.dimension("y", NC_UNLIMITED, group);
    writer.text(NC_GLOBAL, "title", "deep", group);
    const int numbers = writer.variable("A", NC_INT, {y, x}, group);
    writer.put<int>(numbers, {3, 2}, {1, 2, 3, 4, 5, 6}, group);
    const int letters = writer.variable("L", NC_CHAR, {y, x}, group);
    writer.put<char>(letters, {3, 2}, {'a', 'b', 'c', 'd', 'e', 'f'}, group);
    const int below = writer.group("below", group);
    writer.put<int>(writer.variable("B", NC_INT, {y}, below), {3}, {7, 8, 9}, below);
  }

  using Content = std::map<std::string, std::vector<std::string>>;

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(CornerTest, HoldsTheFirstCoordinatesAlongTheNamedDimensions) {
  const File file(m_path);
  EXPECT_EQ(contentOf(file.corner("/outer/inner/", {{"x", 1}, {"y", 2}})),
            (Content{{"/A", {"1", "3"}}, {"/L", {"ab", "cd"}}, {"/below/B", {"7", "8"}}}));
  EXPECT_EQ(contentOf(file.corner("outer/inner", {{"y", 1}})),
            (Content{{"/A", {"1", "2"}}, {"/L", {"ab"}}, {"/below/B", {"7"}}}));
}

TEST_F(CornerTest, IsTheWholeGroupWhereNothingIsCut) {
  const File file(m_path);
  const Content whole = contentOf(file.group("outer/inner"));
  EXPECT_EQ(contentOf(file.corner("outer/inner", {})), whole);
  EXPECT_EQ(contentOf(file.corner("outer/inner", {{"x", 2}, {"y", 4}, {"z", 1}})), whole);
}

TEST_F(CornerTest, HasNameAndTitleOfTheGroup) {
  const memory::Dictionary corner = File(m_path).corner("outer/inner", {{"x", 1}});
  EXPECT_EQ(corner.getName(), "inner");
  EXPECT_EQ(corner.getDescription(), "deep");
}

TEST_F(CornerTest, ReadsNothingElse) {
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(1000, reads));
  const memory::Dictionary corner = file.corner("outer/inner", {{"x", 1}, {"y", 2}});
  EXPECT_EQ(corner.data("A")->asArray()->getValueAsInt(object_model::TupleX(2)), 1);
  EXPECT_EQ(reads, std::vector<unsigned long>{8});
}

TEST_F(CornerTest, OfAMissingGroupIsAnError) {
  EXPECT_EQ(errorOf([&] { return File(m_path).corner("outer/x", {}); }),
            "Cannot read '" + m_path + "': there is no group 'outer/x'; 'outer' has 'inner'");
}

}  // namespace
}  // namespace quillon::netcdf
