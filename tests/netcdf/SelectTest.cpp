#include <quillon/memory/Values.h>
#include <rapidcheck.h>

#include <numeric>
#include <stdexcept>
#include <tuple>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;
using Ranges = std::map<std::string, Range>;

/// A grid whose values are their offsets, with coordinates, in a classic file and in one of
/// chunks.
class SelectTest : public testing::TestWithParam<int> {
 protected:
  SelectTest() {
    const Writer writer(m_path, GetParam());
    const int z = writer.dimension("z", 6);
    const int y = writer.dimension("y", 5);
    const int x = writer.dimension("x", 7);
    const int length = writer.dimension("length", 2);
    const int grid = writer.variable("grid", NC_SHORT, {z, y, x});
    const int level = writer.variable("z", NC_DOUBLE, {z});
    const int names = writer.variable("names", NC_CHAR, {y, length});
    if (GetParam() == NC_NETCDF4) {
      const std::size_t chunks[] = {2, 3, 4};
      must(nc_def_var_chunking(writer.root(), grid, NC_CHUNKED, chunks));
    }
    std::vector<short> values(6 * 5 * 7);
    std::iota(values.begin(), values.end(), static_cast<short>(0));
    writer.put<short>(grid, {6, 5, 7}, values);
    writer.put<double>(level, {6}, {0, 10, 20, 30, 40, 50});
    writer.put<char>(names, {5, 2}, {'a', 'a', 'b', 'b', 'c', 'c', 'd', 'd', 'e', 'e'});
  }

  std::vector<std::string> gridOf(const Ranges& ranges) const {
    const memory::Dictionary part = File(m_path).select("/", ranges);
    return valuesOf(part.at<memory::ArrayBase>("grid"));
  }

  /// What the grid has at these indices; all three dimensions are named.
  static std::vector<long> offsetsAt(const Ranges& ranges) {
    const auto at = [&ranges](const char* name, long k) {
      return ranges.at(name).first + k * ranges.at(name).step;
    };
    std::vector<long> offsets;
    for (long z = 0; z < ranges.at("z").count; ++z) {
      for (long y = 0; y < ranges.at("y").count; ++y) {
        for (long x = 0; x < ranges.at("x").count; ++x) {
          offsets.push_back((at("z", z) * 5 + at("y", y)) * 7 + at("x", x));
        }
      }
    }
    return offsets;
  }

  std::string refusalOf(const Ranges& ranges) const {
    try {
      std::ignore = File(m_path).select("/", ranges);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return {};
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

INSTANTIATE_TEST_SUITE_P(Formats, SelectTest, testing::Values(0, NC_64BIT_DATA, NC_NETCDF4),
                         [](const auto& c) { return "Mode" + std::to_string(c.param); });

TEST_P(SelectTest, ReadsTheIndicesThatAreNamed) {
  EXPECT_THAT(gridOf({{"z", {1, 2, 3}}, {"y", {2, 1, 1}}, {"x", {1, 3, 2}}}),
              ElementsAre("50", "52", "54", "155", "157", "159"));
}

TEST_P(SelectTest, WholeWhereNothingIsNamed) { EXPECT_EQ(gridOf({}).size(), 210U); }

TEST_P(SelectTest, NoIndicesAreAllowed) {
  EXPECT_TRUE(gridOf({{"z", {0, 0, 1}}}).empty());
  EXPECT_TRUE(gridOf({{"z", {6, 0, 1}}}).empty());
}

TEST_P(SelectTest, NoValuesAreReadWhereNoneAreAskedFor) {
  const memory::Dictionary part = File(m_path).select("/", {{"y", {0, 2, 3}}, {"x", {1, 0, 2}}});
  const std::vector<unsigned long> start(3);
  const std::vector<unsigned long> extent{0, 2, 6};
  short untouched = 42;
  memory::bulkValuesOf(part.at<memory::ArrayBase>("grid"))
      ->readValues(start.data(), extent.data(), &untouched);
  EXPECT_EQ(untouched, 42);
}

TEST_P(SelectTest, CoordinatesAndTextsAreCutAlike) {
  const memory::Dictionary part =
      File(m_path).select("", {{"z", {1, 2, 4}}, {"y", {3, 2, 1}}, {"x", {0, 1, 1}}});
  const auto& grid = part.at<memory::ArrayBase>("grid");
  EXPECT_THAT(shapeOf(grid), ElementsAre(1, 2, 2));
  const auto levels = std::dynamic_pointer_cast<const memory::ArrayBase>(grid.coordinates(2));
  ASSERT_NE(levels, nullptr);
  EXPECT_THAT(valuesOf(*levels), ElementsAre("10", "50"));
  EXPECT_THAT(valuesOf(part.at<memory::ArrayBase>("names")), ElementsAre("dd", "ee"));
}

TEST_P(SelectTest, ManyValuesAreReadAtTheirSteps) {
  constexpr std::size_t COUNT = 20000;
  const std::string path = m_scratch.path("many.nc");
  {
    const Writer writer(path, GetParam());
    std::vector<int> values(COUNT);
    std::iota(values.begin(), values.end(), 0);
    writer.put<int>(writer.variable("v", NC_INT, {writer.dimension("x", COUNT)}), {COUNT}, values);
  }
  const memory::Dictionary part = File(path).select("/", {{"x", {1, 10000, 2}}});
  const unsigned long start = 0;
  const unsigned long extent = 10000;
  std::vector<long> values(extent);
  memory::copyValues(part.at<memory::ArrayBase>("v"), &start, &extent, values.data());
  for (unsigned long k = 0; k < extent; ++k) {
    ASSERT_EQ(values[k], 2 * static_cast<long>(k) + 1);
  }
}

TEST_P(SelectTest, TextsStayWholeWhereTheirLengthIsNamed) {
  const memory::Dictionary part = File(m_path).select("/", {{"length", {1, 1, 1}}});
  EXPECT_THAT(valuesOf(part.at<memory::ArrayBase>("names")),
              ElementsAre("aa", "bb", "cc", "dd", "ee"));
}

TEST_P(SelectTest, ReadsNothingElse) {
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(1000, reads));
  const memory::Dictionary part = file.select("/", {{"z", {5, 1, 1}}, {"x", {0, 2, 6}}});
  EXPECT_THAT(valuesOf(part.at<memory::ArrayBase>("grid")),
              ElementsAre("175", "181", "182", "188", "189", "195", "196", "202", "203", "209"));
  EXPECT_THAT(reads, ElementsAre(20));
}

TEST_P(SelectTest, RefusesWhatTheAxisDoesNotHave) {
  EXPECT_EQ(refusalOf({{"x", {-1, 1, 1}}}),
            "Axis 'x' has no negative indices or counts (first -1, count 1, step 1)");
  EXPECT_EQ(refusalOf({{"x", {0, -1, 1}}}),
            "Axis 'x' has no negative indices or counts (first 0, count -1, step 1)");
  EXPECT_EQ(refusalOf({{"x", {0, 1, 0}}}),
            "Axis 'x' is read forwards, in steps of at least 1 (first 0, count 1, step 0)");
  EXPECT_EQ(refusalOf({{"x", {0, 8, 1}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 0, count 8, step 1)");
  EXPECT_EQ(refusalOf({{"x", {7, 1, 1}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 7, count 1, step 1)");
  EXPECT_EQ(refusalOf({{"x", {5, 3, 1}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 5, count 3, step 1)");
  EXPECT_EQ(refusalOf({{"x", {0, 2, 7}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 0, count 2, step 7)");
  EXPECT_EQ(refusalOf({{"x", {8, 0, 1}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 8, count 0, step 1)");
  EXPECT_EQ(refusalOf({{"x", {1, 0x7FFFFFFFFFFFFFFF, 0x7FFFFFFFFFFFFFFF}}}),
            "Axis 'x' has 7 points, fewer than asked for (first 1, count 9223372036854775807, step "
            "9223372036854775807)");
  EXPECT_EQ(refusalOf({{"time", {0, 1, 1}}}), "Group '/' has no axis 'time'");
  EXPECT_EQ(refusalOf({{"x", {0, 1, 1}}}), "");
}

TEST_P(SelectTest, OfAMissingGroupIsAnError) {
  EXPECT_EQ(errorOf([&] { return File(m_path).select("none", {}); }),
            "Cannot read '" + m_path + "': there is no group 'none'; '/' has no groups");
}

TEST_P(SelectTest, ThereAreStepsAlongSomeDimensionsOrAll) {
  for (unsigned stepped = 0; stepped < 8; ++stepped) {
    const auto rangeOf = [stepped](unsigned dimension, long size) {
      return (stepped >> dimension & 1U) != 0 ? Range{1, (size - 1) / 2, 2} : Range{0, size, 1};
    };
    const Ranges ranges = {{"x", rangeOf(0, 7)}, {"y", rangeOf(1, 5)}, {"z", rangeOf(2, 6)}};
    std::vector<long> expected = offsetsAt(ranges);
    const memory::Dictionary part = File(m_path).select("/", ranges);
    const auto& grid = part.at<memory::ArrayBase>("grid");
    const memory::BlockLayout layout(grid, expected.size());
    ASSERT_EQ(layout.blockAt(0).count, expected.size());
    std::vector<long> values(expected.size() + 1, -1);
    memory::copyValues(grid, layout.blockAt(0), values.data());
    expected.push_back(-1);  // what stands behind the values
    EXPECT_EQ(values, expected) << stepped;
  }
}

/// Any part in blocks of any size, beside picking from the whole.
TEST_P(SelectTest, AnyPartInAnyBlocksIsThatOfTheWhole) {
  EXPECT_TRUE(rc::check([this] {
    Ranges ranges;
    for (const auto& [name, size] : {std::pair("x", 7L), std::pair("y", 5L), std::pair("z", 6L)}) {
      const long first = *rc::gen::inRange(0L, size);
      const long step = *rc::gen::inRange(1L, 4L);
      ranges[name] = {first, *rc::gen::inRange(1L, (size - 1 - first) / step + 2), step};
    }
    const memory::Dictionary part = File(m_path).select("/", ranges);
    const auto& grid = part.at<memory::ArrayBase>("grid");
    const memory::BlockLayout layout(grid, *rc::gen::inRange(1UL, 60UL));
    std::vector<long> values(layout.size());
    for (unsigned long offset = 0; offset < layout.size();) {
      const memory::Block block = layout.blockAt(offset);
      memory::copyValues(grid, block, values.data() + offset);
      offset += block.count;
    }
    RC_ASSERT(values == offsetsAt(ranges));
  }));
}

TEST_P(SelectTest, OutlivesTheFileAndFindsCoordinatesThen) {
  std::unique_ptr<memory::Dictionary> part;
  {
    const Ranges ranges = {{"z", {2, 1, 1}}};
    part = std::make_unique<memory::Dictionary>(File(m_path).select("/", ranges));
  }
  const auto levels = std::dynamic_pointer_cast<const memory::ArrayBase>(
      part->at<memory::ArrayBase>("grid").coordinates(2));
  part.reset();
  EXPECT_THAT(valuesOf(*levels), ElementsAre("20"));
}

}  // namespace
}  // namespace quillon::netcdf
