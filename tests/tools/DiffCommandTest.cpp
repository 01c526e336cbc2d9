#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

const char* const CLIMATE = "data/north_atlantic_climate.nc";
const char* const ROUNDED = "data/north_atlantic_climate_4_digits.nc";
const char* const OBSERVATIONS = "data/observations.nc";

Outcome same() { return {0, "", ""}; }
Outcome different(const std::string& text) { return {1, text, ""}; }

Outcome diff(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "diff");
  return runTool(arguments);
}

TEST(DiffCommandTest, EveryArrayThatDiffersHasALine) {
  EXPECT_EQ(
      diff({CLIMATE, ROUNDED}),
      different(
          "Array 'AIRT': The arrays 'AIRT' have different values at the position (39;34;11)': "
          "'2.114286' and '2.114258'.\n"
          "/AIRT: 13831 of 16800 values differ; the largest delta is 0.00390244 at COADSX=10, "
          "COADSY=6, TIME=2: 25.9805 and 25.9766\n"
          "/SLP: 13952 of 16800 values differ; the largest delta is 0.5 at COADSX=5, COADSY=31, "
          "TIME=0: 1012.5 and 1013\n"
          "/SST: 13735 of 16800 values differ; the largest delta is 0.00390434 at COADSX=25, "
          "COADSY=0, TIME=1: 27.3555 and 27.3594\n"
          "/WSPD: 13932 of 16800 values differ; the largest delta is 0.00390339 at COADSX=30, "
          "COADSY=29, TIME=0: 12.0195 and 12.0234\n"));
}

TEST(DiffCommandTest, RoundedValuesAreTheSameUnderARelativeTolerance) {
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--relative", "0.001"}), same());
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--absolute", "0.5"}), same());
}

TEST(DiffCommandTest, ShapesThatDifferHaveALine) {
  EXPECT_EQ(diff({"data/nuclei_measurements.nc", "data/nuclei_measurements_li.nc"}),
            different("Array 'area': The arrays 'area' have different sizes for the dimension : "
                      "'0': '85' and '51'.\n"
                      "/area: the shapes differ: label=85 and label=51\n"
                      "/perimeter: the shapes differ: label=85 and label=51\n"
                      "/eccentricity: the shapes differ: label=85 and label=51\n"
                      "/euler_number: the shapes differ: label=85 and label=51\n"
                      "/mean_intensity: the shapes differ: channel=3, label=85 and channel=3, "
                      "label=51\n"
                      "/centroid: the shapes differ: point=2, label=85 and point=2, label=51\n"
                      "/bounding_box: the shapes differ: edge=4, label=85 and edge=4, "
                      "label=51\n"));
}

TEST(DiffCommandTest, NothingIsPrintedForTheSame) {
  EXPECT_EQ(diff({OBSERVATIONS, OBSERVATIONS}), same());
  EXPECT_EQ(diff({OBSERVATIONS, OBSERVATIONS, "--brief"}), same());
  EXPECT_EQ(diff({OBSERVATIONS, OBSERVATIONS, "--quiet"}), same());
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
            different("Dictionary '/': Dictionary 'cells': Array 'area': The arrays 'area' have "
                      "different values at the position (0)': '671' and '672'.\n"
                      "/cells/li/area: 1 of 51 values differs; the largest delta is 1 at label=0: "
                      "671 and 672\n"));
}

TEST_F(DiffFilesTest, OneValueDeepInAGroup) {
  EXPECT_EQ(diffOf(nested("2"), nested("5")),
            different("Dictionary '/': Dictionary 'a': Array 'n': The arrays 'n' have different "
                      "values at the position (1)': '2' and '5'.\n"
                      "/a/b/n: 1 of 3 values differs; the largest delta is 3 at x=1: 2 and 5\n"));
}

TEST_F(DiffFilesTest, GroupLimitsTheComparison) {
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--group", "a/b", "--variables", "y"}), same());
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--group", "/a/b", "--variables", "n", "--brief"}),
            different("Array 'n': The arrays 'n' have different values at the position (1)': '2' "
                      "and '5'.\n"));
  EXPECT_EQ(diffOf(nested("2"), nested("5"), {"--variables", "m", "--group", "a"}), same());
}

TEST_F(DiffFilesTest, GroupThatOneFileLacksIsTrouble) {
  EXPECT_EQ(diffOf(nested("2"), "variables: int a ;", {"--group", "a"}),
            failed("'b.nc' has no group 'a', only the root group"));
}

TEST_F(DiffFilesTest, VariableThatNeitherHasIsTrouble) {
  EXPECT_EQ(diffOf("variables: int a ;", "variables: int b ;", {"--variables", "a,c,d"}),
            failed("Neither 'a.nc' nor 'b.nc' has a variable called c, d; there are a, b"));
  EXPECT_EQ(diffOf(nested("2"), nested("2"), {"--variables", "b", "--group", "a"}),
            failed("Neither 'a.nc' nor 'b.nc' has a variable 'b' in the group 'a'; there are m"));
}

TEST_F(DiffFilesTest, VariableThatOneFileHasIsADifference) {
  EXPECT_EQ(diffOf("variables: int a ;", "variables: int b ;", {"--variables", "b"}),
            different("The dictionaries '/' have different sizes: '0' and '1'.\n"
                      "/b: only in 'b.nc'\n"));
}

const std::string ROW = "dimensions: x = 3 ; variables: double v(x) ; data: v = ";

TEST_F(DiffFilesTest, NaNDiffersFromANumber) {
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, 5, 3 ;"),
            different("Array 'v': The arrays 'v' have different values at the position (1)': 'nan' "
                      "and '5.000000'.\n"
                      "/v: 1 of 3 values differs, 1 with NaN in one file alone; the first at x=1: "
                      "nan and 5\n"));
}

TEST_F(DiffFilesTest, NaNInBothIsNoDifference) {
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, NaN, 3 ;"), same());
  EXPECT_EQ(diffOf(ROW + "1, NaN, 3 ;", ROW + "1, NaN, 3 ;", {"--relative", "0.1"}), same());
  EXPECT_EQ(diffOf(ROW + "NaN, NaN, 3 ;", ROW + "NaN, NaN, 4 ;"),
            different("Array 'v': The arrays 'v' have different values at the position (2)': "
                      "'3.000000' and '4.000000'.\n"
                      "/v: 1 of 3 values differs; the largest delta is 1 at x=2: 3 and 4\n"));
  // The sentence names the last difference; the NaN behind it are none.
  EXPECT_EQ(diffOf(ROW + "3, NaN, NaN ;", ROW + "4, NaN, NaN ;", {"--brief"}),
            different("Array 'v': The arrays 'v' have different values at the position (0)': "
                      "'3.000000' and '4.000000'.\n"));
}

TEST_F(DiffFilesTest, NaNInBothIsNoDifferenceInNestedGroupsEither) {
  const std::string head =
      "group: g { group: h { dimensions: x = 2 ; variables: float v(x) ; v:_FillValue = NaNf ; "
      "data: v = ";
  EXPECT_EQ(diffOf(head + "_, 2 ; } }", head + "_, 2 ; } }"), same());
  EXPECT_EQ(diffOf(head + "_, 2 ; } }", head + "_, _ ; } }"),
            different("Dictionary '/': Dictionary 'g': Array 'v': The arrays 'v' have different "
                      "values at the position (1)': '2.000000' and 'nan'.\n"
                      "/g/h/v: 1 of 2 values differs, 1 with NaN in one file alone; the first at "
                      "x=1: 2 and nan\n"));
}

TEST_F(DiffFilesTest, MissingValuesAreComparedAsTheyAreStored) {
  const std::string head =
      "dimensions: x = 2 ; variables: float v(x) ; v:_FillValue = -1e34f ; data: v = ";
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "_, 2 ;"), same());
  EXPECT_EQ(diffOf(head + "_, 2 ;", head + "4, 2 ;"),
            different("Array 'v': The arrays 'v' have different values at the position (0)': "
                      "'-9999999790214767953607394487959552.000000' and '4.000000'.\n"
                      "/v: 1 of 2 values differs; the largest delta is 1e+34 at x=0: -1e+34 and "
                      "4\n"));
}

TEST_F(DiffFilesTest, SameValuesInAnotherShapeDiffer) {
  EXPECT_EQ(diffOf("dimensions: x = 3 ; y = 2 ; variables: int v(y, x) ; data: v = 1,2,3,4,5,6 ;",
                   "dimensions: x = 2 ; y = 3 ; variables: int v(y, x) ; data: v = 1,2,3,4,5,6 ;"),
            different("Array 'v': The arrays 'v' have different sizes for the dimension : '0': '3' "
                      "and '2'.\n"
                      "/v: the shapes differ: x=3, y=2 and x=2, y=3\n"));
}

TEST_F(DiffFilesTest, TypesThatDifferHaveALine) {
  EXPECT_EQ(diffOf("variables: int v ;", "dimensions: x = 1 ; variables: double v(x) ;"),
            different("Array 'v': The arrays 'v' have different element type: '1' and '2'.\n"
                      "/v: the element types differ: Int and Double; the shapes differ: single "
                      "value and x=1\n"));
}

TEST_F(DiffFilesTest, KindsThatDifferHaveALine) {
  EXPECT_EQ(diffOf("variables: int v ;", "group: v { }"),
            different("The dictionaries don't have the same type: '/' is an array and '/' is a "
                      "dictionary.\n"
                      "/v: an array in 'a.nc', a group in 'b.nc'\n"));
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
            different("Array 'v': The arrays 'v' have different values at the position (54321)': "
                      "'54321' and '54320'.\n"
                      "/v: 1 of 100000 values differs; the largest delta is 1 at x=54321: 54321 "
                      "and 54320\n"));
}

TEST_F(DiffFilesTest, TextsAreShownFromWhereTheyDiffer) {
  const std::string head = "dimensions: x = 2 ; variables: string s(x) ; data: s = ";
  EXPECT_EQ(diffOf(head + R"("a", "b\n" ;)", head + R"("a", "c" ;)"),
            different("Array 's': The arrays 's' have different values at the position (1)': "
                      "'b\\n' and 'c'.\n"
                      "/s: 1 of 2 values differs; the first at x=1: 'b\\n' and 'c'\n"));
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

const char* const UNSEEN =
    "/v: 1 of 32 values differs; the largest delta is 1 at a=1, b=1, c=1, d=1, e=1: 0 and 1 (no "
    "sentence is about these: it covers the positions with 0 on the 4th and later axes)\n";

TEST_F(DiffFilesTest, FiveDimensionsAreComparedInFull) {
  const std::string zeros = fiveDimensions("0", "0");
  EXPECT_EQ(diffOf(zeros, zeros), same());
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1")), different(UNSEEN));
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1"), {"--brief"}), different(UNSEEN));
  EXPECT_EQ(diffOf(zeros, fiveDimensions("0", "1"), {"--quiet"}), different(""));
  EXPECT_EQ(diffOf(zeros, fiveDimensions("3", "1")),
            different("Array 'v': The arrays 'v' have different values at the position "
                      "(0;0;0;0;0)': '0' and '3'.\n"
                      "/v: 2 of 32 values differ; the largest delta is 3 at a=0, b=0, c=0, d=0, "
                      "e=0: 0 and 3\n"));
}

TEST_F(DiffFilesTest, FiveDimensionsWithoutValuesAreTheSame) {
  const std::string head =
      "dimensions: x = 2 ; n = UNLIMITED ; variables: int v(n, x, x, x, x) ; int w ; data: w = ";
  EXPECT_EQ(diffOf(head + "1 ;", head + "1 ;"), same());
  const std::string line = "/w: 1 of 1 value differs; the largest delta is 1: 1 and 2\n";
  EXPECT_EQ(diffOf(head + "1 ;", head + "2 ;"), different(line));
  EXPECT_EQ(diffOf(head + "1 ;", head + "2 ;", {"--brief"}), different(line));
  EXPECT_EQ(diffOf(head + "1 ;", head + "2 ;", {"--quiet"}), different(""));
}

TEST_F(DiffFilesTest, ValuesThatPassForTheirReferenceAreReported) {
  const std::string line =
      "/v: 2 of 3 values pass although the delta exceeds the tolerance: 1 because a negative "
      "reference makes the relative delta negative, 1 because nothing is divided by a reference of "
      "at most 1e-9; the first at x=0: 1 and -1\n";
  const std::string first = ROW + "1, 1e-20, 3 ;";
  const std::string second = ROW + "-1, 2e-20, 3 ;";
  EXPECT_EQ(diffOf(first, second, {"--relative", "0.1"}), (Outcome{0, line, ""}));
  EXPECT_EQ(diffOf(first, second, {"--relative", "0.1", "--quiet"}), same());
  EXPECT_EQ(diffOf(first, ROW + "-1, 2e-20, 4 ;", {"--relative", "0.1"}),
            different("Array 'v': The arrays 'v' have different values at the position (2)': "
                      "'3.000000' and '4.000000'. The relative delta is greater than 0.100000\n"
                      "/v: 1 of 3 values differs; the largest relative delta is 0.25 at x=2: 3 and "
                      "4\n" +
                      line));
}

TEST_F(DiffFilesTest, OutputStaysShort) {
  std::string text = "variables: ";
  std::string lines = "The dictionaries '/' have different sizes: '25' and '1'.\n";
  for (int i = 10; i < 35; ++i) {
    const std::string name = "v" + std::to_string(i);
    text += "int " + name + " ; ";
    lines += i < 30 ? "/" + name + ": only in 'a.nc'\n" : "";
  }
  EXPECT_EQ(diffOf(text, "group: g { }"), different(lines + "... and 6 more\n"));
}

TEST_F(DiffFilesTest, VariablesThatCannotBeComparedAreNamed) {
  const std::string point =
      "types: compound t { int a ; } ; variables: t p ; int v ; data: v = 1 ;";
  EXPECT_EQ(diffOf(point, point),
            (Outcome{0, "", "quillon: Not compared: /p (compound type 't')\n"}));
  EXPECT_EQ(diffOf(point, point, {"--quiet"}), same());
  EXPECT_EQ(diffOf(point, point, {"--variables", "v"}), same());
  EXPECT_EQ(diffOf(point, point, {"--variables", "p"}),
            failed("'p' of 'a.nc' cannot be compared: compound type 't'"));
  EXPECT_EQ(diffOf(point, "variables: int v ; data: v = 1 ;"), different("/p: only in 'a.nc'\n"));
  EXPECT_EQ(diffOf(point, "variables: int p ; int v ; data: v = 1 ;"),
            different("The dictionaries '/' have different sizes: '1' and '2'.\n"
                      "/p: not comparable in 'a.nc': compound type 't'\n"));
}

TEST(DiffCommandTest, ShortFormsPrintLess) {
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--quiet"}), different(""));
  EXPECT_EQ(diff({CLIMATE, ROUNDED, "--brief", "--variables", "SST"}),
            different("Array 'SST': The arrays 'SST' have different values at the position "
                      "(39;34;11)': '5.655882' and '5.656250'.\n"));
}

TEST(DiffCommandTest, MissingFileIsTrouble) {
  for (const char* option : {"--brief", "--quiet", "--absolute=1"}) {
    EXPECT_EQ(diff({CLIMATE, "data/none.nc", option}),
              failed("Cannot read 'data/none.nc': there is no such file"));
    EXPECT_EQ(diff({"data/none.nc", CLIMATE, option}),
              failed("Cannot read 'data/none.nc': there is no such file"));
  }
}

TEST(DiffCommandTest, OptionsThatExcludeEachOtherAreTrouble) {
  EXPECT_EQ(diff({"a", "b", "--absolute", "1", "--relative", "1"}),
            failed("--absolute excludes --relative (see quillon diff --help)"));
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
