#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Writers.h>

#include <cmath>

#include "Python.h"
#include "TestArrays.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using ::testing::HasSubstr;
using ::testing::Not;

Dictionary cells() {
  Dictionary data("data");
  memory::DoubleArray area("<area>", {{"x", 2}}, {1.0 / 3, std::nan("")});
  area.setUnit("\"um\"");
  data.add(std::move(area));
  data.add(memory::StringArray("s", {{"x", 2}}, {"a & 'b'", "\n"}));
  return data;
}

TEST(HtmlTest, IsATableWithNamesAndUnitsInItsHead) {
  const Dictionary data = cells();
  std::string text;
  writeHtml(Table(data, plan(data)), into(text));
  EXPECT_EQ(text, R"(<table>
  <thead>
    <tr><th style="text-align: right">x</th><th style="text-align: right">&lt;area&gt;</th><th style="text-align: left">s</th></tr>
    <tr><th style="text-align: right"></th><th style="text-align: right">&quot;um&quot;</th><th style="text-align: left"></th></tr>
  </thead>
  <tbody>
    <tr><td style="text-align: right">0</td><td style="text-align: right">0.333333</td><td style="text-align: left">a &amp; &#39;b&#39;</td></tr>
    <tr><td style="text-align: right">1</td><td style="text-align: right"></td><td style="text-align: left">\n</td></tr>
  </tbody>
</table>
)");
}

TEST(HtmlTest, NoRowOfUnitsWhereThereAreNone) {
  Dictionary data("data");
  data.add(memory::DoubleArray("a", {{"x", 1}}, {1}));
  std::string text;
  writeHtml(Table(data, plan(data)), into(text));
  EXPECT_EQ(text, R"(<table>
  <thead>
    <tr><th style="text-align: right">x</th><th style="text-align: right">a</th></tr>
  </thead>
  <tbody>
    <tr><td style="text-align: right">0</td><td style="text-align: right">1</td></tr>
  </tbody>
</table>
)");
}

TEST(HtmlTest, TimesAndInfinitiesHaveNoQuotes) {
  Dictionary data("data");
  data.add(memory::DoubleArray("d", {{"x", 2}}, {HUGE_VAL, -HUGE_VAL}));
  data.add(Hours("t", {{"x", 2}}, {0, 24}));
  std::string text;
  writeHtml(Table(data, plan(data)), into(text));
  EXPECT_THAT(text, HasSubstr(">inf</td><td style=\"text-align: left\">1970-01-01</td></tr>\n"));
  EXPECT_THAT(text, HasSubstr(">-inf</td><td style=\"text-align: left\">1970-01-02</td></tr>\n"));
}

std::string page(const Dictionary& data, const Shown& shown = {}) {
  std::string text;
  writeHtmlPage(Table(data, plan(data)), {"A <title>", "Group /cells & more"}, into(text), shown);
  return text;
}

TEST(HtmlPageTest, HasTheTableItsTitleAndHowManyRowsThereAre) {
  const Dictionary data = cells();
  std::string table;
  writeHtml(Table(data, plan(data)), into(table));
  EXPECT_THAT(page(data), HasSubstr(table));
  EXPECT_THAT(page(data), HasSubstr("<title>A &lt;title&gt;</title>"));
  EXPECT_THAT(page(data), HasSubstr("<strong>A &lt;title&gt;</strong> <span>Group /cells &amp; "
                                    "more · 2 rows</span>"));
  EXPECT_THAT(page(data, {1, 6, 0}), HasSubstr(" · 1 of 2 rows</span>"));
  EXPECT_THAT(page(data, {2, 6, 0}), HasSubstr(" · 2 rows</span>"));
  EXPECT_THAT(page(data, {0, 6, 0}), HasSubstr(" · 2 rows</span>"));
}

TEST(HtmlPageTest, IsForBrightAndDarkScreensAndRunsNothing) {
  const std::string text = page(cells());
  EXPECT_THAT(text, HasSubstr("prefers-color-scheme: dark"));
  EXPECT_THAT(text, Not(HasSubstr("<script")));
  EXPECT_THAT(text, Not(HasSubstr("http")));
}

TEST(HtmlPageTest, AnotherReaderFindsEveryElementClosedAndTheSameCells) {
  EXPECT_EQ(readByPython(page(cells()), R"(
from html.parser import HTMLParser
class Reader(HTMLParser):
    def __init__(self):
        super().__init__()
        self.open, self.rows = [], []
    def handle_starttag(self, tag, attrs):
        if tag != 'meta':
            self.open.append(tag)
        if tag == 'tr':
            self.rows.append([])
        if tag in ('td', 'th'):
            self.rows[-1].append('')
    def handle_endtag(self, tag):
        assert self.open.pop() == tag, tag
    def handle_data(self, data):
        if self.open and self.open[-1] in ('td', 'th'):
            self.rows[-1][-1] += data
reader = Reader()
reader.feed(text)
assert not reader.open
assert reader.rows == [['x', '<area>', 's'], ['', '"um"', ''], ['0', '0.333333', "a & 'b'"],
                       ['1', '', '\\n']], reader.rows)"),
            0);
}

TEST(HtmlPageTest, WithoutASubtitleTheRowsStandAlone) {
  const Dictionary data = cells();
  std::string text;
  writeHtmlPage(Table(data, plan(data)), {"A", ""}, into(text));
  EXPECT_THAT(text, HasSubstr("<strong>A</strong> <span>2 rows</span>"));
}

}  // namespace
}  // namespace quillon::tables
