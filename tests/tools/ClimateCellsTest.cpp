#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

constexpr std::size_t TIMES = 12;
constexpr std::size_t COLUMNS = 40;  // COADSX
constexpr std::size_t LINES = 35;    // COADSY

/// The values of a variable as ncdump prints them, in the file's order; "_" is a missing one.
std::vector<std::string> dumped(const std::string& variable) {
  const std::string text =
      runProgram({NCDUMP, "-p", "6,6", "-v", variable, "data/north_atlantic_climate.nc"}).out;
  const std::size_t start = text.find("\n " + variable + " =", text.find("\ndata:")) + 4;
  std::string values = text.substr(start + variable.size());
  values.resize(values.find(';'));
  std::replace(values.begin(), values.end(), ',', ' ');
  std::istringstream words(values);
  std::vector<std::string> result;
  for (std::string word; words >> word;) {
    result.push_back(word == "_" ? "nan" : word);
  }
  return result;
}

std::vector<std::string> wordsOf(const std::string& line) {
  std::istringstream words(line);
  return {std::istream_iterator<std::string>(words), {}};
}

TEST(ClimateCellsTest, EveryCellIsWhatNcdumpPrints) {
  const std::vector<std::string> names = {"AIRT", "COADSX", "COADSY", "SLP", "SST", "TIME", "WSPD"};
  std::map<std::string, std::vector<std::string>> values;
  for (const std::string& name : names) {
    values[name] = dumped(name);
  }
  ASSERT_EQ(values["SST"].size(), TIMES * LINES * COLUMNS);
  ASSERT_EQ(values["TIME"].size(), TIMES);

  const Outcome outcome =
      runTool({"table", "data/north_atlantic_climate.nc", "--index", "TIME,COADSY,COADSX",
               "--max-rows", "0", "--format", "contract"});
  ASSERT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  std::istringstream lines(outcome.out);
  std::string line;
  std::getline(lines, line);
  EXPECT_THAT(wordsOf(line),
              ::testing::ElementsAre("Index", "[TIME]", "Index", "[COADSY]", "Index", "[COADSX]",
                                     "AIRT", "COADSX", "COADSY", "SLP", "SST", "TIME", "WSPD"));
  std::size_t missing = 0;
  for (std::size_t x = 0; x < COLUMNS; ++x) {
    for (std::size_t y = 0; y < LINES; ++y) {
      for (std::size_t t = 0; t < TIMES; ++t) {
        ASSERT_TRUE(std::getline(lines, line));
        const std::size_t position = (t * LINES + y) * COLUMNS + x;
        const std::vector<std::string> expected = {
            std::to_string(t),        std::to_string(y),       std::to_string(x),
            values["AIRT"][position], values["COADSX"][x],     values["COADSY"][y],
            values["SLP"][position],  values["SST"][position], values["TIME"][t],
            values["WSPD"][position]};
        ASSERT_EQ(wordsOf(line), expected) << "TIME " << t << " COADSY " << y << " COADSX " << x;
        missing += expected[7] == "nan" ? 1U : 0U;
      }
    }
  }
  EXPECT_FALSE(std::getline(lines, line));
  EXPECT_GT(missing, 0);
}

}  // namespace
}  // namespace quillon::tools::test
