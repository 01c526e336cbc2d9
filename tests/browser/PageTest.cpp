#include <gmock/gmock.h>
#include <object_model/IO.h>
#include <quillon/netcdf/File.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <sstream>

#include "Browser.h"
#include "tools/RunTool.h"

namespace quillon::tools::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

/// The whole page that the tool writes.
std::string pageOf(std::vector<std::string> arguments) {
  const Scratch scratch;
  arguments.insert(arguments.begin(), "table");
  arguments.insert(arguments.end(), {"--html", "--output", scratch.path("page.html")});
  EXPECT_EQ(runTool(arguments), (Outcome{0, "", ""}));
  return contentOf(scratch.path("page.html"));
}

template <class T>
std::string cellText(const tabra::DataFrameView& frame, unsigned long column, unsigned long row) {
  T value = 0;
  frame.read(column, row, 1, &value);
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string cellText(const tabra::DataFrameView& frame, unsigned long column, unsigned long row) {
  switch (frame.columnDataType(column).id()) {
    case tabra::DataTypeId::UInt64:
      return cellText<unsigned long>(frame, column, row);
    case tabra::DataTypeId::Int64:
      return cellText<long>(frame, column, row);
    default:
      return cellText<double>(frame, column, row);
  }
}

/// The table behind a page: its names, and its first rows with a row of dots for the rest.
struct Table {
  Cells names;
  std::vector<Cells> rows;
};

Table tableOf(const std::string& path, const std::vector<std::string>& index,
              unsigned long maxRows) {
  netcdf::OpenOptions options;
  options.decode = false;
  options.missingAsNaN = true;
  netcdf::File file(path, options);
  tabra::MemoryDataFrame frame;
  object_model::exportToDataFrame(file.root(), &frame, index);
  const auto [columns, rows] = frame.shape();
  Table table;
  for (unsigned long column = 0; column < columns; ++column) {
    table.names.push_back(frame.columnName(column));
  }
  for (unsigned long row = 0; row < std::min(rows, maxRows); ++row) {
    Cells& cells = table.rows.emplace_back();
    for (unsigned long column = 0; column < columns; ++column) {
      cells.push_back(cellText(frame, column, row));
    }
  }
  if (maxRows < rows) {
    table.rows.emplace_back(columns, "...");
  }
  return table;
}

struct PageCase {
  const char* name;
  const char* file;
  std::vector<std::string> index;
  unsigned long maxRows;
  unsigned long visibleRows;
  const char* title;
  const char* details;
};

void PrintTo(const PageCase& c, std::ostream* stream) { *stream << c.name; }

std::string pageOf(const PageCase& page) {
  std::string index;
  for (const std::string& axis : page.index) {
    index += (index.empty() ? "" : ",") + axis;
  }
  return pageOf({page.file, "--index", index, "--max-rows", std::to_string(page.maxRows)});
}

class PageTest : public ::testing::TestWithParam<PageCase> {};

TEST_P(PageTest, BrowserShowsTheTable) {
  const PageCase& page = GetParam();
  const Table expected =
      tableOf(QUILLON_SOURCE_DIR "/" + std::string(page.file), page.index, page.maxRows);
  const SeenPage seen = openPage(pageOf(page));
  EXPECT_THAT(seen.head, ElementsAre(expected.names));
  EXPECT_EQ(seen.body, expected.rows);
  EXPECT_EQ(seen.body.size(), page.visibleRows);
  EXPECT_EQ(seen.title, page.title);
  EXPECT_EQ(seen.caption, std::string(page.title) + "\n" + page.details);
}

// For people to look at: build/PRESET/tests/browser/*.png.
TEST_P(PageTest, ScreenshotIsKept) {
  const PageCase& page = GetParam();
  const std::string picture = photograph(pageOf(page), std::string(page.name) + ".png");
  EXPECT_THAT(contentOf(picture).substr(0, 8), "\x89PNG\r\n\x1a\n");
}

INSTANTIATE_TEST_SUITE_P(
    Measurements, PageTest,
    ::testing::Values(PageCase{"Climate",
                               "data/north_atlantic_climate.nc",
                               {"TIME", "COADSY", "COADSX"},
                               10,
                               11,
                               "north_atlantic_climate.nc",
                               "Group / · first 10 of 16800 rows"},
                      PageCase{"Nuclei",
                               "data/nuclei_measurements.nc",
                               {"label"},
                               85,
                               85,
                               "Nuclei measured in an immunohistochemistry micrograph of colon "
                               "tissue, one label each",
                               "Group / · 85 rows"}),
    [](const auto& c) { return c.param.name; });

/// A page in which nothing from the file became markup has these elements only.
const Cells ELEMENTS = {"body",  "figcaption", "figure", "head", "html",  "meta",  "span", "strong",
                        "style", "table",      "tbody",  "th",   "thead", "title", "tr"};

TEST(HostilePageTest, NamesAndTitleOfTheFileRunNothing) {
  const Scratch scratch;
  const std::string path = scratch.file("hostile.nc", R"(
    dimensions: a\<img\ src\=x\ onerror\=document.title\=\'owned\'\> = 2 ;
    variables:
      int b\<script\>document.title\=\'owned\'(a\<img\ src\=x\ onerror\=document.title\=\'owned\'\>) ;
      int c\"\ onload\=\"\&lt\;(a\<img\ src\=x\ onerror\=document.title\=\'owned\'\>) ;
    :title = "</title><script>document.title='owned'</script><img src=x onerror=owned()>" ;
    data:
      b\<script\>document.title\=\'owned\' = 1, 2 ;
      c\"\ onload\=\"\&lt\; = 3, 4 ;)");
  const SeenPage seen = openPage(pageOf({path}));
  const std::string title =
      "</title><script>document.title='owned'</script><img src=x onerror=owned()>";
  EXPECT_EQ(seen.title, title);
  EXPECT_EQ(seen.caption, title + "\nGroup / · 2 rows");
  EXPECT_THAT(seen.head,
              ElementsAre(Cells{"Index [a<img src=x onerror=document.title='owned'>]",
                                "b<script>document.title='owned'", "c\" onload=\"&lt;"}));
  EXPECT_THAT(seen.body, ElementsAre(Cells{"0", "1", "3"}, Cells{"1", "2", "4"}));
  EXPECT_EQ(seen.elements, ELEMENTS);
}

// What the test above relies on: the browser does run what stands in a page unescaped, and it
// shows.
TEST(HostilePageTest, MarkupThatIsNotEscapedWouldShow) {
  const SeenPage seen = openPage(
      "<!DOCTYPE html><title>t</title><body><table>"
      "<tr><th><img src=x onerror=document.title='owned'></table></body>");
  EXPECT_EQ(seen.title, "owned");
  EXPECT_THAT(seen.elements, Contains("img"));
}

}  // namespace
}  // namespace quillon::tools::test
