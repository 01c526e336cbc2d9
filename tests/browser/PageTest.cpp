#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

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

/// The cells of the lines of a Markdown table, names and rows.
std::vector<Cells> markdownOf(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "table");
  arguments.insert(arguments.end(), {"--format", "markdown"});
  std::istringstream lines(runTool(arguments).out);
  std::vector<Cells> rows;
  for (std::string line; std::getline(lines, line);) {
    Cells& cells = rows.emplace_back();
    for (std::size_t start = 2; start < line.size();) {
      const std::size_t end = line.find(" |", start);
      cells.push_back(line.substr(start, end - start));
      start = end + 3;
    }
  }
  rows.erase(rows.begin() + 1);  // the line between names and rows
  return rows;
}

struct PageCase {
  const char* name;
  const char* file;
  const char* index;
  unsigned long maxRows;
  const char* title;
  const char* details;
};

void PrintTo(const PageCase& c, std::ostream* stream) { *stream << c.name; }

std::vector<std::string> argumentsOf(const PageCase& page) {
  return {page.file, "--index", page.index, "--max-rows", std::to_string(page.maxRows)};
}

class PageTest : public ::testing::TestWithParam<PageCase> {};

TEST_P(PageTest, BrowserShowsTheTable) {
  const PageCase& page = GetParam();
  std::vector<Cells> expected = markdownOf(argumentsOf(page));
  const SeenPage seen = openPage(pageOf(argumentsOf(page)));
  ASSERT_EQ(seen.head.size(), 2);  // names and units
  EXPECT_EQ(seen.head[0], expected.front());
  expected.erase(expected.begin());
  EXPECT_EQ(seen.body, expected);
  EXPECT_EQ(seen.body.size(), page.maxRows);
  EXPECT_EQ(seen.title, page.title);
  EXPECT_EQ(seen.caption, std::string(page.title) + "\n" + page.details);
}

// For people to look at: build/PRESET/tests/browser/*.png.
TEST_P(PageTest, ScreenshotIsKept) {
  const PageCase& page = GetParam();
  const std::string picture =
      photograph(pageOf(argumentsOf(page)), std::string(page.name) + ".png");
  EXPECT_THAT(contentOf(picture).substr(0, 8), "\x89PNG\r\n\x1a\n");
}

INSTANTIATE_TEST_SUITE_P(
    Measurements, PageTest,
    ::testing::Values(PageCase{"Climate", "data/north_atlantic_climate.nc", "TIME,COADSY,COADSX",
                               10, "north_atlantic_climate.nc", "Group / · 10 of 16800 rows"},
                      PageCase{"Nuclei", "data/nuclei_measurements.nc", "label", 85,
                               "Nuclei measured in an immunohistochemistry micrograph of colon "
                               "tissue, one label each",
                               "Group / · 85 rows"}),
    [](const auto& c) { return c.param.name; });

/// A page in which nothing from the file became markup has these elements only.
const Cells ELEMENTS = {"body",  "figcaption", "figure", "head", "html", "meta",  "span",  "strong",
                        "style", "table",      "tbody",  "td",   "th",   "thead", "title", "tr"};

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
              ElementsAre(Cells{"a<img src=x onerror=document.title='owned'>",
                                "b<script>document.title='owned'", "c\" onload=\"&lt;"}));
  EXPECT_THAT(seen.body, ElementsAre(Cells{"0", "1", "3"}, Cells{"1", "2", "4"}));
  EXPECT_EQ(seen.elements, ELEMENTS);
}

/// The page that the tool makes of the differences of two files.
std::string differencesOf(const std::vector<std::string>& files) {
  const Scratch scratch;
  std::vector<std::string> arguments = {"diff", "--format", "html", "-o",
                                        scratch.path("page.html")};
  arguments.insert(arguments.end(), files.begin(), files.end());
  EXPECT_EQ(runTool(arguments), (Outcome{1, "", ""}));
  return contentOf(scratch.path("page.html"));
}

TEST(DifferencesPageTest, EachEntryHasItsPictureAndAScreenshotIsKept) {
  std::string page =
      differencesOf({"data/north_atlantic_climate.nc", "data/north_atlantic_climate_4_digits.nc"});
  for (std::size_t k = page.find("<details>"); k != std::string::npos;
       k = page.find("<details>", k + 1)) {
    page.replace(k, 9, "<details open>");
  }
  const SeenPage seen = openPage(page);
  EXPECT_EQ(seen.title,
            "data/north_atlantic_climate.nc and data/north_atlantic_climate_4_digits.nc");
  const std::string caption =
      "The largest delta in each of 40 × 35 cells: COADSX (40) from left to right, COADSY (35) "
      "downwards.\n up to ";
  std::size_t captions = 0;
  for (std::size_t k = seen.caption.find(caption); k != std::string::npos;
       k = seen.caption.find(caption, k + 1)) {
    ++captions;
  }
  EXPECT_EQ(captions, 4) << seen.caption;
  EXPECT_THAT(seen.elements, Contains("use"));
  EXPECT_THAT(seen.elements, ::testing::Not(Contains("script")));
  EXPECT_THAT(contentOf(photograph(page, "Differences.png")).substr(0, 8), "\x89PNG\r\n\x1a\n");
}

TEST(DifferencesPageTest, NamesAndTextsOfTheFilesRunNothing) {
  const Scratch scratch;
  const std::string hostile = R"(
    dimensions: x\<img\ src\=y\ onerror\=document.title\=\'owned\'\> = 2 ; y = 2 ;
    variables: int b\<script\>document.title\=\'owned\'(y, x\<img\ src\=y\ onerror\=document.title\=\'owned\'\>) ;
      b\<script\>document.title\=\'owned\':units = ")";
  const std::string first =
      scratch.file("<img src=x onerror=owned()>.nc", hostile + R"(<script>owned()</script>" ;)");
  const std::string second = scratch.file(
      "b.nc", hostile + R"(m" ; data: b\<script\>document.title\=\'owned\' = 1, 2, 3, 4 ;)");
  const SeenPage seen = openPage(differencesOf({first, second}));
  EXPECT_EQ(seen.title, first + " and " + second);
  for (const char* element : {"img", "script"}) {
    EXPECT_THAT(seen.elements, ::testing::Not(Contains(element)));
  }
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
