#include <gtest/gtest.h>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

TEST(InfoCommandTest, FileIsListedWhole) {
  EXPECT_EQ(
      runTool({"info", "data/north_atlantic_climate.nc"}),
      (Outcome{
          0,
          "/  7 arrays\n"
          "  AIRT    Double  COADSX=40 COADSY=35 TIME=12 (time)  DEG C                           "
          "AIR TEMPERATURE\n"
          "  COADSX  Double  COADSX=40                           degrees_east\n"
          "  COADSY  Double  COADSY=35                           degrees_north\n"
          "  SLP     Double  COADSX=40 COADSY=35 TIME=12 (time)  MB                              "
          "SEA LEVEL PRESSURE\n"
          "  SST     Double  COADSX=40 COADSY=35 TIME=12 (time)  Deg C                           "
          "SEA SURFACE TEMPERATURE\n"
          "  TIME    Double  TIME=12 (time)                      hour since 0000-01-01 00:00:00\n"
          "  WSPD    Double  COADSX=40 COADSY=35 TIME=12 (time)  M/S                             "
          "WIND SPEED\n",
          ""}));
}

const char* const CELLS =
    "/cells  2 groups\n"
    "\n"
    "/cells/otsu  7 arrays\n"
    "  area            UInt    label=85 (label)                      px2\n"
    "  perimeter       Double  label=85 (label)                      px\n"
    "  eccentricity    Double  label=85 (label)                      1\n"
    "  euler_number    Int     label=85 (label)                      1\n"
    "  mean_intensity  Double  channel=3 (channel) label=85 (label)  optical density\n"
    "  centroid        Double  point=2 label=85 (label)              px\n"
    "  bounding_box    Int     edge=4 label=85 (label)               px\n"
    "\n"
    "/cells/li  7 arrays\n"
    "  area            UInt    label=51 (label)                      px2\n"
    "  perimeter       Double  label=51 (label)                      px\n"
    "  eccentricity    Double  label=51 (label)                      1\n"
    "  euler_number    Int     label=51 (label)                      1\n"
    "  mean_intensity  Double  channel=3 (channel) label=51 (label)  optical density\n"
    "  centroid        Double  point=2 label=51 (label)              px\n"
    "  bounding_box    Int     edge=4 label=51 (label)               px\n";

TEST(InfoCommandTest, GroupIsListedWithTheGroupsBelow) {
  EXPECT_EQ(runTool({"info", "data/observations.nc", "--group", "/cells"}),
            (Outcome{0, CELLS, ""}));
}

TEST(InfoCommandTest, WholeFileIsListedUnlessAGroupIsGiven) {
  const Outcome outcome = runTool({"info", "data/observations.nc"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n', 13)), "/  2 groups\n\n/climate  7 arrays");
  EXPECT_EQ(outcome.out.substr(outcome.out.find("\n/cells  ") + 1), CELLS);
}

TEST(InfoCommandTest, OddVariablesAreListedToo) {
  const Scratch scratch;
  const std::string path = scratch.file("odd.nc", R"(
    types: compound point { int a ; int b ; }; // point
    dimensions: x = 2 ; n = 4 ; none = UNLIMITED ;
    variables:
      string s(x) ; s:units = "a\nb" ; char t(x, n) ; double scalar ; short empty(none) ;
      double cov(x, x) ; cov:long_name = "µ²" ; point p(x) ;
  )");
  EXPECT_EQ(runTool({"info", path}), (Outcome{0,
                                              "/  5 arrays\n"
                                              "  s       String  x=2           a\\nb\n"
                                              "  t       String  x=2\n"
                                              "  scalar  Double  single value\n"
                                              "  empty   Int     none=0\n"
                                              "  cov     Double  x=2 x=2             µ²\n"
                                              "  p  left out: compound type 'point'\n",
                                              ""}));
}

TEST(InfoCommandTest, UnknownGroupSaysWhichThereAre) {
  EXPECT_EQ(
      runTool({"info", "data/observations.nc", "--group", "cells/Li"}),
      failed("'data/observations.nc' has no group 'cells/Li'; did you mean 'cells/li', 'cells' or "
             "'cells/otsu'?"));
  EXPECT_EQ(runTool({"info", "data/nuclei_measurements.nc", "--group", "cells"}),
            failed("'data/nuclei_measurements.nc' has no group 'cells', only the root group"));
}

TEST(InfoCommandTest, FileThatIsNotThereIsAFailure) {
  EXPECT_EQ(runTool({"info", "data/none.nc"}),
            failed("Cannot read 'data/none.nc': there is no such file"));
}

}  // namespace
}  // namespace quillon::tools::test
