#include <gmock/gmock.h>

#include "Support.h"
#include "support/PageStyle.h"

namespace quillon::compare {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// What stands in the body of the page.
std::string bodyOf(const Report& report) {
  const std::string page = toHtml(report, "a.nc", "b<c>.nc");
  EXPECT_THAT(page, StartsWith("<!DOCTYPE html>\n<html lang=\"en\">\n"));
  EXPECT_THAT(page, HasSubstr("<title>a.nc and b&lt;c&gt;.nc</title>"));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  const std::string start = "<body>\n";
  const std::string end = "</body>\n</html>\n";
  const std::size_t first = page.find(start) + start.size();
  EXPECT_EQ(page.substr(page.size() - end.size()), end);
  return page.substr(first, page.size() - end.size() - first);
}

TEST(HtmlTest, TheSameSaysSo) {
  EXPECT_EQ(bodyOf(compare(row<double>("a", {1, 2}), row<double>("a", {1, 2}))),
            "<h1>The same</h1>\n"
            "<p><b>a.nc</b> and <b>b&lt;c&gt;.nc</b> · 2 values compared · the same: a = b or both "
            "missing</p>\n");
}

TEST(HtmlTest, AnEntryUnfoldsToItsFiguresAndItsPicture) {
  Options options;
  options.pictures = true;
  options.largest = 2;
  options.tolerance = {0.25, 0.125};
  options.nanEqual = false;
  const Report report =
      compare(dictionary("a", StoredArray<double>("v", {2, 2}, {1, 2, 8, NOT_A_NUMBER})),
              dictionary("b", StoredArray<double>("v", {2, 2}, {1, 4, 16, 5})), options);
  EXPECT_EQ(
      bodyOf(report),
      "<h1>1 entry differs</h1>\n"
      "<p><b>a.nc</b> and <b>b&lt;c&gt;.nc</b> · 4 values compared · the same: a = b or |a − b| ≤ "
      "0.25 + 0.125 · |b|</p>\n"
      "<details>\n"
      "<summary><svg viewBox=\"0 0 2 2\" preserveAspectRatio=\"none\"><g id=\"picture1\">"
      "<rect class=\"d0\" width=\"100%\" height=\"100%\"/><path class=\"d2\" d=\"M1 0.5h1\"/>"
      "<path class=\"d8\" d=\"M0 1.5h1\"/><path class=\"dn\" d=\"M1 1.5h1\"/></g></svg>"
      "<strong>/v</strong> 3 of 4 values differ, 1 missing in one file alone; the largest delta is "
      "8 at d1=1, d0=0: 8 and 16</summary>\n"
      "<div class=\"figures\">\n"
      "<table>\n"
      "<tr><th>values</th><td class=\"n\">4</td></tr>\n"
      "<tr><th>differ</th><td class=\"n\">3 (75 %)</td></tr>\n"
      "<tr><th>missing in one file alone</th><td class=\"n\">1</td></tr>\n"
      "<tr><th>largest delta</th><td class=\"n\">8</td></tr>\n"
      "<tr><th>largest relative delta</th><td class=\"n\">0.5</td></tr>\n"
      "<tr><th>mean delta</th><td class=\"n\">5</td></tr>\n"
      "</table>\n"
      "<table>\n"
      "<tr><th>delta</th><th>d1</th><th>d0</th><th>first</th><th>second</th></tr>\n"
      "<tr><td class=\"n\">8</td><td class=\"n\">1</td><td class=\"n\">0</td>"
      "<td class=\"n\">8</td><td class=\"n\">16</td></tr>\n"
      "<tr><td class=\"n\">2</td><td class=\"n\">0</td><td class=\"n\">1</td>"
      "<td class=\"n\">2</td><td class=\"n\">4</td></tr>\n"
      "</table>\n"
      "<figure>\n"
      "<svg width=\"384\" height=\"384\" viewBox=\"0 0 2 2\" preserveAspectRatio=\"none\" "
      "role=\"img\" aria-label=\"where values differ\"><use href=\"#picture1\"/></svg>\n"
      "<figcaption>The largest delta in each of 2 × 2 cells: d0 (2) from left to right, d1 (2) "
      "downwards.<br>\n"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d1\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d2\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d3\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d4\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d5\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d6\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d7\" d=\"M0 .5h1\"/></svg>"
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"d8\" d=\"M0 .5h1\"/></svg>"
      " up to 8, "
      "<svg width=\"12\" height=\"12\" viewBox=\"0 0 1 1\"><path class=\"dn\" d=\"M0 .5h1\"/></svg>"
      " without a delta</figcaption>\n"
      "</figure>\n"
      "</div>\n"
      "</details>\n");
}

TEST(HtmlTest, SeveralReasonsOfAnEntryAreOneRow) {
  memory::DoubleArray first = row<double>("v", {1});
  memory::DoubleArray second = row<double>("v", {1, 2});
  first.setUnit("m");
  second.setUnit("K");
  EXPECT_EQ(bodyOf(compare(dictionary("a", std::move(first), row<double>("w", {1})),
                           dictionary("b", std::move(second)))),
            "<h1>2 entries differ</h1>\n"
            "<p><b>a.nc</b> and <b>b&lt;c&gt;.nc</b> · 0 values compared · the same: a = b or both "
            "missing</p>\n"
            "<details>\n"
            "<summary><strong>/v</strong> the shapes differ: (1) and (2)<br>\n"
            "the units differ: &#39;m&#39; and &#39;K&#39;</summary>\n"
            "<div class=\"figures\">\n</div>\n</details>\n"
            "<details>\n"
            "<summary><strong>/w</strong> only in the first</summary>\n"
            "<div class=\"figures\">\n</div>\n</details>\n");
}

TEST(HtmlTest, WhatWasNotComparedIsNamed) {
  EXPECT_EQ(
      bodyOf(compare(FailingArray<std::runtime_error>("a", std::runtime_error("<it> is \x1b cut")),
                     row<double>("a", {1, 2}))),
      "<h1>Nothing else differs, 1 not compared</h1>\n"
      "<p><b>a.nc</b> and <b>b&lt;c&gt;.nc</b> · 0 values compared · the same: a = b or both "
      "missing</p>\n"
      "<details>\n"
      "<summary><strong>/</strong> not compared</summary>\n"
      "<div class=\"figures\">&lt;it&gt; is \\x1b cut</div>\n</details>\n");
}

TEST(HtmlTest, TextsOfTheFilesAreNoMarkup) {
  const std::string hostile = "<img src=x onerror=alert(1)>\"'&\x1b";
  memory::StringArray first(hostile, {{hostile, 2}}, {hostile, "a"});
  memory::StringArray second(hostile, {{hostile, 2}}, {"b", "a"});
  first.setUnit(hostile);
  const std::string body =
      bodyOf(compare(dictionary("a", std::move(first)), dictionary("b", std::move(second))));
  EXPECT_THAT(body, Not(HasSubstr("<img")));
  EXPECT_THAT(body, Not(HasSubstr("\x1b")));
  EXPECT_THAT(body, HasSubstr("<strong>/&lt;img src=x onerror=alert(1)&gt;&quot;&#39;&amp;\\x1b"));
  EXPECT_THAT(body, HasSubstr("<th>&lt;img src=x"));
  EXPECT_THAT(body, HasSubstr("<td class=\"n\">&lt;img src=x"));
}

TEST(HtmlTest, AttributesStandBelowTheirEntry) {
  RichArray array("a@b", {{"x", 1}}, {1});
  array.given = {{"u", std::string("<x>")}, {"\x1b", std::string("y")}};
  memory::Dictionary first("a");
  first.add(std::move(array));
  Options options;
  options.attributes = true;
  EXPECT_EQ(bodyOf(compare(first, dictionary("b", row<double>("a@b", {1})), options)),
            "<h1>1 entry differs</h1>\n"
            "<p><b>a.nc</b> and <b>b&lt;c&gt;.nc</b> · 1 value compared · the same: a = b or both "
            "missing</p>\n"
            "<details>\n"
            "<summary><strong>/a@b</strong> @u: only in the first: &#39;&lt;x&gt;&#39;<br>\n"
            "@\\x1b: only in the first: &#39;y&#39;</summary>\n"
            "<div class=\"figures\">\n</div>\n</details>\n");
}

TEST(HtmlTest, AnAtInTheNameOfAnEntryIsPartOfIt) {
  const std::string body = bodyOf(compare(dictionary("a", row<double>("a@b", {1, 2, 3})),
                                          dictionary("b", row<double>("a@b", {1, 2, 4}))));
  EXPECT_THAT(body, HasSubstr("<strong>/a@b</strong> 1 of 3 values differ; the largest delta is 1 "
                              "at x=2: 3 and 4</summary>\n"));
}

TEST(HtmlTest, ShareOfWhatDiffersHasThreeDigits) {
  EXPECT_THAT(bodyOf(compare(row<double>("a", {1, 2, 3}), row<double>("a", {1, 2, 4}))),
              HasSubstr("<td class=\"n\">1 (33.3 %)</td>"));
}

TEST(HtmlTest, EntriesOfOnePathAreOneRowWithTheFiguresOfBoth) {
  const auto make = [](double value) {
    std::vector<memory::Dictionary> items;
    items.push_back(dictionary("item", row<double>("v", {value})));
    return dictionary("a", memory::DictionaryArray("g", {{"x", 1}}, std::move(items)),
                      dictionary("g[0]", row<double>("v", {value, value})));
  };
  const std::string body = bodyOf(compare(make(1), make(2)));
  EXPECT_THAT(body, StartsWith("<h1>1 entry differs</h1>\n"));
  EXPECT_THAT(body, HasSubstr("<tr><td class=\"n\">1</td><td class=\"n\">0</td><td class=\"n\">1"
                              "</td><td class=\"n\">2</td></tr>\n</table>\n<table>\n"
                              "<tr><th>values</th><td class=\"n\">2</td></tr>\n"
                              "<tr><th>differ</th><td class=\"n\">2 (100 %)</td></tr>\n"));
}

TEST(HtmlTest, StyleIsMadeOfRulesWhoseColoursAreNamed) {
  ::test::expectSoundStyle(toHtml(Report(), "", ""));
}

TEST(HtmlTest, WithoutPairsThereAreCountsOnly) {
  Options options;
  options.largest = 0;
  const std::string start =
      "<div class=\"figures\">\n<table>\n<tr><th>values</th><td class=\"n\">2</td></tr>\n"
      "<tr><th>differ</th><td class=\"n\">1 (50 %)</td></tr>\n</table>\n";
  EXPECT_THAT(bodyOf(compare(row<double>("a", {1, 2}), row<double>("a", {1, 3}), options)),
              HasSubstr(start + "</div>\n"));
  options.largest = 1;
  EXPECT_THAT(
      bodyOf(
          compare(row<std::string>("a", {"a", "b"}), row<std::string>("a", {"a", "c"}), options)),
      HasSubstr(start +
                "<table>\n<tr><th>x</th><th>first</th><th>second</th></tr>\n"
                "<tr><td class=\"n\">1</td><td class=\"n\">b</td><td class=\"n\">c</td></tr>\n"
                "</table>\n</div>\n"));
}

TEST(HtmlTest, PlacesHaveTheirCoordinates) {
  RichArray first("a", {{"x", 2}}, {1, 2});
  first.located = {
      std::make_shared<memory::StringArray>(row<std::string>("x", {"left", "<right>"}))};
  EXPECT_THAT(bodyOf(compare(first, row<double>("a", {1, 3}))),
              HasSubstr("<td class=\"n\">1</td><td class=\"n\">1 (&lt;right&gt;)</td>"
                        "<td class=\"n\">2</td><td class=\"n\">3</td>"));
}

TEST(HtmlTest, EachPictureHasANameOfItsOwn) {
  const auto make = [](double value) {
    return dictionary("a", StoredArray<double>("v", {1, 1}, {value}),
                      StoredArray<double>("w", {1, 1}, {value}));
  };
  Options options;
  options.pictures = true;
  const std::string body = bodyOf(compare(make(1), make(2), options));
  for (const char* name : {"picture1", "picture2"}) {
    EXPECT_THAT(body, HasSubstr("<g id=\"" + std::string(name) + "\">"));
    EXPECT_THAT(body, HasSubstr("<use href=\"#" + std::string(name) + "\"/>"));
  }
}

TEST(HtmlTest, TheRuleHasBothTolerancesWhereOneIsGiven) {
  const memory::DoubleArray a = row<double>("a", {1});
  EXPECT_THAT(bodyOf(compare(a, a, within(0.5, 0))),
              HasSubstr("a = b or |a − b| ≤ 0.5 + 0 · |b| or both missing</p>"));
  EXPECT_THAT(bodyOf(compare(a, a, within(0, 0.5))),
              HasSubstr("a = b or |a − b| ≤ 0 + 0.5 · |b| or both missing</p>"));
}

TEST(HtmlTest, HeadlineCountsWhatDiffersAndWhatWasNotCompared) {
  const auto make = [](double value) {
    memory::Dictionary result = dictionary("a", row<double>("v", {value}));
    result.add(
        std::make_unique<FailingArray<std::runtime_error>>("<bad>", std::runtime_error("no")));
    return result;
  };
  const std::string body = bodyOf(compare(make(1), make(2)));
  EXPECT_THAT(body, StartsWith("<h1>1 entry differs, 1 not compared</h1>\n"));
  EXPECT_THAT(body, HasSubstr("<strong>/&lt;bad&gt;</strong> not compared"));
}

TEST(HtmlTest, NamesOfFilesAndOfAPicturesSidesAreNoMarkup) {
  const std::vector<memory::Axis> axes = {{"<x>", 1}, {"<y>", 1}};
  Options options;
  options.pictures = true;
  const Report report =
      compare(memory::DoubleArray("a", axes, {1}), memory::DoubleArray("a", axes, {2}), options);
  EXPECT_THAT(bodyOf(report),
              HasSubstr("&lt;x&gt; (1) from left to right, &lt;y&gt; (1) downwards"));
  EXPECT_THAT(toHtml(report, "<a>", "<b>"),
              HasSubstr("<p><b>&lt;a&gt;</b> and <b>&lt;b&gt;</b> · 1 value compared"));
}

}  // namespace
}  // namespace quillon::compare
