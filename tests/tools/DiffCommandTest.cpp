#include <gtest/gtest.h>
#include <object_model/ComparisonHelper.h>
#include <quillon/netcdf/File.h>

#include <string>
#include <utility>
#include <vector>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

const char* const ROUNDED = "data/north_atlantic_climate_4_digits.nc";

Outcome same() { return {0, "", ""}; }
Outcome different(const std::string& text) { return {1, text, ""}; }

Outcome diff(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "diff");
  return runTool(arguments);
}

const char* const ROUNDED_LINES =
    "/AIRT: 13831 of 16800 values differ; the largest delta is 0.00390244 at TIME=2, COADSY=6, "
    "COADSX=10: 25.980465 and 25.976562\n"
    "/SLP: 13952 of 16800 values differ; the largest delta is 0.5 at TIME=0, COADSY=31, COADSX=5: "
    "1012.5 and 1013\n"
    "/SST: 13735 of 16800 values differ; the largest delta is 0.00390434 at TIME=1, COADSY=0, "
    "COADSX=25: 27.35547 and 27.359375\n"
    "/WSPD: 13932 of 16800 values differ; the largest delta is 0.00390339 at TIME=0, COADSY=29, "
    "COADSX=30: 12.019534 and 12.0234375\n";

TEST(DiffCommandTest, EveryArrayThatDiffersHasALine) {
  EXPECT_EQ(diff({CLIMATE, ROUNDED}), different(ROUNDED_LINES));
}

TEST(DiffCommandTest, RoundedValuesAreTheSameUnderATolerance) {
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--relative", "0.001"}), same());
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--absolute", "0.5"}), same());
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--absolute", "0.4", "--relative", "0.0001"}), same());
}

TEST(DiffCommandTest, ShapesThatDifferHaveALine) {
  EXPECT_EQ(diff({"data/nuclei_measurements.nc", "data/nuclei_measurements_li.nc"}),
            different("/area: the shapes differ: (85) and (51)\n"
                      "/perimeter: the shapes differ: (85) and (51)\n"
                      "/eccentricity: the shapes differ: (85) and (51)\n"
                      "/euler_number: the shapes differ: (85) and (51)\n"
                      "/mean_intensity: the shapes differ: (85, 3) and (51, 3)\n"
                      "/centroid: the shapes differ: (85, 2) and (51, 2)\n"
                      "/bounding_box: the shapes differ: (85, 4) and (51, 4)\n"));
}

TEST(DiffCommandTest, NothingIsPrintedForTheSame) {
  for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{
           {}, {"--brief"}, {"--quiet"}, {"--all"}, {"--contract"}}) {
    std::vector<std::string> arguments = {OBSERVATIONS, OBSERVATIONS, "--group", "cells"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(diff(arguments), same());
  }
}

/// A file with groups whose value deep inside is `value`.
std::string nested(const std::string& value) {
  return "group: a { variables: int m ; data: m = 7 ; "
         "group: b { dimensions: x = 3 ; variables: int n(x) ; double y ; data: n = 1, " +
         value + ", 3 ; y = 1 ; } }";
}

class DiffFilesTest : public ::testing::Test {
 protected:
  /// Compares files of these texts, called a.nc and b.nc; the directory is not in the outcome.
  Outcome diffOf(const std::string& first, const std::string& second,
                 const std::vector<std::string>& options = {}) const {
    const std::string a = m_scratch.file("a.nc", first);
    const std::string b = m_scratch.file("b.nc", second);
    std::string command = "cd " + m_scratch.path() + " && $QUILLON diff a.nc b.nc";
    for (const std::string& option : options) {
      command += " '" + option + "'";
    }
    return runShell(command);
  }

  Scratch m_scratch;
};

TEST_F(DiffFilesTest, OneValueOfObservationsDeepInAGroup) {
  const std::string text = m_scratch.path("copy.cdl");
  const std::string copy = m_scratch.path("copy.nc");
  const Outcome made = runShell(std::string("'" NCDUMP "' -p 9,17 ") + OBSERVATIONS +
                                " | sed 's/area = 671,/area = 672,/' > " + text +
                                " && '" NCGEN "' -k nc4 -o " + copy + " " + text);
  EXPECT_EQ(made, same());
  EXPECT_EQ(diff({OBSERVATIONS, copy}),
            different("/cells/li/area: 1 of 51 values differ; the largest delta is 1 at label=0: "
                      "671 and 672\n"));
}

TEST_F(DiffFilesTest, GroupLimitsTheComparisonAndItsPathsAreThoseOfTheFile) {
  const std::string line = "/a/b/n: 1 of 3 values differ; the largest delta is 3 at x=1: 2 and 5\n";
  EXPECT_EQ(diffOf(nested("2"), nested("5")), different(line));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--group", "a/b"}), different(line));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--group", "/a/b/", "--variables", "n", "--brief"}),
            different(line));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--group", "a/b", "--variables", "y"}), same());
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--variables", "m", "--group", "a"}), same());
}

TEST_F(DiffFilesTest, GroupThatOneFileLacksIsTrouble) {
  EXPECT_EQ(diffOf(nested("2"), "variables: int a ;", {"--group", "a"}),
            failed("'b.nc' has no group 'a', only the root group"));
}

TEST_F(DiffFilesTest, VariableThatNeitherHasIsTrouble) {
  EXPECT_EQ(diffOf("variables: int a ;", "variables: int b ;", {"--variables", "a,c,d"}),
            failed("Neither 'a.nc' nor 'b.nc' has a variable 'c'; did you mean 'a' or 'b'?"));
  EXPECT_EQ(
      diffOf(nested("2"), nested("2"), {"--variables", "b", "--group", "a"}),
      failed("In the group 'a' neither 'a.nc' nor 'b.nc' has a variable 'b'; did you mean 'm', "
             "'n' or 'y'?"));
  EXPECT_EQ(diffOf("group: g { }", "group: g { }", {"--variables", "g"}),
            failed("Neither 'a.nc' nor 'b.nc' has a variable 'g'; there are none"));
}

TEST_F(DiffFilesTest, EntriesOfOneFileAreDifferences) {
  EXPECT_EQ(diffOf("variables: int a ; group: g { variables: int v ; }", "variables: int b ;"),
            different("/a: only in the first\n"
                      "/g: only in the first\n"
                      "/b: only in the second\n"));
  EXPECT_EQ(diffOf("variables: int a ;", "variables: int b ;", {"--variables", "b"}),
            different("/b: only in the second\n"));
}

const std::string ROW = "dimensions: x = 3 ; variables: double v(x) ; data: v = ";

TEST_F(DiffFilesTest, ValuesMissingInOneFileAloneAreCountedApart) {
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, 5, 3 ;"),
            different("/v: 1 of 3 values differ, 1 missing in one file alone; the first is at x=1: "
                      "nan and 5\n"));
  EXPECT_EQ(diffOf(ROW + "NaN, 2, 3 ;", ROW + "1, NaN, 5 ;", {"--absolute", "1"}),
            different("/v: 3 of 3 values differ, 2 missing in one file alone; the largest delta is "
                      "2 at x=2: 3 and 5\n"));
}

TEST_F(DiffFilesTest, ValuesMissingInBothAreTheSame) {
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, NaN, 3 ;"), same());
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, NaN, 3 ;", {"--relative", "0.1"}), same());
  EXPECT_EQ(diffOf(ROW + "NaN, NaN, 3 ;", ROW + "NaN, NaN, 4 ;"),
            different("/v: 1 of 3 values differ; the largest delta is 1 at x=2: 3 and 4\n"));
  const std::string head =
      "group: g { group: h { dimensions: x = 2 ; variables: float v(x) ; v:_FillValue = NaNf ; "
      "data: v = ";
  EXPECT_EQ(diffOf(head + "_, 2 ; } }", head + "_, 2 ; } }"), same());
}

TEST_F(DiffFilesTest, FillValuesAreMissingUnlessValuesAreRaw) {
  const std::string head =
      "dimensions: x = 2 ; variables: float v(x) ; v:_FillValue = -1e34f ; data: v = ";
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "_, 2 ;"), same());
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "4, 2 ;"),
            different("/v: 1 of 2 values differ, 1 missing in one file alone; the first is at x=0: "
                      "nan and 4\n"));
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "4, 2 ;", {"--raw"}),
            different("/v: 1 of 2 values differ; the largest delta is 1e+34 at x=0: -1e+34 and "
                      "4\n"));
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "_, 2 ;", {"--nan-differs"}).status, 1);
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "_, 2 ;", {"--contract"}).status, 1);
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "_, 2 ;", {"--contract", "--raw"}), same());
}

TEST_F(DiffFilesTest, VariablesAreChosenByPatternsWhereverTheyStand) {
  const std::string first = nested("2");
  const std::string second = nested("5");
  const std::string line = "/a/b/n: 1 of 3 values differ; the largest delta is 3 at x=1: 2 and 5\n";
  EXPECT_EQ(diffOf(first, second, {"--variables", " n , y"}), different(line));
  EXPECT_EQ(diffOf(first, second, {"--variables", "/a/*"}), different(line));
  EXPECT_EQ(diffOf(first, second, {"--variables", "*", "--exclude", "n"}), same());
  EXPECT_EQ(diffOf(first, second, {"--exclude", "a/b/*"}), same());
  EXPECT_EQ(diffOf(first, second, {"--exclude", "n*,z"}),
            failed("Neither 'a.nc' nor 'b.nc' has a variable 'z'; did you mean 'm', 'n' or 'y'?"));
  EXPECT_EQ(diffOf(first, second, {"--contract", "--exclude", "n"}), same());
}

TEST_F(DiffFilesTest, TolerancesOfPathsGoBeforeTheCommonOneAndTheLastHolds) {
  const std::string first = nested("2");
  const std::string second = nested("5");
  EXPECT_EQ(diffOf(first, second, {"--tolerance", "*/n=3"}), same());
  EXPECT_EQ(diffOf(first, second, {"--tolerance", "a/b/n=0,0.6"}), same());
  EXPECT_EQ(diffOf(first, second, {"--tolerance", "*=3", "--tolerance", "/a/b/n=2"}).status, 1);
  EXPECT_EQ(diffOf(first, second, {"--tolerance", "/a/b/n=2", "--tolerance", "*=3"}), same());
  EXPECT_EQ(diffOf(first, second, {"--absolute", "9", "--tolerance", "*=0"}).status, 1);
  EXPECT_EQ(diffOf(first, second, {"--group", "a", "--tolerance", "/a/b/n=3"}), same());
  EXPECT_EQ(
      diffOf(first, second, {"--tolerance", "n=x"}),
      failed("'n=x' is no tolerance; write PATTERN=A,R or PATTERN=A, with numbers of at least "
             "0"));
}

TEST_F(DiffFilesTest, TheLargestDeltasAreListedBelow) {
  EXPECT_EQ(diffOf(ROW + "1, 2, 3 ;", ROW + "2, 4, 3 ;", {"--largest", "5"}),
            different("/v: 2 of 3 values differ; the largest delta is 2 at x=1: 2 and 4\n"
                      "  2 at x=1: 2 and 4\n"
                      "  1 at x=0: 1 and 2\n"));
  EXPECT_EQ(diffOf(ROW + "1, 2, 3 ;", ROW + "2, 4, 3 ;", {"--largest", "x"}),
            failed("--largest takes a whole number from 0 to 1000000, not 'x'"));
}

TEST_F(DiffFilesTest, NoneOfTheLargestIsALineForEachVariable) {
  EXPECT_EQ(diffOf(ROW + "1, 2, 3 ;", ROW + "2, 4, 3 ;", {"--largest", "0"}),
            different("/v: 2 of 3 values differ; the largest delta is 2 at x=1: 2 and 4\n"));
}

TEST_F(DiffFilesTest, AttributesAreComparedWhereTheyAreAskedFor) {
  const std::string first =
      "variables: int v ; v:note = \"a\" ; v:k = 1 ; :history = \"x\" ; :title = \"one\" ; "
      "data: v = 1 ;";
  const std::string second =
      "variables: int v ; v:note = \"b\" ; v:k = 1s ; :history = \"y\" ; :title = \"two\" ; "
      "data: v = 1 ;";
  const std::string title = "/@title: the attributes differ: 'one' and 'two'\n";
  const std::string note = "/v@note: the attributes differ: 'a' and 'b'\n";
  const std::string size = "/v@k: the attributes differ: '1 (int32)' and '1 (int16)'\n";
  EXPECT_EQ(diffOf(first, second), same());
  EXPECT_EQ(diffOf(first, second, {"--attributes"}), different(title + note + size));
  EXPECT_EQ(diffOf(first, second, {"--attributes", "--ignore-attributes", "note"}),
            different(title + size));
  EXPECT_EQ(diffOf(first, second, {"--attributes", "--ignore-attributes", " note , title, k"}),
            same());
  EXPECT_EQ(diffOf(first, second, {"--ignore-attributes", "note,"}),
            failed("--ignore-attributes takes names separated by commas, and 'note,' holds an "
                   "empty one"));
}

TEST_F(DiffFilesTest, CalendarsAreComparedAsAttributes) {
  const auto times = [](const std::string& calendar) {
    return "dimensions: x = 1 ; variables: int v(x) ; v:units = \"days since 2000-02-28\" ; " +
           calendar + "data: v = 1 ;";
  };
  const std::string noleap = times("v:calendar = \"noleap\" ; ");
  EXPECT_EQ(diffOf(noleap, noleap, {"--attributes"}), same());
  EXPECT_EQ(diffOf(noleap, times("v:calendar = \"360_day\" ; "), {"--attributes"}),
            different("/v@calendar: the attributes differ: 'noleap' and '360_day'\n"));
  EXPECT_EQ(diffOf(noleap, times(""), {"--attributes"}),
            different("/v@calendar: only in the first: 'noleap'\n"));
}

TEST_F(DiffFilesTest, OutputFileHoldsWhatWouldBePrinted) {
  const std::string line = "/v: 1 of 3 values differ; the largest delta is 2 at x=1: 2 and 4\n";
  const std::string first = ROW + "1, 2, 3 ;";
  for (const std::string option : {"--all", "--quiet"}) {
    EXPECT_EQ(diffOf(first, ROW + "1, 4, 3 ;", {option, "-o", "report" + option}), different(""));
    EXPECT_EQ(contentOf(m_scratch.path("report" + option)), line);
  }
  EXPECT_EQ(diffOf(first, first, {"--output", "report"}), same());
  EXPECT_EQ(contentOf(m_scratch.path("report")), "");
  for (const std::string input : {"a.nc", "b.nc"}) {
    EXPECT_EQ(diffOf(first, first, {"--output", "./" + input}),
              failed("--output names './" + input + "', the file that is read"));
  }
  EXPECT_EQ(diffOf(first, first), same());
}

TEST(DiffCommandTest, FormatIsOneOfThree) {
  EXPECT_EQ(diff({"a", "b", "--format", "jsn"}),
            failed("--format takes one of text, json, html, not 'jsn'; did you mean 'json'?"));
}

TEST_F(DiffFilesTest, JsonHasTheFiguresAndSaysWhenThereAreNone) {
  EXPECT_EQ(
      diffOf(ROW + "1, 2, 3 ;", ROW + "1, 4, 3 ;", {"--format", "json", "--absolute", "1"}),
      different(R"({"first": "a.nc", "second": "b.nc", "same": false, "values": 3, )"
                R"("rule": {"absolute": 1, "relative": 0, "nan_equal": true}, "differences": )"
                R"([{"path": "/v", "reason": "values", "size": 3, "count": 1, "missing": 0, )"
                R"("largest": [{"at": {"x": 1}, "coordinates": {}, "first": 2, "second": 4, )"
                R"("delta": 2}], "largest_relative": 0.5, "mean": 2}], "not_compared": []})"
                "\n"));
  EXPECT_EQ(diffOf(ROW + "1, 2, 3 ;", ROW + "1, 2, 3 ;", {"--format", "json", "--nan-differs"}),
            (Outcome{0,
                     R"({"first": "a.nc", "second": "b.nc", "same": true, "values": 3, )"
                     R"("rule": {"absolute": 0, "relative": 0, "nan_equal": false}, )"
                     R"("differences": [], "not_compared": []})"
                     "\n",
                     ""}));
}

TEST_F(DiffFilesTest, HtmlIsAPage) {
  const Outcome outcome =
      diffOf(ROW + "1, 2, 3 ;", ROW + "1, 4, 3 ;", {"--format", "html", "-o", "page.html"});
  EXPECT_EQ(outcome, different(""));
  const std::string page = contentOf(m_scratch.path("page.html"));
  EXPECT_EQ(page.substr(0, 15), "<!DOCTYPE html>");
  EXPECT_NE(page.find("<b>a.nc</b> and <b>b.nc</b> · 3 values compared"), std::string::npos);
}

TEST_F(DiffFilesTest, HtmlHasAPictureAndTenOfTheLargestUnlessToldOtherwise) {
  const std::string head = "dimensions: y = 3 ; x = 4 ; variables: int v(y, x) ; data: v = ";
  const auto partsOf = [&](std::vector<std::string> options) {
    options.insert(options.end(), {"--format", "html"});
    const std::string page = diffOf(head + "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 ;",
                                    head + "2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13 ;", options)
                                 .out;
    std::pair<int, int> parts;
    for (std::size_t at = 0; (at = page.find("<figure>", at)) != std::string::npos; ++at) {
      ++parts.first;
    }
    for (std::size_t at = 0; (at = page.find("<tr><td class=\"n\">", at)) != std::string::npos;
         ++at) {
      ++parts.second;
    }
    return parts;
  };
  EXPECT_EQ(partsOf({}), std::pair(1, 10));
  EXPECT_EQ(partsOf({"--largest", "3"}), std::pair(1, 3));
}

TEST_F(DiffFilesTest, DecodedNumbersMayBeStoredAsAnyType) {
  const std::string head = "dimensions: x = 2 ; variables: ";
  const std::string packed = head + "short v(x) ; v:scale_factor = 0.5 ; data: v = 2, 4 ;";
  const std::string plain = head + "int v(x) ; data: v = 1, 2 ;";
  EXPECT_EQ(diffOf(packed, plain), same());
  EXPECT_EQ(diffOf(packed, plain, {"--raw"}),
            different("/v: 2 of 2 values differ; the largest delta is 2 at x=1: 4 and 2\n"));
}

TEST_F(DiffFilesTest, QuietAndBriefGoBeforeTheFormat) {
  const std::string first = ROW + "1, 2, 3 ;";
  const std::string second = ROW + "1, 4, 3 ;";
  EXPECT_EQ(diffOf(first, second, {"-q", "--format", "json"}), different(""));
  EXPECT_EQ(diffOf(first, second, {"--brief", "--format", "html"}),
            different("/v: 1 of 3 values differ; the largest delta is 2 at x=1: 2 and 4\n"));
  EXPECT_EQ(diffOf(first, first, {"--brief", "--format", "html"}), same());
}

TEST_F(DiffFilesTest, ContractTakesNoOtherRule) {
  for (const std::vector<std::string>& option :
       std::vector<std::vector<std::string>>{{"--tolerance", "v=1"},
                                             {"--nan-differs"},
                                             {"--attributes"},
                                             {"--largest", "2"},
                                             {"--format", "json"}}) {
    std::vector<std::string> options = {"--contract"};
    options.insert(options.end(), option.begin(), option.end());
    EXPECT_EQ(diffOf(ROW + "1, 2, 3 ;", ROW + "1, 2, 3 ;", options),
              failed("--contract has the library's own rule and sentence; --tolerance, "
                     "--nan-differs, --attributes, --largest and --format do not go with it"));
  }
}

const std::string CELSIUS =
    "dimensions: x = 3 ; variables: double t(x) ; t:units = \"degree_Celsius\" ; data: t = ";

TEST_F(DiffFilesTest, NegativeValuesDifferUnderARelativeTolerance) {
  EXPECT_EQ(diffOf(CELSIUS + "-60, -10, 5 ;", CELSIUS + "-15, -10, 5 ;", {"--relative", "0.01"}),
            different("/t: 1 of 3 values differ; the largest delta is 45 at x=0: -60 and -15\n"));
  EXPECT_EQ(diffOf(CELSIUS + "-60, -10, 5 ;", CELSIUS + "-60.5, -10, 5 ;", {"--relative", "0.01"}),
            same());
}

TEST_F(DiffFilesTest, SmallReferencesCountUnderARelativeTolerance) {
  EXPECT_EQ(diffOf(ROW + "1e-20, 0, 0 ;", ROW + "2e-20, 0, 0 ;", {"--relative", "0.1"}),
            different("/v: 1 of 3 values differ; the largest delta is 1e-20 at x=0: 1e-20 and "
                      "2e-20\n"));
}

TEST_F(DiffFilesTest, BothTolerancesAddUp) {
  const std::string first = ROW + "10, -10, 0 ;";
  const std::string second = ROW + "12, -12, 1 ;";  // 1 + 0.1 * 12 is 2.2
  EXPECT_EQ(diffOf(first, second, {"--absolute", "1", "--relative", "0.1"}), same());
  EXPECT_EQ(diffOf(first, second, {"--absolute", "1"}),
            different("/v: 2 of 3 values differ; the largest delta is 2 at x=0: 10 and 12\n"));
  EXPECT_EQ(diffOf(first, second, {"--relative", "0.2"}),
            different("/v: 1 of 3 values differ; the largest delta is 1 at x=2: 0 and 1\n"));
}

TEST_F(DiffFilesTest, IntegersAreNotRounded) {
  const std::string head = "variables: int64 v ; data: v = ";
  EXPECT_EQ(diffOf(head + "9007199254740992 ;", head + "9007199254740993 ;"),
            different("/v: 1 of 1 values differ; the largest delta is 1: 9007199254740992 and "
                      "9007199254740993\n"));
}

TEST_F(DiffFilesTest, SameValuesInAnotherShapeDiffer) {
  EXPECT_EQ(diffOf("dimensions: x = 3 ; y = 2 ; variables: int v(y, x) ; data: v = 1,2,3,4,5,6 ;",
                   "dimensions: x = 2 ; y = 3 ; variables: int v(y, x) ; data: v = 1,2,3,4,5,6 ;"),
            different("/v: the shapes differ: (2, 3) and (3, 2)\n"));
}

TEST_F(DiffFilesTest, EachReasonHasALine) {
  EXPECT_EQ(diffOf("variables: int v ; data: v = 1 ;",
                   "dimensions: x = 1 ; variables: double v(x) ; data: v = 1 ;"),
            different("/v: the shapes differ: () and (1)\n"
                      "/v: the element types differ: Int and Double\n"));
  EXPECT_EQ(diffOf("dimensions: x = 1 ; variables: int v(x) ; v:units = \"m\" ; data: v = 1 ;",
                   "dimensions: y = 1 ; variables: int v(y) ; v:units = \"km\" ; data: v = 2 ;"),
            different("/v: the dimensions differ: (x) and (y)\n"
                      "/v: the units differ: 'm' and 'km'\n"
                      "/v: 1 of 1 values differ; the largest delta is 1 at x=0: 1 and 2\n"));
  EXPECT_EQ(diffOf("variables: int v ;", "group: v { }"),
            different("/v: the kinds differ: array and dictionary\n"));
}

TEST_F(DiffFilesTest, OneBadElementAmongManyIsFound) {
  const std::string head = "dimensions: x = 100000 ; variables: int v(x) ; data: v = ";
  std::string values;
  for (int i = 0; i < 100000; ++i) {
    values += (i == 0 ? "" : ", ") + std::to_string(i);
  }
  std::string changed = values;
  changed.replace(changed.find(" 54321,"), 7, " 54320,");
  EXPECT_EQ(diffOf(head + values + ";", head + changed + ";"),
            different("/v: 1 of 100000 values differ; the largest delta is 1 at x=54321: 54321 and "
                      "54320\n"));
}

TEST_F(DiffFilesTest, TextsAreComparedExactly) {
  const std::string head = "dimensions: x = 2 ; variables: string s(x) ; data: s = ";
  EXPECT_EQ(diffOf(head + R"("a", "b\n" ;)", head + R"("a", "c" ;)", {"--absolute", "inf"}),
            different("/s: 1 of 2 values differ; the first is at x=1: 'b\\n' and 'c'\n"));
}

/// 2^5 values, the last of them given.
std::string fiveDimensions(const std::string& first, const std::string& last) {
  std::string values = first;
  for (int i = 1; i < 31; ++i) {
    values += ", 0";
  }
  return "dimensions: a = 2 ; b = 2 ; c = 2 ; d = 2 ; e = 2 ; variables: int v(e, d, c, b, a) ; "
         "data: v = " +
         values + ", " + last + " ;";
}

TEST_F(DiffFilesTest, FiveDimensionsAreComparedInFull) {
  const std::string zeros = fiveDimensions("0", "0");
  const std::string line =
      "/v: 1 of 32 values differ; the largest delta is 1 at e=1, d=1, c=1, b=1, a=1: 0 and 1\n";
  EXPECT_EQ(diffOf(zeros, zeros), same());
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1")), different(line));
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1"), {"--brief"}), different(line));
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1"), {"--quiet"}), different(""));
}

TEST_F(DiffFilesTest, FiveDimensionsWithoutValuesAreTheSame) {
  const std::string head =
      "dimensions: x = 2 ; n = UNLIMITED ; variables: int v(n, x, x, x, x) ; int w ; data: w = ";
  EXPECT_EQ(diffOf(head + "1 ;", head + "1 ;"), same());
  EXPECT_EQ(diffOf(head + "1 ;", head + "2 ;"),
            different("/w: 1 of 1 values differ; the largest delta is 1: 1 and 2\n"));
}

TEST_F(DiffFilesTest, OutputStaysShortUnlessAllIsAskedFor) {
  std::string text = "variables: ";
  std::string few;
  std::string all;
  for (int i = 10; i < 35; ++i) {
    const std::string name = "v" + std::to_string(i);
    text += "int " + name + " ; ";
    all += "/" + name + ": only in the first\n";
    few += i < 30 ? "/" + name + ": only in the first\n" : "";
  }
  EXPECT_EQ(diffOf(text, "variables: "), different(few + "... and 5 more\n"));
  EXPECT_EQ(diffOf(text, "variables: ", {"--all"}), different(all));
}

const std::string POINT = "types: compound t { int a ; } ; variables: t p ; int v ; data: v = 1 ;";

/// Nothing differs, but not everything was compared.
Outcome incomplete(const std::string& text) {
  return {2, text, "quillon: Not compared: /p (compound type 't')\n"};
}

TEST_F(DiffFilesTest, VariableThatCannotBeReadIsNamedAndIsTrouble) {
  const std::string line = "/p: not compared: compound type 't'\n";
  EXPECT_EQ(diffOf(POINT, POINT), incomplete(line));
  EXPECT_EQ(diffOf(POINT, POINT, {"--brief"}), incomplete(line));
  EXPECT_EQ(diffOf(POINT, POINT, {"--quiet"}), incomplete(""));
  EXPECT_EQ(diffOf(POINT, POINT, {"--contract"}), incomplete(""));
  EXPECT_EQ(diffOf(POINT, POINT, {"--variables", "p"}), incomplete(line));
  EXPECT_EQ(diffOf(POINT, "variables: int p ; int v ; data: v = 1 ;"), incomplete(line));
  EXPECT_EQ(diffOf("variables: int p ; int v ; data: v = 1 ;", POINT), incomplete(line));
}

TEST_F(DiffFilesTest, VariableThatCannotBeReadEndsNothing) {
  const std::string other =
      "types: compound t { int a ; } ; variables: t p ; int v ; data: v = 2 ;";
  const std::string line = "/v: 1 of 1 values differ; the largest delta is 1: 1 and 2\n";
  EXPECT_EQ(diffOf(POINT, other), different(line + "/p: not compared: compound type 't'\n"));
  EXPECT_EQ(diffOf(POINT, other, {"--brief"}), different(line));
  EXPECT_EQ(diffOf(POINT, other, {"--quiet"}), different(""));
}

TEST_F(DiffFilesTest, VariableThatCannotBeReadAndIsNotAskedForIsNoTrouble) {
  EXPECT_EQ(diffOf(POINT, POINT, {"--variables", "v"}), same());
  EXPECT_EQ(diffOf(POINT, POINT, {"--variables", "v", "--contract"}), same());
  const std::string inside = "group: g { " + POINT + " } group: h { variables: int v ; }";
  EXPECT_EQ(diffOf(inside, inside, {"--group", "h"}), same());
  EXPECT_EQ(diffOf(inside, inside, {"--group", "h", "--variables", "v"}), same());
  EXPECT_EQ(
      diffOf(inside, inside, {"--group", "h", "--variables", "p"}),
      failed("In the group 'h' neither 'a.nc' nor 'b.nc' has a variable 'p'; did you mean 'v'?"));
  EXPECT_EQ(diffOf(inside, inside, {"--group", "g"}),
            (Outcome{2, "/g/p: not compared: compound type 't'\n",
                     "quillon: Not compared: /g/p (compound type 't')\n"}));
  EXPECT_EQ(diffOf(inside, inside, {"--contract"}),
            (Outcome{2, "", "quillon: Not compared: /g/p (compound type 't')\n"}));
}

TEST_F(DiffFilesTest, VariableThatCannotBeReadAndIsInOneFileAloneIsADifference) {
  const std::string without = "variables: int v ; data: v = 1 ;";
  EXPECT_EQ(diffOf(POINT, without), different("/p: only in the first\n"));
  EXPECT_EQ(diffOf(without, POINT), different("/p: only in the second\n"));
  EXPECT_EQ(diffOf(POINT, without, {"--contract", "--variables", "p"}), incomplete(""));
  EXPECT_EQ(diffOf(without, POINT, {"--contract", "--variables", "p"}), incomplete(""));
}

/// A file whose variable `bad` has a checksum that its values do not have.
std::string fileWithBadValues(const Scratch& scratch, const std::string& name) {
  const std::string path = scratch.file(
      name,
      "dimensions: x = 4 ; variables: int bad(x) ; bad:_Fletcher32 = \"true\" ; bad:_ChunkSizes = "
      "4 ; int good(x) ; data: bad = 1111638594, 1111638594, 1111638594, 1111638594 ; good = 1, 2, "
      "3, 4 ;");
  std::string content = contentOf(path);
  content.at(content.find("BBBBBBBBBBBBBBBB")) = 'C';
  writeContent(path, content);
  return path;
}

TEST(DiffCommandTest, ValuesThatCannotBeReadEndNothing) {
  const Scratch scratch;
  const std::string path = fileWithBadValues(scratch, "a.nc");
  const Outcome outcome = diff({path, path});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(
      outcome.out.rfind("/bad: not compared: Cannot read '" + path + "': variable '/bad' ", 0), 0U)
      << outcome.out;
  EXPECT_EQ(outcome.err.rfind("quillon: Not compared: /bad (Cannot read ", 0), 0U) << outcome.err;
  EXPECT_EQ(diff({path, path, "--variables", "good"}), same());
}

TEST(DiffCommandTest, ContractPrintsTheLibrarysSentence) {
  const std::string sentence =
      "Array 'AIRT': The arrays 'AIRT' have different values at the position (39;34;11)': "
      "'2.114286' and '2.114258'.";
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--contract"}), different(sentence + "\n"));
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--contract", "--brief"}), different(sentence + "\n"));
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--contract", "--quiet"}), different(""));
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--contract", "--absolute", "0.00001", "--variables", "AIRT"}),
            different(sentence + " The absolute delta is greater than 0.000010\n"));
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--contract", "--raw", "--absolute", "0.5"}), same());
  EXPECT_EQ(
      diff({CLIMATE, ROUNDED, "--contract", "--raw", "--relative", "0.001", "--variables", "SLP"}),
      same());
}

TEST(DiffCommandTest, ContractIsTheLibrarysVerdictAndSentence) {
  using object_model::helper::ComparisonType;
  const struct {
    std::vector<std::string> options;
    ComparisonType type;
    double tolerance;
  } rules[] = {{{}, ComparisonType::Exact, 0},
               {{"--absolute", "0.001"}, ComparisonType::Absolute, 0.001},
               {{"--absolute", "0.5"}, ComparisonType::Absolute, 0.5},
               {{"--relative", "0.0001"}, ComparisonType::Relative, 0.0001}};
  const std::pair<const char*, const char*> pairs[] = {
      {CLIMATE, ROUNDED},
      {ROUNDED, CLIMATE},
      {OBSERVATIONS, OBSERVATIONS},
      {OBSERVATIONS, CLIMATE},
      {"data/nuclei_measurements.nc", "data/nuclei_measurements_li.nc"}};
  for (const auto& [first, second] : pairs) {
    netcdf::File a(std::string(QUILLON_SOURCE_DIR "/") + first);
    netcdf::File b(std::string(QUILLON_SOURCE_DIR "/") + second);
    for (const auto& rule : rules) {
      std::string sentence;
      const bool areSame = object_model::helper::areSameDictionaries(a.root(), b.root(), rule.type,
                                                                     rule.tolerance, &sentence);
      std::vector<std::string> arguments = {first, second, "--contract"};
      arguments.insert(arguments.end(), rule.options.begin(), rule.options.end());
      EXPECT_EQ(diff(arguments), areSame ? same() : different(sentence + "\n"))
          << first << " and " << second;
    }
  }
}

TEST_F(DiffFilesTest, ContractHoldsNegativeReferencesTheSame) {
  const std::string first = CELSIUS + "-60, -10, 5 ;";
  const std::string second = CELSIUS + "-15, -10, 5 ;";
  EXPECT_EQ(diffOf(first, second, {"--contract", "--relative", "0.01"}), same());
  EXPECT_EQ(diffOf(first, second, {"--contract", "--absolute", "0.01"}),
            different("Array 't': The arrays 't' have different values at the position (0)': "
                      "'-60.000000' and '-15.000000'. The absolute delta is greater than "
                      "0.010000\n"));
}

TEST_F(DiffFilesTest, ContractHoldsMissingValuesDifferent) {
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, NaN, 3 ;", {"--contract"}),
            different("Array 'v': The arrays 'v' have different values at the position (1)': 'nan' "
                      "and 'nan'.\n"));
}

TEST_F(DiffFilesTest, ContractIsLimitedToTheGroupAndTheVariables) {
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--contract"}),
            different("Dictionary '/': Dictionary 'a': Array 'n': The arrays 'n' have different "
                      "values at the position (1)': '2' and '5'.\n"));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--contract", "--group", "a/b"}),
            different("Array 'n': The arrays 'n' have different values at the position (1)': '2' "
                      "and '5'.\n"));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--contract", "--group", "a/b", "--variables", "y"}),
            same());
}

TEST(DiffCommandTest, ContractTakesOneTolerance) {
  EXPECT_EQ(diff({"a", "b", "--contract", "--absolute", "1", "--relative", "1"}),
            failed("--contract takes one of --absolute and --relative, not both"));
}

TEST(DiffCommandTest, ShortFormsPrintLess) {
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--quiet"}), different(""));
  const std::string lines = ROUNDED_LINES;
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--brief"}), different(lines.substr(0, lines.find('\n') + 1)));
}

TEST(DiffCommandTest, MissingFileIsTrouble) {
  for (const char* option : {"--brief", "--quiet", "--absolute=1", "--contract"}) {
    EXPECT_EQ(diff({CLIMATE, "data/none.nc", option}),
              failed("Cannot read 'data/none.nc': there is no such file"));
    EXPECT_EQ(diff({"data/none.nc", CLIMATE, option}),
              failed("Cannot read 'data/none.nc': there is no such file"));
  }
}

TEST(DiffCommandTest, OptionsThatExcludeEachOtherAreTrouble) {
  EXPECT_EQ(diff({"a", "b", "--quiet", "--brief"}),
            failed("--quiet excludes --brief (see quillon diff --help)"));
}

TEST(DiffCommandTest, TolerancesThatAreNoneAreTrouble) {
  EXPECT_EQ(diff({"a", "b", "--absolute", "-1"}),
            failed("--absolute takes a number of at least 0, not '-1'"));
  EXPECT_EQ(diff({"a", "b", "--relative", "nan"}),
            failed("--relative takes a number of at least 0, not 'nan'"));
  EXPECT_EQ(diff({"a", "b", "--relative", "few"}),
            failed("--relative takes a number of at least 0, not 'few'"));
}

TEST(DiffCommandTest, SecondFileIsRequired) {
  EXPECT_EQ(diff({"a"}), failed("SECOND is required (see quillon diff --help)"));
}

}  // namespace
}  // namespace quillon::tools::test
