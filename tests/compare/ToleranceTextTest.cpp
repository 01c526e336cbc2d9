#include <gtest/gtest.h>
#include <quillon/compare/Options.h>

#include <limits>
#include <stdexcept>
#include <tuple>

namespace quillon::compare {
namespace {

void expectTolerance(const char* text, const char* pattern, double absolute, double relative) {
  const PathTolerance read = parsePathTolerance(text);
  EXPECT_EQ(read.pattern, pattern) << text;
  EXPECT_EQ(read.tolerance.absolute, absolute) << text;
  EXPECT_EQ(read.tolerance.relative, relative) << text;
}

TEST(ToleranceTextTest, BothNumbersOrTheAbsoluteOneAlone) {
  expectTolerance("sst=0.5,1e-3", "sst", 0.5, 1e-3);
  expectTolerance("/cells/*=0", "/cells/*", 0, 0);
  expectTolerance("*=inf", "*", std::numeric_limits<double>::infinity(), 0);
}

TEST(ToleranceTextTest, TheLastEqualsSignCounts) { expectTolerance("a=b=2,3", "a=b", 2, 3); }

TEST(ToleranceTextTest, AnythingElseIsNamed) {
  for (const char* text :
       {"", "sst", "=1", "sst=", "sst=,1", "sst=1,", "sst=-1", "sst=nan", "sst=1,-1", "sst=1,nan",
        "sst=1,2,3", "sst= 1", "sst=1x", "sst=1e999", "0.5", "1,2"}) {
    try {
      std::ignore = parsePathTolerance(text);
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()),
                "'" + std::string(text) +
                    "' is no tolerance; write PATTERN=A,R or PATTERN=A, with numbers of at least "
                    "0");
    }
  }
}

}  // namespace
}  // namespace quillon::compare
