#include <gtest/gtest.h>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

TEST(InfoCommandTest, FileIsListedWhole) {
  EXPECT_EQ(
      runTool({"info", "data/north_atlantic_climate.nc"}),
      (Outcome{
          0,
          "/\n"
          "  AIRT    float   TIME=12 (unlimited) COADSY=35 COADSX=40  DEG C                        "
          "   AIR TEMPERATURE\n"
          "      fill: -1e+34 (float); chunks: 95 x 35 x 40; compression: shuffle, deflate 9\n"
          "  COADSX  double  COADSX=40                                degrees_east\n"
          "      chunks: 40; compression: shuffle, deflate 9\n"
          "  COADSY  double  COADSY=35                                degrees_north\n"
          "      chunks: 35; compression: shuffle, deflate 9\n"
          "  SLP     float   TIME=12 (unlimited) COADSY=35 COADSX=40  MB                           "
          "   SEA LEVEL PRESSURE\n"
          "      fill: -1e+34 (float); chunks: 95 x 35 x 40; compression: shuffle, deflate 9\n"
          "  SST     float   TIME=12 (unlimited) COADSY=35 COADSX=40  Deg C                        "
          "   SEA SURFACE TEMPERATURE\n"
          "      fill: -1e+34 (float); chunks: 95 x 35 x 40; compression: shuffle, deflate 9\n"
          "  TIME    double  TIME=12 (unlimited)                      hour since 0000-01-01 "
          "00:00:00\n"
          "      chunks: 512; compression: shuffle, deflate 9\n"
          "  WSPD    float   TIME=12 (unlimited) COADSY=35 COADSX=40  M/S                          "
          "   WIND SPEED\n"
          "      fill: -1e+34 (float); chunks: 95 x 35 x 40; compression: shuffle, deflate 9\n",
          ""}));
}

const char* const OUTLINE_OF_CELLS =
    "/cells\n"
    "\n"
    "/cells/otsu\n"
    "  area            uint64  label=85            px2\n"
    "      chunks: 85; compression: shuffle, deflate 9\n"
    "  perimeter       double  label=85            px\n"
    "      chunks: 85; compression: shuffle, deflate 9\n"
    "  eccentricity    double  label=85            1\n"
    "      chunks: 85; compression: shuffle, deflate 9\n"
    "  euler_number    int64   label=85            1\n"
    "      chunks: 85; compression: shuffle, deflate 9\n"
    "  mean_intensity  double  label=85 channel=3  optical density\n"
    "      chunks: 85 x 3; compression: shuffle, deflate 9\n"
    "  centroid        double  label=85 point=2    px\n"
    "      chunks: 85 x 2; compression: shuffle, deflate 9\n"
    "  bounding_box    int64   label=85 edge=4     px\n"
    "      chunks: 85 x 4; compression: shuffle, deflate 9\n"
    "\n"
    "/cells/li\n"
    "  area            uint64  label=51            px2\n"
    "      chunks: 51; compression: shuffle, deflate 9\n"
    "  perimeter       double  label=51            px\n"
    "      chunks: 51; compression: shuffle, deflate 9\n"
    "  eccentricity    double  label=51            1\n"
    "      chunks: 51; compression: shuffle, deflate 9\n"
    "  euler_number    int64   label=51            1\n"
    "      chunks: 51; compression: shuffle, deflate 9\n"
    "  mean_intensity  double  label=51 channel=3  optical density\n"
    "      chunks: 51 x 3; compression: shuffle, deflate 9\n"
    "  centroid        double  label=51 point=2    px\n"
    "      chunks: 51 x 2; compression: shuffle, deflate 9\n"
    "  bounding_box    int64   label=51 edge=4     px\n"
    "      chunks: 51 x 4; compression: shuffle, deflate 9\n";

TEST(InfoCommandTest, GroupIsListedWithTheGroupsBelow) {
  EXPECT_EQ(runTool({"info", "data/observations.nc", "--group", "/cells"}),
            (Outcome{0, OUTLINE_OF_CELLS, ""}));
}

TEST(InfoCommandTest, WholeFileIsListedUnlessAGroupIsGiven) {
  const Outcome outcome = runTool({"info", "data/observations.nc"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.substr(0, 12), "/\n\n/climate\n");
  EXPECT_EQ(outcome.out.substr(outcome.out.find("\n/cells\n") + 1), OUTLINE_OF_CELLS);
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
                                              "/\n"
                                              "  s       string  x=2                 a\\nb\n"
                                              "  t       char    x=2 n=4\n"
                                              "  scalar  double  single value\n"
                                              "  empty   short   none=0 (unlimited)\n"
                                              "      chunks: 2048\n"
                                              "  cov     double  x=2 x=2                   µ²\n"
                                              "  p       point   x=2\n"
                                              "      cannot be read: compound type 'point'\n",
                                              ""}));
}

TEST(InfoCommandTest, JsonIsOneObject) {
  const Scratch scratch;
  const std::string path = scratch.file("a.nc", R"(
    dimensions: t = UNLIMITED ; x = 3 ;
    variables: ushort v(t, x) ; v:units = "m" ; v:valid_range = 1us, 2us ;
      v:_Storage = "chunked" ; v:_ChunkSizes = 1, 3 ;
    :title = "both" ; data: v = 1, 2, 3, 4, 5, 6 ;
  )");
  EXPECT_EQ(runTool({"info", path, "--format", "json"}),
            (Outcome{0,
                     R"({"file": ")" + path +
                         R"(", "groups": [{"path": "/", "title": "both", "attributes": )"
                         R"({"title": "both"}, "variables": [{"name": "v", "type": "ushort", )"
                         R"("dimensions": {"t": 2, "x": 3}, "shape": [2, 3], "unlimited": ["t"], )"
                         R"("chunks": [1, 3], "unit": "m", "description": "", "attributes": )"
                         R"({"units": "m", "valid_range": [1, 2]}, "readable": true, )"
                         R"("reason": null}]}]})"
                         "\n",
                     ""}));
}

TEST(InfoCommandTest, AttributesAreListedWhereTheyAreAskedFor) {
  const Scratch scratch;
  const std::string path = scratch.file("a.nc", R"(
    dimensions: t = UNLIMITED ;
    variables: short v(t) ; v:scale_factor = 0.5f ; v:_FillValue = -1s ; v:long_name = "drift" ;
      v:_ChunkSizes = 16 ; v:_DeflateLevel = 3 ; v:_Shuffle = "true" ;
    :history = "made" ; group: g { :title = "inner" ; }
  )");
  EXPECT_EQ(runTool({"info", path, "--attributes"}),
            (Outcome{0,
                     "/\n"
                     "      history = \"made\"\n"
                     "  v  short  t=0 (unlimited)  drift\n"
                     "      packing: stored * 0.5; fill: -1 (short); chunks: 16; compression: "
                     "shuffle, deflate 3\n"
                     "      scale_factor = 0.5 (float)\n"
                     "      _FillValue = -1 (short)\n"
                     "      long_name = \"drift\"\n"
                     "\n"
                     "/g  inner\n"
                     "      title = \"inner\"\n",
                     ""}));
}

TEST(InfoCommandTest, HtmlIsAPage) {
  const std::string page = runTool({"info", "data/observations.nc", "--format", "html"}).out;
  EXPECT_EQ(page.substr(0, 15), "<!DOCTYPE html>");
  EXPECT_NE(page.find("<h2>/cells/otsu <span>"), std::string::npos);
}

TEST(InfoCommandTest, FormatIsOneOfThree) {
  EXPECT_EQ(runTool({"info", "data/nuclei_measurements.nc", "--format", "htm"}),
            failed("--format takes one of text, json, html, not 'htm'; did you mean 'html'?"));
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
