#include <gmock/gmock.h>
#include <quillon/netcdf/File.h>
#include <quillon/netcdf/Outline.h>

#include <functional>
#include <ostream>

#include "TestFiles.h"
#include "support/PageStyle.h"

namespace quillon::netcdf {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

VariableFacts temperature() {
  VariableFacts facts;
  facts.path = "/climate/SST";
  facts.type = "short";
  facts.dimensions = {{"time", 12, true}, {"lat", 35, false}};
  facts.attributes = {{"units", std::string("Deg C")},
                      {"valid_range", std::vector<short>{-5, 40}},
                      {"scale_factor", std::vector<double>{0.5}},
                      {"flags", std::vector<std::string>{"a", "b"}},
                      {"none", std::vector<int>{}}};
  facts.packing = {0.5, 273.15};
  facts.fill = memory::AttributeValue(std::vector<short>{-999});
  facts.chunks = {1, 35};
  facts.compression.isShuffled = true;
  facts.compression.deflateLevel = 4;
  facts.compression.filters = {{32015, "zstd", {3}}};
  facts.unit = "Deg C";
  facts.description = "sea surface";
  return facts;
}

VariableFacts unreadable() {
  VariableFacts facts;
  facts.path = "/climate/outline";
  facts.type = "point";
  facts.isReadable = false;
  facts.reason = "compound type 'point'";
  return facts;
}

std::vector<GroupFacts> groups() {
  GroupFacts root;
  root.path = "/";
  GroupFacts climate;
  climate.path = "/climate";
  climate.title = "Ships";
  climate.attributes = {{"title", std::string("Ships")}, {"version", std::vector<int>{3}}};
  climate.variables = {temperature(), unreadable()};
  return {root, climate};
}

TEST(OutlineTest, FactsAreThoseOfAGroupAndOfAllBelowIt) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "variables: int v; data: v = 1; group: a { group: b { group: c { } } group: d { } }");
  const File file(scratch.path("a.nc"));
  const auto pathsBelow = [&](const std::string& path) {
    std::vector<std::string> paths;
    for (const GroupFacts& group : factsBelow(file, path)) {
      paths.push_back(group.path);
    }
    return paths;
  };
  EXPECT_THAT(pathsBelow("/"), ElementsAre("/", "/a", "/a/b", "/a/b/c", "/a/d"));
  EXPECT_THAT(pathsBelow("a/b/"), ElementsAre("/a/b", "/a/b/c"));
}

TEST(OutlineTest, TextHasALineForEachVariableAndOneForItsStorage) {
  EXPECT_EQ(
      outlineText(groups(), false),
      "/\n"
      "\n"
      "/climate  Ships\n"
      "  SST      short  time=12 (unlimited) lat=35  Deg C  sea surface\n"
      "      packing: stored * 0.5 + 273.15; fill: -999 (short); chunks: 1 x 35; compression: "
      "shuffle, deflate 4, zstd 3\n"
      "  outline  point  single value\n"
      "      cannot be read: compound type 'point'\n");
}

TEST(OutlineTest, NothingIsSaidOfTheShapeOfWhatHasNoType) {
  GroupFacts group;
  group.path = "/";
  VariableFacts hidden;
  hidden.path = "/bits";
  hidden.isReadable = false;
  hidden.reason = "bit field type";
  group.variables = {hidden};
  EXPECT_EQ(outlineText({group}, false), "/\n  bits\n      cannot be read: bit field type\n");
}

/// What is said of how a variable is stored, as text and as JSON.
struct StorageCase {
  const char* rule;
  std::function<void(VariableFacts& facts)> store;
  std::string text;
  std::string json;
};

void PrintTo(const StorageCase& c, std::ostream* os) { *os << c.rule; }

class OutlineOfStorageTest : public testing::TestWithParam<StorageCase> {};

TEST_P(OutlineOfStorageTest, SaysWhatThereIs) {
  VariableFacts facts;
  facts.path = "/v";
  facts.type = "short";
  GetParam().store(facts);
  GroupFacts group;
  group.path = "/";
  group.variables = {facts};
  EXPECT_EQ(outlineText({group}, false),
            "/\n  v  short  single value\n      " + GetParam().text + "\n");
  EXPECT_THAT(outlineJson({group}, "a.nc"),
              HasSubstr(R"("shape": [], )" + GetParam().json + R"(, "unit": "")"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OutlineOfStorageTest,
    testing::Values(
        StorageCase{"ScaleAlone", [](VariableFacts& facts) { facts.packing.scaleFactor = 0.5; },
                    "packing: stored * 0.5",
                    R"("packing": {"scale_factor": 0.5, "add_offset": null})"},
        StorageCase{"OffsetAlone", [](VariableFacts& facts) { facts.packing.addOffset = 2; },
                    "packing: stored + 2", R"("packing": {"scale_factor": null, "add_offset": 2})"},
        StorageCase{"DeflateAlone",
                    [](VariableFacts& facts) { facts.compression.deflateLevel = 1; },
                    "compression: deflate 1", R"("compression": "deflate 1")"},
        StorageCase{"FiltersAlone",
                    [](VariableFacts& facts) {
                      facts.compression.filters = {{307, "bzip2", {9}}, {3, "fletcher32", {}}};
                    },
                    "compression: bzip2 9, fletcher32", R"("compression": "bzip2 9, fletcher32")"},
        StorageCase{"ShuffleAlone",
                    [](VariableFacts& facts) { facts.compression.isShuffled = true; },
                    "compression: shuffle", R"("compression": "shuffle")"}),
    [](const auto& c) { return c.param.rule; });

TEST(OutlineTest, VariableWithoutAnythingIsAnEmptyLine) {
  GroupFacts group;
  group.path = "/";
  group.variables = {VariableFacts()};
  EXPECT_EQ(outlineText({group}, false), "/\n\n");
}

TEST(OutlineTest, ColumnThatIsEmptyEverywhereTakesNoPlace) {
  GroupFacts group;
  group.path = "/";
  VariableFacts variable;
  variable.path = "/v";
  variable.type = "int";
  variable.description = "a count";
  group.variables = {variable};
  EXPECT_EQ(outlineText({group}, false), "/\n  v  int  single value  a count\n");
}

TEST(OutlineTest, TextHasAttributesWhereTheyAreAskedFor) {
  EXPECT_EQ(
      outlineText(groups(), true),
      "/\n"
      "\n"
      "/climate  Ships\n"
      "      title = \"Ships\"\n"
      "      version = 3\n"
      "  SST      short  time=12 (unlimited) lat=35  Deg C  sea surface\n"
      "      packing: stored * 0.5 + 273.15; fill: -999 (short); chunks: 1 x 35; compression: "
      "shuffle, deflate 4, zstd 3\n"
      "      units = \"Deg C\"\n"
      "      valid_range = -5, 40 (short)\n"
      "      scale_factor = 0.5\n"
      "      flags = \"a\", \"b\"\n"
      "      none = \n"
      "  outline  point  single value\n"
      "      cannot be read: compound type 'point'\n");
}

TEST(OutlineTest, NumbersHaveTheNameOfTheirTypeUnlessNobodyWondersAboutIt) {
  GroupFacts group;
  group.path = "/";
  group.attributes = {{"b", std::vector<signed char>{-1}}, {"ub", std::vector<unsigned char>{1}},
                      {"s", std::vector<short>{-2}},       {"us", std::vector<unsigned short>{2}},
                      {"i", std::vector<int>{-3}},         {"ui", std::vector<unsigned int>{3}},
                      {"l", std::vector<long>{-4}},        {"ul", std::vector<unsigned long>{4}},
                      {"f", std::vector<float>{0.5F}},     {"d", std::vector<double>{0.25}}};
  EXPECT_EQ(outlineText({group}, true),
            "/\n"
            "      b = -1 (byte)\n"
            "      ub = 1 (ubyte)\n"
            "      s = -2 (short)\n"
            "      us = 2 (ushort)\n"
            "      i = -3\n"
            "      ui = 3 (uint)\n"
            "      l = -4 (int64)\n"
            "      ul = 4 (uint64)\n"
            "      f = 0.5 (float)\n"
            "      d = 0.25\n");
}

TEST(OutlineTest, JsonHasEverything) {
  EXPECT_EQ(
      outlineJson(groups(), "a.nc"),
      R"({"file": "a.nc", "groups": [{"path": "/", "title": "", "attributes": {}, "variables": []}, )"
      R"({"path": "/climate", "title": "Ships", "attributes": {"title": "Ships", "version": 3}, )"
      R"("variables": [{"name": "SST", "type": "short", "dimensions": {"time": 12, "lat": 35}, )"
      R"("shape": [12, 35], "unlimited": ["time"], )"
      R"("packing": {"scale_factor": 0.5, "add_offset": 273.15}, "fill": -999, "chunks": [1, 35], )"
      R"("compression": "shuffle, deflate 4, zstd 3", "unit": "Deg C", )"
      R"("description": "sea surface", "attributes": {"units": "Deg C", "valid_range": [-5, 40], )"
      R"("scale_factor": 0.5, "flags": ["a", "b"], "none": []}, "readable": true, "reason": null}, )"
      R"({"name": "outline", "type": "point", "dimensions": {}, "shape": [], "unit": "", )"
      R"("description": "", "attributes": {}, "readable": false, )"
      R"("reason": "compound type 'point'"}]}]})");
}

TEST(OutlineTest, HtmlUnfoldsToStorageAndAttributes) {
  const std::string page = outlineHtml(groups(), "a.nc");
  EXPECT_THAT(page, HasSubstr("<title>a.nc</title>"));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(
      page, HasSubstr("<h1>a.nc</h1>\n"
                      "<h2>/ <span></span></h2>\n"
                      "<h2>/climate <span>Ships</span></h2>\n"
                      "<details>\n<summary class=\"faint\">2 attributes</summary>\n<table>\n"
                      "<tr><th>title</th><td>&quot;Ships&quot;</td></tr>\n"
                      "<tr><th>version</th><td>3</td></tr>\n"
                      "</table>\n</details>\n"
                      "<details>\n<summary><strong>SST</strong> <span>short</span> "
                      "<span class=\"faint\">time=12 (unlimited) lat=35</span> <span>Deg C</span> "
                      "<span class=\"faint\">sea surface</span> </summary>\n<table>\n"
                      "<tr><th>packing</th><td>stored * 0.5 + 273.15</td></tr>\n"
                      "<tr><th>fill</th><td>-999 (short)</td></tr>\n"
                      "<tr><th>chunks</th><td>1 x 35</td></tr>\n"
                      "<tr><th>compression</th><td>shuffle, deflate 4, zstd 3</td></tr>\n"
                      "<tr><th>units</th><td>&quot;Deg C&quot;</td></tr>\n"));
  EXPECT_THAT(page, HasSubstr("<details>\n<summary><strong>outline</strong> <span>point</span> "
                              "<span class=\"faint\">single value</span> "
                              "<span class=\"bad\">cannot be read</span></summary>\n<table>\n"
                              "<tr><th>cannot be read</th><td>compound type &#39;point&#39;</td>"
                              "</tr>\n</table>\n</details>\n</body>\n</html>\n"));
}

TEST(OutlineTest, StyleIsMadeOfRulesWhoseColoursAreNamed) {
  ::test::expectSoundStyle(outlineHtml({}, ""));
}

TEST(OutlineTest, WhatComesFromTheFileIsEscaped) {
  GroupFacts group;
  group.path = "/<b>\x1b";
  group.title = "\x1b[2J<script>";
  VariableFacts variable;
  variable.path = "/<b>\x1b/a\nb";
  variable.type = "<int>";
  variable.unit = "\\";
  variable.attributes = {{"<a>", std::string("\x1b<img>")}};
  group.variables = {variable};
  EXPECT_EQ(outlineText({group}, true),
            "/<b>\\x1b  \\x1b[2J<script>\n"
            "  a\\nb  <int>  single value  \\\\\n"
            "      <a> = \"\\x1b<img>\"\n");
  const std::string page = outlineHtml({group}, "<file>");
  for (const char* markup : {"<script", "<img", "<b>", "<int>", "<a>", "<file>", "\x1b"}) {
    EXPECT_THAT(page, Not(HasSubstr(markup)));
  }
}

TEST(OutlineTest, ADimensionThatOccursTwiceIsNamedOnceInJson) {
  GroupFacts group;
  VariableFacts variable;
  variable.dimensions = {{"x", 2, false}, {"x", 2, false}};
  group.variables = {variable};
  EXPECT_THAT(outlineJson({group}, ""), HasSubstr(R"("dimensions": {"x": 2}, "shape": [2, 2])"));
}

}  // namespace
}  // namespace quillon::netcdf
