#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Formats.h>

#include "TestArrays.h"

namespace quillon::tables {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class FormatsTest : public ::testing::Test {
 protected:
  std::string text(const std::string& name, const Writing& writing = {}) const {
    std::string result;
    unsigned long rows = 0;
    const Table table = m_table.reporting([&rows](unsigned long run) { rows += run; });
    write(table, formatOf(name).value(), into(result), writing);
    EXPECT_EQ(rows, rowsRead(m_table, formatOf(name).value(), writing)) << name;
    return result;
  }

  static long lines(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

  static memory::Dictionary data() {
    memory::Dictionary result("data");
    result.add(memory::DoubleArray("v", {{"x", 12}}, countedUp<double>(12)));
    return result;
  }

  memory::Dictionary m_data = data();
  Table m_table = Table(m_data, plan(m_data));
};

TEST_F(FormatsTest, EachNameStandsForItsWriter) {
  for (const std::string& name : formatNames()) {
    EXPECT_TRUE(formatOf(name)) << name;
  }
  EXPECT_EQ(formatOf("CSV"), std::nullopt);
  EXPECT_EQ(formatOf(""), std::nullopt);
  EXPECT_THAT(text("text"), StartsWith("x  v\n"));
  EXPECT_THAT(text("markdown"), StartsWith("| x |"));
  EXPECT_THAT(text("html"), StartsWith("<table>"));
  EXPECT_THAT(text("csv"), StartsWith("x,"));
  EXPECT_THAT(text("tsv"), StartsWith("x\t"));
  EXPECT_THAT(text("json"), StartsWith("[\n{\"x\": 0, "));
  EXPECT_THAT(text("jsonl"), StartsWith("{\"x\": 0, "));
}

TEST_F(FormatsTest, FractionsHaveSixDigitsUnlessAskedForOthers) {
  memory::Dictionary third("data");
  third.add(memory::DoubleArray("v", {{"x", 1}}, {1.0 / 3}));
  std::string result;
  write(Table(third, plan(third)), Format::Text, into(result));
  EXPECT_EQ(result, "x         v\n0  0.333333\n[1 row x 2 columns]\n");
}

TEST_F(FormatsTest, PeopleBeginWithTenRowsAndProgramsHaveAll) {
  EXPECT_EQ(lines(text("text")), 10 + 2);
  EXPECT_EQ(lines(text("markdown")), 10 + 2);
  EXPECT_EQ(lines(text("html")), 10 + 7);
  EXPECT_EQ(lines(text("csv")), 12 + 1);
  EXPECT_EQ(lines(text("tsv")), 12 + 1);
  EXPECT_EQ(lines(text("json")), 12 + 2);
  EXPECT_EQ(lines(text("jsonl")), 12);
}

TEST_F(FormatsTest, RowsThatAreAskedForHoldInEachFormat) {
  const std::string three[] = {text("text", {3}), text("markdown", {3}), text("csv", {3}),
                               text("jsonl", {3})};
  EXPECT_EQ(lines(three[0]), 3 + 2);
  EXPECT_EQ(lines(three[1]), 3 + 2);
  EXPECT_EQ(lines(three[2]), 3 + 1);
  EXPECT_EQ(lines(three[3]), 3);
  EXPECT_EQ(lines(text("html", {3})), 3 + 7);
  EXPECT_EQ(lines(text("tsv", {3})), 3 + 1);
  EXPECT_EQ(lines(text("json", {3})), 3 + 2);
  EXPECT_EQ(lines(text("text", {0})), 12 + 2);
  EXPECT_EQ(lines(text("html", {0})), 12 + 7);
}

TEST_F(FormatsTest, LongTablesComeInPieces) {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("v", {{"x", 20'000}}, countedUp<double>(20'000)));
  const Table table(data, plan(data));
  for (const std::string& name : formatNames()) {
    std::size_t pieces = 0;
    write(table, formatOf(name).value(),
          [&](std::string_view piece) {
            EXPECT_LE(piece.size(), 65'800U) << name;
            ++pieces;
          },
          {0});
    EXPECT_GT(pieces, 2U) << name;
  }
}

TEST_F(FormatsTest, HtmlWithAPageIsADocument) {
  Writing writing;
  writing.page = Page{"title", "group"};
  EXPECT_THAT(text("html", writing), StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(text("html", writing), HasSubstr("10 of 12 rows"));
  writing.maxRows = 3;
  EXPECT_THAT(text("html", writing), HasSubstr("3 of 12 rows"));
}

TEST(FormatsOfFractionsTest, DigitsAndWidthAreThoseThatAreAskedFor) {
  memory::Dictionary data("data");
  data.add(memory::DoubleArray("v", {{"x", 1}}, {1.0 / 3}));
  data.add(memory::DoubleArray("wide", {{"x", 1}}, {1}));
  const Table table(data, plan(data));
  const auto text = [&](Format format, const Writing& writing) {
    std::string result;
    write(table, format, into(result), writing);
    return result;
  };
  EXPECT_EQ(text(Format::Text, {{}, 2, 0}), "x     v  wide\n0  0.33     1\n[1 row x 3 columns]\n");
  EXPECT_EQ(text(Format::Text, {{}, 2, 12}), "x  ...  wide\n0  ...     1\n[1 row x 3 columns]\n");
  EXPECT_THAT(text(Format::Markdown, {{}, 2, 0}), HasSubstr("| 0 | 0.33 | 1 |\n"));
  EXPECT_THAT(text(Format::Html, {{}, 2, 0}), HasSubstr(">0.33</td>"));
  EXPECT_EQ(text(Format::Csv, {{}, 2, 0}), "x,v,wide\n0,0.3333333333333333,1\n");
}

}  // namespace
}  // namespace quillon::tables
