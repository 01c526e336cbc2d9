#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TimeArray.h>
#include <quillon/netcdf/File.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "DuckDb.h"
#include "SameTables.h"
#include "Streams.h"
#include "support/ScratchDirectory.h"
#include "tables/SomeCells.h"
#include "tables/TestArrays.h"

// Run by the script DuckDbTest, which fetches DuckDB.

namespace quillon::arrow {
namespace {

using tables::Table;

const DuckDbLibrary& library() {
  static const DuckDbLibrary LIBRARY(std::getenv("QUILLON_LIBDUCKDB"));
  return LIBRARY;
}

std::string fileOf(const std::string& path) { return std::string(QUILLON_SOURCE_DIR "/") + path; }

/// The table of a file's root.
Table tableOf(const std::shared_ptr<const netcdf::File>& file) {
  const std::shared_ptr<const object_model::Dictionary> root(file, &file->root());
  return {root, tables::plan(*root)};
}

Table climate() {
  return tableOf(std::make_shared<const netcdf::File>(fileOf("data/north_atlantic_climate.nc")));
}

/// A table of every type of column, with cells that are missing.
Table everyType() {
  auto data = std::make_shared<memory::Dictionary>("data");
  data->add(tables::Stored<signed char>("c", {{"x", 3}}, {-128, 127, 0}));
  data->add(tables::Stored<short>("s", {{"x", 3}}, {-32768, 2, 0}));
  data->add(tables::Stored<int>("i", {{"x", 3}}, {-3, 3, 0}));
  data->add(memory::IntArray("l", {{"x", 3}}, {-4, 4, 0}));
  data->add(tables::Stored<unsigned char>("uc", {{"x", 3}}, {0, 255, 1}));
  data->add(tables::Stored<unsigned short>("us", {{"x", 3}}, {0, 65535, 1}));
  data->add(tables::Stored<unsigned int>("ui", {{"x", 3}}, {6, 4294967295, 1}));
  data->add(memory::UIntArray("ul", {{"x", 3}}, {0, 18446744073709551615UL, 1}));
  data->add(tables::Stored<float>("f", {{"x", 3}}, {0.5, -1, std::nan("")}));
  data->add(memory::DoubleArray("g", {{"x", 3}}, {std::nan(""), 0.1, HUGE_VAL}));
  data->add(memory::BooleanArray("b", {{"x", 3}}, {true, false, true}));
  data->add(memory::StringArray("u", {{"x", 3}}, {"", "b\xC3\xA4", "longer than twelve bytes"}));
  data->add(memory::TimeArray("t", {{"x", 3}}, {-1, memory::MISSING_TIME, 1'500'000'000'000'000}));
  const tables::Plan planned = tables::plan(*data);
  return {std::move(data), planned};
}

struct NamedTable {
  const char* name;
  Table (*make)();
  unsigned long maxRows;
};
void PrintTo(const NamedTable& some, std::ostream* out) { *out << some.name; }

class DuckDbTableTest : public ::testing::TestWithParam<NamedTable> {
 protected:
  Table m_table = GetParam().make();
  DuckDb m_engine{library()};

  void SetUp() override {
    StreamOptions options;
    options.maxRows = GetParam().maxRows;
    OwnedStream stream = streamOf(m_table, options);
    m_engine.take("t", stream.get());
  }
};

TEST_P(DuckDbTableTest, IsTakenWhole) {
  EXPECT_EQ(differenceOf(m_engine.query("select * from t"), m_table), "");
}

TEST_P(DuckDbTableTest, ComesBackFromParquet) {
  const ::test::ScratchDirectory scratch;
  const std::string file = "'" + scratch.path("t.parquet") + "'";
  m_engine.run("copy t to " + file + " (format parquet)");
  EXPECT_EQ(differenceOf(m_engine.query("select * from read_parquet(" + file + ")"), m_table), "");
}

INSTANTIATE_TEST_SUITE_P(Tables, DuckDbTableTest,
                         ::testing::Values(NamedTable{"Climate", &climate, 65536},
                                           NamedTable{"ClimateInSmallBatches", &climate, 1000},
                                           NamedTable{"EveryType", &everyType, 65536},
                                           NamedTable{"EveryTypeByRow", &everyType, 1},
                                           NamedTable{"Nullable", &tables::nullables, 2}),
                         [](const auto& some) { return some.param.name; });

TEST(DuckDbTest, SqlGivesWhatTheTableHas) {
  const Table table = climate();
  DuckDb engine(library());
  engine.take("climate", streamOf(table).get());
  // The same by hand: the mean of a column over all rows where it has a value.
  for (unsigned long column = 3; column < table.columns().size(); ++column) {
    const std::string& name = table.columns()[column].name;
    double sum = 0;
    long count = 0;
    float least = HUGE_VALF;
    for (const float cell : tables::cellsOf<float>(table, column)) {
      if (!std::isnan(cell)) {
        sum += static_cast<double>(cell);
        least = std::min(least, cell);
        ++count;
      }
    }
    const Table found = engine.query("select count(" + name + ") as n, min(" + name +
                                     ") as least, avg(" + name + "::double) as mean from climate");
    EXPECT_EQ(tables::cellsOf<long>(found, 0).at(0), count) << name;
    EXPECT_EQ(tables::cellsOf<float>(found, 1).at(0), least) << name;
    EXPECT_NEAR(tables::cellsOf<double>(found, 2).at(0), sum / static_cast<double>(count), 1e-9)
        << name;
    EXPECT_LT(static_cast<unsigned long>(count), table.rows()) << name;  // land has no sea surface
  }
}

TEST(DuckDbTest, AFailureOfTheTableIsDuckDbs) {
  std::vector<std::unique_ptr<tables::ColumnSource>> columns;
  class Failing final : public tables::ColumnSource {
    void describe(tables::Column& column) const override { column.name = "v"; }
    void read(unsigned long, unsigned long, void*) const override {
      throw std::runtime_error("the disk is gone");
    }
  };
  columns.push_back(std::make_unique<Failing>());
  const Table table(std::move(columns), 3);
  OwnedStream stream = streamOf(table);
  DuckDb engine(library());
  try {
    engine.take("t", stream.get());
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("the disk is gone"), std::string::npos)
        << error.what();
  }
}

/// The statements of the guide's ```sql blocks, and the texts that stand below them.
std::vector<std::pair<std::string, std::string>> blocksOf(const std::string& path) {
  std::ifstream file(path);
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const std::regex block("```sql\n([^`]*)```\n(?:\n```text\n([^`]*)```\n)?");
  std::vector<std::pair<std::string, std::string>> blocks;
  for (std::sregex_iterator found(text.begin(), text.end(), block), end; found != end; ++found) {
    blocks.emplace_back((*found)[1], (*found)[2]);
  }
  return blocks;
}

TEST(DuckDbTest, StatementsOfTheGuideDoWhatIsShown) {
  const ::test::ScratchDirectory scratch;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(scratch.path());  // where they may leave files
  DuckDb engine(library());
  OwnedStream stream = streamOf(climate());
  engine.scan("climate_stream", stream.get());
  const auto blocks = blocksOf(fileOf("docs/guides/engines.md"));
  EXPECT_GE(blocks.size(), 3U);
  for (const auto& [sql, expected] : blocks) {
    std::string shown;
    if (expected.empty()) {
      engine.run(sql);
    } else {
      tables::writeText(engine.query(sql), tables::into(shown));
    }
    EXPECT_EQ(shown, expected) << sql;
  }
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace quillon::arrow
