#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

/// Runs Python of the system's where it has the modules.
class TableReadBackTest : public ::testing::Test {
 protected:
  Outcome python(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), PYTHON3);
    return runProgram(arguments);
  }

  bool has(const std::string& module) const {
    return std::string(PYTHON3).front() == '/' && python({"-c", "import " + module}).status == 0;
  }

  void expectAsXarray(const std::string& file, const std::vector<std::string>& dimensions) const {
    std::vector<std::string> arguments = {QUILLON_SOURCE_DIR "/tests/tools/csv_equals_xarray.py",
                                          QUILLON_TOOL, file};
    arguments.insert(arguments.end(), dimensions.begin(), dimensions.end());
    EXPECT_EQ(python(arguments), (Outcome{0, "", ""})) << file;
  }

  Scratch m_scratch;
};

TEST_F(TableReadBackTest, CsvIsWhatXarrayMakesOfTheFile) {
  if (!has("xarray, netCDF4") && !has("xarray, scipy")) {
    GTEST_SKIP() << "there is no xarray that reads netCDF";
  }
  expectAsXarray("data/north_atlantic_climate.nc", {"TIME", "COADSY", "COADSX"});
  expectAsXarray(m_scratch.file("made.nc", R"(
    dimensions: time = 3 ; lat = 2 ; n = 4 ;
    variables: double time(time) ; time:units = "hours since 2011-08-01 06:00" ; float lat(lat) ;
      short t(time, lat) ; t:scale_factor = 0.01 ; t:add_offset = 273.15 ; t:_FillValue = -9s ;
      int count(time) ; count:_FillValue = -1 ; byte good(lat) ; good:dtype = "bool" ;
      char name(lat, n) ; float f(lat, time) ; f:missing_value = -99.f ; double one ;
      int64 big(time) ;
    data: time = 0, 6, 30.5 ; lat = 0.1, 0.2 ; t = 1, 2, _, 4, 5, 6 ; count = 1, _, 3 ;
      good = 1, 0 ; name = "abcd", "x" ; f = 1.1, 2.2, -99, NaNf, 5, 6 ; one = 7 ;
      big = 1, 2, 9007199254740993 ; )"),
                 {"time", "lat"});
}

TEST_F(TableReadBackTest, JsonIsReadByPython) {
  if (!has("json")) {
    GTEST_SKIP() << "there is no Python";
  }
  const std::string path = m_scratch.file("odd.nc", R"(
    dimensions: x = 3 ;
    variables: float v(x) ; string s(x) ; uint64 u(x) ;
    data: v = 0.1, NaNf, Infinityf ; s = "a\"b", "\001\\", "" ; u = 18446744073709551615, 0, 1 ; )");
  const char* const READ = R"(
import json, subprocess, sys
def run(what):
    return subprocess.run([sys.argv[1], "table", sys.argv[2], "--format", what],
                          check=True, stdout=subprocess.PIPE, universal_newlines=True).stdout
rows = json.loads(run("json"))
assert rows == [json.loads(line) for line in run("jsonl").splitlines()]
assert rows == [{"x": 0, "v": 0.1, "s": 'a"b', "u": 18446744073709551615},
                {"x": 1, "v": None, "s": "\x01\\", "u": 0},
                {"x": 2, "v": "Infinity", "s": "", "u": 1}], rows
)";
  EXPECT_EQ(python({"-c", READ, QUILLON_TOOL, path}), (Outcome{0, "", ""}));
}

}  // namespace
}  // namespace quillon::tools::test
