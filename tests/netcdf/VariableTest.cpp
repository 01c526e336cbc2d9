#include <limits>
#include <ostream>

#include "StoredFiles.h"
#include "Variable.h"

namespace quillon::netcdf {
namespace {

TEST(VariableTest, ValuesThatNoMemoryHoldsAreAnError) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  {
    const Writer writer(path, 0);
    writer.put<int>(writer.variable("v", NC_INT, {writer.dimension("x", 1)}), {1}, {1});
  }
  const Variable v = variableOf(path, "v");
  const auto errorFor = [&](unsigned long count) {
    return errorOf([&] {
      std::vector<double> values;
      v.makeRoom(values, count);
    });
  };
  const std::string error =
      "Cannot read '" + path + "': variable '/v' cannot be read: there is no memory for ";
  EXPECT_EQ(errorFor(1), "");
  EXPECT_EQ(errorFor(std::numeric_limits<unsigned long>::max()),
            error + "18446744073709551615 values at a time");
  if (MEMORY_IS_LIMITED) {  // the sanitizers end the process
    EXPECT_EQ(errorFor(1UL << 59U), error + "576460752303423488 values at a time");
  }
}

struct BlocksCase {
  const char* rule;
  std::vector<unsigned long> chunks;
  std::vector<Range> ranges;
  std::vector<unsigned long> blocks;
};

void PrintTo(const BlocksCase& c, std::ostream* os) { *os << c.rule; }

class VariableBlocksTest : public testing::TestWithParam<BlocksCase> {};

TEST_P(VariableBlocksTest, AreTheChunksAsTheIndicesMeetThem) {
  Variable variable;
  variable.chunks = GetParam().chunks;
  variable.ranges = GetParam().ranges;
  variable.shape = {10, 10};
  if (!variable.ranges.empty()) {
    variable.shape.clear();
  }
  for (const Range& range : variable.ranges) {
    variable.shape.push_back(static_cast<unsigned long>(range.count));
  }
  EXPECT_EQ(variable.blocks(), GetParam().blocks);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, VariableBlocksTest,
    testing::ValuesIn(std::vector<BlocksCase>{
        {"NoneOfOnePiece", {}, {{0, 10, 2}}, {}},
        {"AllIndices", {4, 3}, {}, {4, 3}},
        {"RangeOfAll", {4}, {{0, 10, 1}}, {4}},
        {"FromAChunksBegin", {4}, {{4, 6, 1}}, {4}},
        {"FromWithinAChunk", {4}, {{1, 6, 1}}, {}},
        {"FromTheEndOfAChunk", {4}, {{3, 2, 1}}, {}},
        {"WithinAChunk", {4}, {{5, 3, 1}}, {3}},
        {"OneIndex", {4}, {{3, 1, 1}}, {1}},
        {"NoIndex", {4}, {{2, 0, 1}}, {1}},
        {"StepsThatAChunkIsAMultipleOf", {4}, {{0, 5, 2}}, {2}},
        {"StepsThatMeetOneIndexOfAChunk", {4}, {{0, 3, 4}}, {1}},
        {"StepsThatAChunkIsNoMultipleOf", {4}, {{0, 4, 3}}, {}},
        {"StepsWithinAChunk", {4}, {{4, 2, 3}}, {2}},
        {"EachDimensionForItself", {4, 3, 2}, {{0, 5, 2}, {4, 2, 1}, {2, 6, 1}}, {2, 2, 2}},
        {"EachDimensionFromItsOwnBegin", {4, 4}, {{0, 5, 2}, {4, 6, 1}}, {2, 4}},
        {"OneThatCannotBeToldIsEnough", {4, 3}, {{0, 10, 1}, {1, 9, 1}}, {}},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(VariableTest, RoomIsMadeOnlyWhereThereIsTooLittle) {
  const Variable variable;
  std::vector<int> values{1, 2, 3};
  variable.makeRoom(values, 2);
  EXPECT_EQ(values, (std::vector<int>{1, 2, 3}));
  variable.makeRoom(values, 4);
  EXPECT_EQ(values, (std::vector<int>{1, 2, 3, 0}));
}

}  // namespace
}  // namespace quillon::netcdf
