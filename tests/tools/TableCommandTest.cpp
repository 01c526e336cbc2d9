#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <object_model/IO.h>
#include <quillon/memory/Selection.h>
#include <quillon/netcdf/File.h>
#include <quillon/tables/ContractPlan.h>
#include <tabra/MemoryDataFrame.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

Outcome table(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "table");
  return runTool(arguments);
}

Outcome printed(const std::string& text) { return {0, text, ""}; }

TEST(TableCommandTest, ClimateByTimeLatitudeAndLongitude) {
  EXPECT_EQ(
      table({CLIMATE, "-i", "TIME,COADSY,COADSX", "-n", "3"}),
      printed(
          "TIME                        COADSY        COADSX     AIRT      SLP      SST     WSPD\n"
          "                     degrees_north  degrees_east    DEG C       MB    Deg C      M/S\n"
          "0000-01-16T06:00:00              1           281  25.8192  1010.52  26.2958  4.96406\n"
          "0000-02-15T16:29:06              1           281  25.8061  1010.05  26.8736  3.79334\n"
          "0000-03-17T02:58:12              1           281  26.3247     1010  26.6447  2.85871\n"
          "[16800 rows x 7 columns]\n"));
}

TEST(TableCommandTest, TheLastDimensionVariesFastestAndMissingValuesAreBlank) {
  EXPECT_EQ(table({CLIMATE, "--variables", "SST, TIME", "--max-rows", "2"}),
            printed("      COADSX         COADSY  TIME                     SST\n"
                    "degrees_east  degrees_north                         Deg C\n"
                    "         281              1  0000-01-16T06:00:00  26.2958\n"
                    "         283              1  0000-01-16T06:00:00\n"
                    "[16800 rows x 4 columns]\n"));
}

TEST(TableCommandTest, TenRowsWithUnitsAndTheShapeUnlessToldOtherwise) {
  EXPECT_EQ(table({NUCLEI, "--variables", "cent*,area,euler_number"}),
            printed("label  area  euler_number  centroid[point=0]  centroid[point=1]\n"
                    "        px2             1                 px                 px\n"
                    "    0   111             1            15.3964            128.847\n"
                    "    1   152             1            17.0855            318.763\n"
                    "    2   556             1            32.5558            443.885\n"
                    "    3  1303             1             36.363            101.896\n"
                    "    4   542             1            27.1974            363.609\n"
                    "    5   454             1            33.8282            410.729\n"
                    "    6   175             1            36.9029            316.514\n"
                    "    7   339             1            48.5044             483.67\n"
                    "    8   240             1            50.0042            379.062\n"
                    "    9   288             1            53.5069            187.618\n"
                    "[85 rows x 5 columns]\n"));
}

TEST(TableCommandTest, GroupsAreReachedByTheirPath) {
  const Outcome alone = table({"data/nuclei_measurements_li.nc", "--max-rows", "0"});
  EXPECT_EQ(alone.status, 0);
  for (const char* path : {"cells/li", "/cells/li", "cells/li/"}) {
    EXPECT_EQ(table({OBSERVATIONS, "--group", path, "--max-rows", "0"}), alone);
  }
}

TEST(TableCommandTest, AllRowsAreThere) {
  for (const char* rows : {"0", "51", "18446744073709551615"}) {
    const Outcome outcome =
        table({"data/nuclei_measurements_li.nc", "--variables", "area", "-n", rows});
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 2 + 51 + 1);
  }
}

TEST(TableCommandTest, SelectionsByPositionAndByCoordinate) {
  EXPECT_EQ(table({CLIMATE, "--select", "TIME=@0000-03", "--select", "COADSY=-1", "--select",
                   "COADSX=@281:285", "--variables", "SST,SLP", "--format", "csv"}),
            printed("TIME,COADSY,COADSX,SLP,SST\n"
                    "0000-02-15T16:29:06,69,281,,\n"
                    "0000-02-15T16:29:06,69,283,,\n"
                    "0000-02-15T16:29:06,69,285,,\n"));
}

TEST(TableCommandTest, RangesOfTimesIncludeTheirEnds) {
  EXPECT_EQ(table({CLIMATE, "--select", "TIME=@0000-02-15:0000-04", "--select", "COADSY=0",
                   "--select", "COADSX=0", "--variables", "SST,SLP"}),
            printed("       COADSY        COADSX  TIME                     SLP      SST\n"
                    "degrees_north  degrees_east                            MB    Deg C\n"
                    "            1           281  0000-02-15T16:29:06  1010.05  26.8736\n"
                    "            1           281  0000-03-17T02:58:12     1010  26.6447\n"
                    "            1           281  0000-04-16T13:27:18  1010.44  26.8827\n"
                    "[3 rows x 5 columns]\n"));
}

TEST(TableCommandTest, ValuesAreDecodedUnlessTheyAreRaw) {
  const Scratch scratch;
  const std::string path = scratch.file("packed.nc", R"(
    dimensions: t = 2 ; n = 3 ;
    variables: int t(t) ; t:units = "days since 2011-08-01" ; short v(t) ; v:scale_factor = 0.5 ;
      v:add_offset = 1. ; v:_FillValue = -1s ; byte b(t) ; b:dtype = "bool" ; char c(t, n) ;
      int64 i(t) ; i:_FillValue = -1LL ;
    data: t = 0, 1 ; v = 3, _ ; b = 1, 0 ; c = "ab", "" ; i = 9007199254740993, -1 ; )");
  EXPECT_EQ(table({path, "--format", "csv"}), printed("t,v,b,c,i\n"
                                                      "2011-08-01,2.5,true,ab,9007199254740993\n"
                                                      "2011-08-02,,false,,-1\n"));
  EXPECT_EQ(table({path, "--format", "csv", "--raw"}),
            printed("t,v,b,c,i\n0,3,1,ab,9007199254740993\n1,-1,0,,-1\n"));
}

TEST(TableCommandTest, ExcludedVariablesAreNotThere) {
  EXPECT_EQ(table({NUCLEI, "--exclude", "*_*,centroid", "-n", "1"}),
            printed("label  area  perimeter  eccentricity\n"
                    "        px2         px             1\n"
                    "    0   111    41.1127      0.736388\n"
                    "[85 rows x 4 columns]\n"));
}

TEST(TableCommandTest, PrecisionHoldsForPeople) {
  const std::vector<std::string> what = {NUCLEI, "--variables", "perimeter", "-n", "1"};
  const auto with = [&what](const std::string& format) {
    std::vector<std::string> arguments = what;
    arguments.insert(arguments.end(), {"--precision", "3", "--format", format});
    return table(arguments);
  };
  EXPECT_EQ(with("text"), printed("label  perimeter\n"
                                  "              px\n"
                                  "    0       41.1\n"
                                  "[85 rows x 2 columns]\n"));
  EXPECT_EQ(with("markdown"), printed("| label | perimeter |\n"
                                      "| ---: | ---: |\n"
                                      "| 0 | 41.1 |\n"));
  EXPECT_EQ(with("tsv"), printed("label\tperimeter\n"
                                 "0\t41.112698372208094\n"));
  EXPECT_EQ(with("json"), printed("[\n"
                                  "{\"label\": 0, \"perimeter\": 41.112698372208094}\n"
                                  "]\n"));
  EXPECT_EQ(with("jsonl"), printed("{\"label\": 0, \"perimeter\": 41.112698372208094}\n"));
}

TEST(TableCommandTest, PositionsStandWhereCoordinatesWould) {
  EXPECT_EQ(table({CLIMATE, "--positions", "--variables", "SST,TIME", "--index", "TIME,COADSX",
                   "--select", "COADSY=0:1", "-n", "1"}),
            printed("TIME (position)  COADSX  SST[COADSY=0]  TIME\n"
                    "                                 Deg C\n"
                    "              0       0        26.2958  0000-01-16T06:00:00\n"
                    "[480 rows x 4 columns]\n"));
}

TEST(TableCommandTest, MoreThanAHundredColumnsHaveToBeAskedFor) {
  EXPECT_EQ(
      table({CLIMATE, "--index", "TIME", "--variables", "SST"}),
      failed("The table would have 1401 columns, more than 100, 1400 of them of 'SST'; take fewer "
             "variables, more axes into the index or a part of an axis, or ask for all columns "
             "(--variables, --index, --select, --all-columns)"));
  const Outcome all = table({CLIMATE, "--index", "TIME", "--variables", "SST", "--all-columns",
                             "--format", "csv", "-n", "1"});
  EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 2);
  EXPECT_EQ(all.out.substr(0, 35), "TIME,\"SST[COADSY=1, COADSX=281]\",\"S");
}

TEST(TableCommandTest, ReaderThatLeavesEarlyEndsTheWorkAtOnce) {
  const Scratch scratch;
  const std::string path =
      scratch.file("long.nc", "dimensions: x = 200000000 ; variables: int v(x) ;");
  EXPECT_EQ(runShell("$QUILLON table " + path + " --format csv | head -n 2"),
            printed("x,v\n0,-2147483647\n"));
}

TEST(TableCommandTest, WhatNobodyWouldSeeIsEscapedAndABackslashIsNoEscape) {
  const Scratch scratch;
  const std::string path = scratch.file("odd.nc", R"(
    dimensions: x = 1 ;
    variables: int a\\x1b(x) ; a\\x1b:units = "\033[31m" ; int c\,d(x) ; int e(x) ;
      e:units = ")"
                                                  "\xE2\x80\xAE"
                                                  R"(" ;
    data: a\\x1b = 1 ; c\,d = 2 ; e = 3 ; )");
  EXPECT_EQ(table({path, "--variables", "a\\\\x1b, c\\,d,e"}),
            printed("x    a\\\\x1b  c,d       e\n"
                    "   \\x1b[31m       \\u202e\n"
                    "0         1    2       3\n"
                    "[1 row x 4 columns]\n"));
}

/// All tables of the group with this index, as they are cut from the whole table in memory.
class WholeTable {
 public:
  WholeTable(const std::string& path, const std::string& group,
             const std::optional<std::vector<std::string>>& index)
      : m_file(path) {
    memory::Dictionary& from = m_file.group(group);
    const tables::ContractPlan plan = tables::contractPlan(from, {}, {"", {}, {}, index, true});
    memory::Selection selection(from, plan.variables);
    m_rows = plan.rows;
    object_model::exportToDataFrame(selection, m_frame.get(), plan.index);
  }

  unsigned long rows() const { return m_rows; }
  std::string text(unsigned long maxRows) const {
    return object_model::exportDataFrameToString(m_frame, maxRows);
  }
  std::string html(unsigned long maxRows) const {
    return object_model::exportDataFrameToHtml(m_frame, maxRows);
  }

 private:
  netcdf::File m_file;
  unsigned long m_rows = 0;
  std::shared_ptr<tabra::MemoryDataFrame> m_frame = std::make_shared<tabra::MemoryDataFrame>();
};

struct CutCase {
  const char* name;
  const char* file;
  const char* group;
  std::vector<std::string> axes;
};

void PrintTo(const CutCase& c, std::ostream* stream) { *stream << c.name; }

/// All orders of all choices of at least one of the axes.
std::vector<std::vector<std::string>> indexesOf(std::vector<std::string> axes) {
  std::set<std::vector<std::string>> indexes;
  std::sort(axes.begin(), axes.end());
  do {
    for (std::size_t count = 1; count <= axes.size(); ++count) {
      indexes.emplace(axes.begin(), axes.begin() + static_cast<std::ptrdiff_t>(count));
    }
  } while (std::next_permutation(axes.begin(), axes.end()));
  return {indexes.begin(), indexes.end()};
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ",") + name;
  }
  return text;
}

class CutTableTest : public ::testing::TestWithParam<CutCase> {};

TEST_P(CutTableTest, ShowsTheFirstRowsOfTheWholeTable) {
  const auto& [name, file, group, axes] = GetParam();
  for (const std::vector<std::string>& index : indexesOf(axes)) {
    const WholeTable whole(std::string(QUILLON_SOURCE_DIR "/") + file, group, index);
    const unsigned long rows = whole.rows();
    std::vector<std::string> arguments = {"table", file,      "--group",
                                          group,   "--index", joined(index)};
    arguments.emplace_back("--max-rows");
    for (const unsigned long maxRows : {1UL, 40UL, rows - 1, rows}) {
      std::vector<std::string> cut = arguments;
      cut.insert(cut.end(), {std::to_string(maxRows), "--format", "contract", "--all-columns"});
      EXPECT_EQ(runTool(cut).out, whole.text(maxRows)) << joined(index) << " " << maxRows;
    }
    arguments.insert(arguments.end(), {"11", "--format", "contract-html", "--all-columns"});
    EXPECT_EQ(runTool(arguments).out, whole.html(11)) << joined(index);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Data, CutTableTest,
    ::testing::ValuesIn(std::vector<CutCase>{
        {"Climate", "data/north_atlantic_climate.nc", "", {"TIME", "COADSY", "COADSX"}},
        {"Rounded", "data/north_atlantic_climate_4_digits.nc", "", {"TIME", "COADSX"}},
        {"Nuclei", "data/nuclei_measurements.nc", "", {"label"}},
        {"NucleiOfAnotherThreshold", "data/nuclei_measurements_li.nc", "", {"label", "point"}},
        {"ClimateInAGroup", "data/observations.nc", "climate", {"COADSY", "TIME"}},
        {"CellsInAGroup", "data/observations.nc", "cells/otsu", {"label", "channel"}},
        {"MoreCellsInAGroup", "data/observations.nc", "cells/li", {"label"}},
    }),
    [](const auto& c) { return c.param.name; });

TEST(TableCommandTest, ContractTakesTheOtherOptions) {
  const Scratch scratch;
  const std::string path = scratch.file("packed.nc", R"(
    dimensions: x = 12 ; variables: short v(x) ; v:scale_factor = 0.5 ; int w(x) ;
    data: v = 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 ; )");
  EXPECT_EQ(table({path, "--format", "contract", "--exclude", "w"}), printed("Index [x]      v\n"
                                                                             "0              0.5\n"
                                                                             "1              1\n"
                                                                             "2              1.5\n"
                                                                             "3              2\n"
                                                                             "4              2.5\n"
                                                                             "5              3\n"
                                                                             "6              3.5\n"
                                                                             "7              4\n"
                                                                             "8              4.5\n"
                                                                             "9              5\n"
                                                                             "...\n"));
  EXPECT_EQ(table({path, "--format", "contract", "--variables", "v", "--raw", "-n", "2"}),
            printed("Index [x]      v\n"
                    "0              1\n"
                    "1              2\n"
                    "...\n"));
}

class OddFileTest : public ::testing::Test {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.file("odd.nc", R"(
    types: compound point { int a ; int b ; }; // point
    dimensions: x = 2 ; y = 2 ; n = 3 ; none = UNLIMITED ;
    variables:
      short x(x) ; ubyte y(y) ; double A(y, x) ; float single ; string s(x) ; char t(x, n) ;
      double four(x, y, n, y) ; point p(x) ; double cov(x, x) ; int empty(none) ;
      double far(x, n, y) ;
    data: x = -1, 2 ; y = 250, 3 ; A = 0.5, _, 1e10, -1e-5 ; cov = 1, 2, 3, 4 ;
    group: inner { dimensions: x = 3 ; variables: int P(/x) ; int Q(x) ; int R(x) ;
      data: P = 1, 2 ; Q = 3, 4, 5 ; R = 6, 7, 8 ; }
    group: hollow { })");
};

TEST_F(OddFileTest, WhatATableCannotHoldIsReported) {
  EXPECT_EQ(
      table({m_path, "--index", "x", "--format", "contract"}),
      (Outcome{
          0,
          "Index [x]      x              y              A[y=0]         A[y=1]         far[y=0, "
          "n=0]  far[y=1, n=0]  far[y=0, n=1]  far[y=1, n=1]  far[y=0, n=2]  far[y=1, n=2]\n"
          "0              -1             250            0.5            1e+10          nan          "
          "  nan            nan            nan            nan            nan\n"
          "1              2              250            nan            -1e-05         nan          "
          "  nan            nan            nan            nan            nan\n",
          "quillon: 'y' shows only its first of 2 values, as its axis 'y' is not in the index\n"
          "quillon: 'p' is not in the table: compound type 'point'\n"
          "quillon: 'single' is not in the table: it has no dimensions\n"
          "quillon: 's' is not in the table: it holds text\n"
          "quillon: 't' is not in the table: it holds text\n"
          "quillon: 'four' is not in the table: it has 4 dimensions, more than 3\n"
          "quillon: 'cov' is not in the table: its axis 'x' occurs twice and is in the index\n"
          "quillon: 'empty' is not in the table: it has no values along its axis 'none'\n"}));
}

TEST_F(OddFileTest, WhatATableOfAnySizeCannotHoldIsReported) {
  EXPECT_EQ(
      table({m_path, "--index", "x", "--variables", "x,p,cov"}),
      (Outcome{
          0, " x\n-1\n 2\n[2 rows x 1 column]\n",
          "quillon: 'p' is not in the table: compound type 'point'\n"
          "quillon: 'cov' is not in the table: its axis 'x' occurs twice and is in the index\n"}));
}

TEST_F(OddFileTest, VariableThatTheIndexLeavesNoRoomForIsReported) {
  EXPECT_EQ(
      table({m_path, "--variables", "x,A,empty", "--index", "none,x,y", "--format", "contract"}),
      (Outcome{0,
               "Index [none]   Index [x]      Index [y]      x              A              empty\n",
               ""}));
  EXPECT_EQ(
      table({m_path, "--variables", "x,y,empty,far", "--index", "none,x,y", "--format", "contract"})
          .err,
      "quillon: 'far' is not in the table: its further axes and the index are 4 axes, more than "
      "3\n");
}

TEST_F(OddFileTest, NamedVariablesThatATableCannotHoldAreAFailureWhenNothingIsLeft) {
  EXPECT_EQ(table({m_path, "--variables", "s,p", "--format", "contract"}),
            failed("'" + m_path +
                   "' has no variables that the table could hold: 'p' (compound type 'point'), 's' "
                   "(it holds text)"));
}

TEST_F(OddFileTest, AxisOfTwoSizesIsAFailure) {
  EXPECT_EQ(runTool({"table", m_path, "--group", "inner"}),
            failed("The axis 'x' has different sizes: 2 in 'P', 3 in 'Q'"));
  EXPECT_EQ(table({m_path, "--group", "inner", "--variables", "Q,R", "--format", "contract"}),
            (Outcome{0,
                     "Index [x]      Q              R\n"
                     "0              3              6\n"
                     "1              4              7\n"
                     "2              5              8\n",
                     ""}));
}

TEST_F(OddFileTest, GroupWithoutVariablesIsAFailure) {
  EXPECT_EQ(runTool({"table", m_path, "--group", "hollow"}),
            failed("Group 'hollow' of '" + m_path + "' has no variables of its own"));
}

TEST(TableCommandTest, TableThatMemoryCannotHoldIsAFailure) {
  const Scratch scratch;
  const std::string path = scratch.file(
      "long.nc", "dimensions: x = 4000000 ; y = 4000000 ; variables: byte A(x) ; byte B(y) ;");
  EXPECT_EQ(
      table({path, "--index", "x,y", "--format", "contract"}),
      failed("The table would have 16000000000000 rows and 4 columns, which is more than fits "
             "in memory; choose fewer --variables or another --index"));
}

struct FailureCase {
  const char* rule;
  std::vector<std::string> arguments;
  const char* sentence;
};

void PrintTo(const FailureCase& c, std::ostream* stream) { *stream << c.rule; }

class TableFailureTest : public ::testing::TestWithParam<FailureCase> {};

TEST_P(TableFailureTest, PrintsOneSentenceAndNoTable) {
  std::vector<std::string> arguments = GetParam().arguments;
  arguments.insert(arguments.begin(), "table");
  EXPECT_EQ(runTool(arguments), failed(GetParam().sentence));
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, TableFailureTest,
    ::testing::ValuesIn(std::vector<FailureCase>{
        {"MissingFile", {"none.nc"}, "Cannot read 'none.nc': there is no such file"},
        {"UnknownVariable",
         {CLIMATE, "--variables", "SST,sst"},
         "'data/north_atlantic_climate.nc' has no variable 'sst'; did you mean 'SST', 'SLP' or "
         "'AIRT'?"},
        {"UnknownVariableOfAGroup",
         {OBSERVATIONS, "--group", "cells/li", "--variables", "Q"},
         "Group 'cells/li' of 'data/observations.nc' has no variable 'Q'; did you mean 'area', "
         "'centroid' or 'perimeter'?"},
        {"UnknownGroup",
         {OBSERVATIONS, "--group", "cell"},
         "'data/observations.nc' has no group 'cell'; did you mean 'cells', 'cells/li' or "
         "'climate'?"},
        {"GroupOfGroups",
         {OBSERVATIONS},
         "'data/observations.nc' has no variables of its own; below it are the groups climate, "
         "cells, cells/otsu, cells/li"},
        {"UnknownIndex",
         {CLIMATE, "--index", "TIME,time"},
         "No variable for the table has an axis 'time'; did you mean 'TIME', 'COADSX' or "
         "'COADSY'?"},
        {"UnknownIndexOfTheContract",
         {CLIMATE, "--index", "TIME,time", "--format", "contract"},
         "No variable for the table has an axis 'time'; the axes are COADSX, COADSY, TIME"},
        {"UnknownFormat",
         {CLIMATE, "--format", "cvs"},
         "--format takes one of text, markdown, html, csv, tsv, json, jsonl, contract, "
         "contract-html, not 'cvs'; did you mean 'csv'?"},
        {"NoPrecision",
         {CLIMATE, "--precision", "0"},
         "--precision takes a whole number from 1 to 17, not '0'"},
        {"PrecisionBeyondDoubles",
         {CLIMATE, "--precision", "18"},
         "--precision takes a whole number from 1 to 17, not '18'"},
        {"SelectionOfNothing",
         {CLIMATE, "--select", "TIME"},
         "'TIME' selects nothing; write AXIS=3, AXIS=0:3 (positions, end excluded), AXIS=@500 or "
         "AXIS=@FIRST:LAST (coordinates, end included)"},
        {"SelectionWithTheContract",
         {CLIMATE, "--select", "TIME=0", "--format", "contract"},
         "--select does not go with --format contract, the library's own export of whole arrays"},
        {"ExcludedPatternOfNothing",
         {CLIMATE, "--exclude", "sst*"},
         "'data/north_atlantic_climate.nc' has no variable 'sst*'; did you mean 'SST', 'SLP' or "
         "'WSPD'?"},
        {"IndexTwice", {CLIMATE, "--index", "TIME,TIME"}, "The index names the axis 'TIME' twice"},
        {"EmptyIndex",
         {CLIMATE, "--index", ""},
         "--index takes names separated by commas, and '' holds an empty one"},
        {"EmptyVariable",
         {CLIMATE, "--variables", "SST,"},
         "--variables takes names separated by commas, and 'SST,' holds an empty one"},
        {"NegativeRows",
         {CLIMATE, "--max-rows", "-1"},
         "--max-rows takes a whole number from 0 (all rows) to 18446744073709551615, not '-1'"},
        {"FractionalRows",
         {CLIMATE, "--max-rows=1.5"},
         "--max-rows takes a whole number from 0 (all rows) to 18446744073709551615, not '1.5'"},
        {"TextAsRows",
         {CLIMATE, "--max-rows", "all"},
         "--max-rows takes a whole number from 0 (all rows) to 18446744073709551615, not 'all'"},
        {"RowsBeyond64Bits",
         {CLIMATE, "--max-rows", "18446744073709551616"},
         "--max-rows takes a whole number from 0 (all rows) to 18446744073709551615, not "
         "'18446744073709551616'"},
        {"OutputOverItsInput",
         {CLIMATE, "--output", "data/../data/north_atlantic_climate.nc"},
         "--output names 'data/../data/north_atlantic_climate.nc', the file that is read"},
        {"OutputIntoAMissingDirectory",
         {CLIMATE, "--output", "none/table"},
         "Cannot write 'none/table': No such file or directory"},
        {"OutputIsADirectory",
         {CLIMATE, "--output", "data"},
         "Cannot write 'data': Is a directory"},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(TableCommandTest, OutputToAFullDeviceIsAFailure) {
  EXPECT_EQ(runShell("$QUILLON table " + std::string(CLIMATE) + " --output /dev/fd/3 3>/dev/full"),
            failed("Cannot write '/dev/fd/3': No space left on device"));
}

TEST(TableCommandTest, OutputFileHoldsWhatWouldBePrinted) {
  const Scratch scratch;
  const std::string text = table({CLIMATE}).out;
  EXPECT_EQ(runTool({"table", CLIMATE, "--output", scratch.path("table")}), (Outcome{0, "", ""}));
  EXPECT_EQ(contentOf(scratch.path("table")), text);
  EXPECT_THAT(scratch.entries(), ElementsAre("table"));
}

TEST(TableCommandTest, HtmlIsPrintedAsAFragment) {
  const std::string html =
      "<table>\n"
      "  <thead>\n"
      "    <tr><th style=\"text-align: right\">label</th><th style=\"text-align: "
      "right\">area</th></tr>\n"
      "    <tr><th style=\"text-align: right\"></th><th style=\"text-align: right\">px2</th></tr>\n"
      "  </thead>\n"
      "  <tbody>\n"
      "    <tr><td style=\"text-align: right\">0</td><td style=\"text-align: "
      "right\">111</td></tr>\n"
      "    <tr><td style=\"text-align: right\">1</td><td style=\"text-align: "
      "right\">152</td></tr>\n"
      "  </tbody>\n"
      "</table>\n";
  EXPECT_EQ(table({NUCLEI, "--html", "--variables", "area", "-n", "2"}), printed(html));
  EXPECT_EQ(table({NUCLEI, "--format", "html", "--variables", "area", "-n", "2"}), printed(html));
}

TEST(TableCommandTest, HtmlOutputIsAPageWithTheFilesTitle) {
  const Scratch scratch;
  EXPECT_EQ(
      table({NUCLEI, "--html", "--variables", "area", "-n", "2", "-o", scratch.path("page.html")}),
      printed(""));
  const std::string page = contentOf(scratch.path("page.html"));
  EXPECT_THAT(page, HasSubstr("<strong>Nuclei measured in an immunohistochemistry micrograph of "
                              "colon tissue, one label each</strong> <span>Group / · 2 of 85 "
                              "rows</span>"));
  EXPECT_THAT(page, HasSubstr(table({NUCLEI, "--html", "--variables", "area", "-n", "2"}).out));
  EXPECT_THAT(scratch.entries(), ElementsAre("page.html"));
}

TEST(TableCommandTest, HtmlPageNamesTheGroupAndAFileWithoutTitle) {
  const Scratch scratch;
  for (const char* title : {"", ":title = \"\" ;", ":title = \" \\n\" ;"}) {
    const std::string path = scratch.file("a&b.nc", std::string(title) + R"(
      group: g { group: h\<i\> { dimensions: x\<y = 1 ; variables: int a\&b(x\<y) ; data: a\&b = 7 ; } })");
    const std::string page = scratch.path("page.html");
    EXPECT_EQ(table({path, "--group", "g/h<i>/", "--html", "--output", page}), printed(""));
    EXPECT_THAT(contentOf(page), HasSubstr("<title>a&amp;b.nc</title>"));
    EXPECT_THAT(contentOf(page), HasSubstr("<span>Group /g/h&lt;i&gt; · 1 row</span>"));
    EXPECT_THAT(contentOf(page), HasSubstr(">x&lt;y</th>"));
  }
}

TEST(TableCommandTest, ContractHtmlIsTheSameInAFile) {
  const Scratch scratch;
  const std::vector<std::string> what = {NUCLEI, "--format", "contract-html", "-n", "2"};
  std::vector<std::string> intoFile = what;
  intoFile.insert(intoFile.end(), {"-o", scratch.path("table.html")});
  EXPECT_EQ(table(intoFile), printed(""));
  EXPECT_EQ(contentOf(scratch.path("table.html")), table(what).out);
}

TEST(TableCommandTest, FailureKeepsTheOutputFile) {
  const Scratch scratch;
  writeContent(scratch.path("table"), "before\n");
  for (const std::vector<std::string>& rest : {std::vector<std::string>{"--index", "Q"},
                                               {"--variables", "Q"},
                                               {"--max-rows", "-1"},
                                               {"--html", "--index", "Q"}}) {
    std::vector<std::string> arguments = {"table", CLIMATE, "--output", scratch.path("table")};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    EXPECT_EQ(runTool(arguments).status, 2);
  }
  EXPECT_EQ(contentOf(scratch.path("table")), "before\n");
  EXPECT_THAT(scratch.entries(), ElementsAre("table"));
}

TEST(TableCommandTest, FileSystemThatTakesNoMoreKeepsTheOutputFile) {
  const Scratch scratch;
  writeContent(scratch.path("table"), "before\n");
  const Outcome outcome =
      runShell("(ulimit -f 0; $QUILLON table data/nuclei_measurements.nc --output " +
               scratch.path("table") + ") 2>&1 | cat");
  EXPECT_EQ(outcome.out, "quillon: Cannot write '" + scratch.path("table") + "': File too large\n");
  EXPECT_EQ(contentOf(scratch.path("table")), "before\n");
  EXPECT_THAT(scratch.entries(), ElementsAre("table"));
}

// A limit that is met in the midst of a write, which then writes less than it was given.
TEST(TableCommandTest, ShortWriteIsNoTable) {
  const Scratch scratch;
  const std::string table =
      std::string("(ulimit -f 100; $QUILLON table ") + CLIMATE + " --format csv ";
  EXPECT_EQ(runShell(table + "--output " + scratch.path("table") + ") 2>&1 | cat").out,
            "quillon: Cannot write '" + scratch.path("table") + "': File too large\n");
  EXPECT_THAT(scratch.entries(), ElementsAre());
  EXPECT_EQ(runShell(table + "> " + scratch.path("table") + ") 2>&1 | cat").out,
            "quillon: Cannot write to standard output: File too large\n");
}

// From too little to start to enough: a whole table, or none and a sentence.
TEST(TableCommandTest, MissingMemoryIsASentenceOrNothingIsMissing) {
  if (IS_SANITIZED) {
    GTEST_SKIP() << "memory cannot be limited under the address sanitizer";
  }
  const std::string command =
      std::string("$QUILLON table ") + CLIMATE + " --variables SST --format csv";
  const Outcome whole = runShell(command);
  ASSERT_EQ(whole.status, 0);
  bool wasRefused = false;
  for (unsigned long kibibytes = 1UL << 14U; kibibytes <= 1UL << 20U; kibibytes += kibibytes / 8) {
    const Outcome outcome =
        runShell("(ulimit -v " + std::to_string(kibibytes) + "; " + command + ")");
    if (outcome.status == 0) {
      EXPECT_EQ(outcome, whole) << kibibytes;
      continue;
    }
    EXPECT_EQ(outcome.out, "") << kibibytes;
    // Before main(), the loader speaks.
    if (outcome.status != 127) {
      wasRefused = true;
      EXPECT_EQ(outcome.status, 2) << kibibytes;
      EXPECT_EQ(outcome.err.substr(0, 9), "quillon: ") << kibibytes;
      EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
  }
  EXPECT_TRUE(wasRefused);
}

TEST(TableCommandTest, CutFileIsAFailureWithoutATable) {
  const Scratch scratch;
  const std::string whole = contentOf(std::string(QUILLON_SOURCE_DIR "/") + CLIMATE);
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{7}, whole.size() / 2, whole.size() - 1}) {
    writeContent(scratch.path("cut.nc"), whole.substr(0, size));
    const Outcome outcome = runTool({"table", scratch.path("cut.nc")});
    EXPECT_EQ(outcome.status, 2) << size;
    EXPECT_EQ(outcome.out, "") << size;
    EXPECT_THAT(outcome.err, HasSubstr("quillon: Cannot read '" + scratch.path("cut.nc") + "': "));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  }
}

}  // namespace
}  // namespace quillon::tools::test
