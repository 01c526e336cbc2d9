
#include <sstream>

#include "Hdf5Files.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FactsTest : public testing::Test {
 protected:
  GroupFacts factsOf(const std::string& cdl, const std::string& group = "/") {
    writeCdl(m_path, cdl);
    return File(m_path).facts(group);
  }

  static std::string outlineOf(const VariableFacts& facts) {
    std::ostringstream text;
    text << facts.type << " " << facts.path << "(";
    for (const DimensionFacts& dimension : facts.dimensions) {
      text << dimension.name << "=" << dimension.size << (dimension.isUnlimited ? "*" : "") << " ";
    }
    text << ") " << facts.unit << "|" << facts.description
         << (facts.isReadable ? "" : "! " + facts.reason);
    return text.str();
  }

  static std::vector<std::string> outlinesOf(const GroupFacts& facts) {
    std::vector<std::string> texts;
    for (const VariableFacts& variable : facts.variables) {
      texts.push_back(outlineOf(variable));
    }
    return texts;
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(FactsTest, AVariableIsReadableAndNotCompressedUnlessToldOtherwise) {
  EXPECT_TRUE(VariableFacts().isReadable);
  EXPECT_FALSE(Compression().isShuffled);
  EXPECT_EQ(Compression().deflateLevel, 0);
  EXPECT_EQ(FilterFacts().id, 0U);
  EXPECT_EQ(DimensionFacts().size, 0U);
  EXPECT_FALSE(DimensionFacts().isUnlimited);
}

TEST_F(FactsTest, VariablesAreAsTheFileHasThem) {
  const GroupFacts facts = factsOf(
      "types: byte enum flag {NO = 0, YES = 1}; compound point { int a; }; "
      "dimensions: x = 3; t = UNLIMITED; n = 2; variables: short v(t, x); v:units = \"K\"; "
      "v:long_name = \"name\"; char c(x, n); string s; flag f; point p; int64 l(n); "
      "data: v = 1, 2, 3, 4, 5, 6;");
  EXPECT_THAT(
      outlinesOf(facts),
      ElementsAre("short /v(t=2* x=3 ) K|name", "char /c(x=3 n=2 ) |", "string /s() |",
                  "flag /f() |", "point /p() |! compound type 'point'", "int64 /l(n=2 ) |"));
}

TEST_F(FactsTest, WhatCannotBeReadStandsInItsGroupAlone) {
  const std::string cdl =
      "types: compound point { int a; }; variables: int v; data: v = 1; "
      "group: inner { variables: point p; group: below { variables: point q; } }";
  EXPECT_THAT(outlinesOf(factsOf(cdl)), ElementsAre("int /v() |"));
  EXPECT_THAT(outlinesOf(factsOf(cdl, "inner")),
              ElementsAre("point /inner/p() |! compound type 'point'"));
}

TEST_F(FactsTest, WhatTheLibraryDoesNotListStandsBehindTheRest) {
  {
    const Hdf5Writer writer(m_path);
    writer.group("inner");
    writer.dataset("a", H5T_STD_B8LE);
    writer.dataset("inner/a", H5T_STD_B8LE);
    writer.dataset("inner/b", H5T_NATIVE_INT);
  }
  EXPECT_THAT(outlinesOf(File(m_path).facts("/")), ElementsAre(" /a() |! bit field type"));
  EXPECT_THAT(outlinesOf(File(m_path).facts("inner")),
              ElementsAre("int /inner/b() |", " /inner/a() |! bit field type"));
}

TEST_F(FactsTest, GroupHasPathTitleAndAllAttributes) {
  const GroupFacts facts = factsOf(
      "dimensions: t = UNLIMITED; variables: int v(t); data: v = 1; "
      "group: a { group: b { :title = \"deep\"; :note = 1; variables: int w(t); } }",
      "a/b");
  EXPECT_EQ(facts.path, "/a/b");
  EXPECT_EQ(facts.title, "deep");
  ASSERT_EQ(facts.attributes.size(), 2U);
  EXPECT_EQ(facts.attributes[0].name, "title");
  EXPECT_EQ(facts.attributes[1].name, "note");
  EXPECT_THAT(outlinesOf(facts), ElementsAre("int /a/b/w(t=1* ) |"));
}

TEST_F(FactsTest, PackingAndFillAreThoseOfTheFile) {
  const GroupFacts facts = factsOf(
      "variables: short v; v:scale_factor = 0.5f; v:add_offset = 2.; v:_FillValue = -9s; short w; "
      "w:add_offset = 1.; int plain; data: v = 1;");
  const VariableFacts& v = facts.variables[0];
  EXPECT_EQ(v.packing.scaleFactor, 0.5);
  EXPECT_EQ(v.packing.addOffset, 2);
  EXPECT_EQ(v.fill, memory::AttributeValue(std::vector<short>{-9}));
  EXPECT_EQ(v.attributes.size(), 3U);
  EXPECT_EQ(facts.variables[1].packing.scaleFactor, std::nullopt);
  EXPECT_EQ(facts.variables[1].packing.addOffset, 1);
  EXPECT_EQ(facts.variables[2].fill, std::nullopt);
}

TEST_F(FactsTest, ChunksAndCompressionAreThoseOfTheFile) {
  const GroupFacts facts = factsOf(
      "dimensions: y = 4; x = 6; variables: int v(y, x); v:_ChunkSizes = 2, 3; "
      "v:_DeflateLevel = 5; v:_Shuffle = \"true\"; int sum(x); sum:_Fletcher32 = \"true\"; "
      "int plain(y, x); int deflated(x); deflated:_DeflateLevel = 2; "
      "deflated:_Shuffle = \"false\"; data: v = 1;");
  const VariableFacts& v = facts.variables[0];
  EXPECT_THAT(v.chunks, ElementsAre(2, 3));
  EXPECT_EQ(v.compression.deflateLevel, 5);
  EXPECT_TRUE(v.compression.isShuffled);
  EXPECT_THAT(v.compression.filters, IsEmpty());
  ASSERT_EQ(facts.variables[1].compression.filters.size(), 1U);
  EXPECT_EQ(facts.variables[1].compression.filters[0].name, "fletcher32");
  EXPECT_THAT(facts.variables[2].chunks, IsEmpty());
  EXPECT_EQ(facts.variables[2].compression.deflateLevel, 0);
  EXPECT_EQ(facts.variables[3].compression.deflateLevel, 2);
  EXPECT_FALSE(facts.variables[3].compression.isShuffled);
}

TEST_F(FactsTest, ClassicFilesHaveNeither) {
  {
    const Writer writer(m_path, 0);
    const int t = writer.dimension("t", NC_UNLIMITED);
    writer.put<float>(writer.variable("v", NC_FLOAT, {t}), {2}, {1, 2});
  }
  const GroupFacts facts = File(m_path).facts("");
  EXPECT_THAT(outlinesOf(facts), ElementsAre("float /v(t=2* ) |"));
  EXPECT_THAT(facts.variables[0].chunks, IsEmpty());
  EXPECT_EQ(facts.variables[0].compression.deflateLevel, 0);
  EXPECT_FALSE(facts.variables[0].compression.isShuffled);
  EXPECT_THAT(facts.variables[0].compression.filters, IsEmpty());
}

TEST_F(FactsTest, OfAMissingGroupAreAnError) {
  factsOf("variables: int v; data: v = 1;");
  EXPECT_EQ(errorOf([&] { return File(m_path).facts("none"); }),
            "Cannot read '" + m_path + "': there is no group 'none'; '/' has no groups");
}

}  // namespace
}  // namespace quillon::netcdf
