// What it takes to get 10^6 rows of 10 columns into DuckDB as a stream, beside a CSV of the same:
// processor time of all threads, in one run. It is run by tests/arrow/DuckDbTest, which fetches
// DuckDB.

#include <quillon/arrow/Export.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TypedArray.h>
#include <quillon/tables/Writers.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "arrow/DuckDb.h"
#include "arrow/SameTables.h"
#include "support/ScratchDirectory.h"

namespace {

using namespace quillon;

constexpr unsigned long ROWS = 1'000'000;
constexpr int COLUMNS = 9;  // beside the index
constexpr int TRIALS = 3;
constexpr double GOAL = 0.1;

tables::Table measurements() {
  auto data = std::make_shared<memory::Dictionary>("data");
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal;
  for (int k = 0; k < COLUMNS; ++k) {
    std::vector<double> values(ROWS);
    std::generate(values.begin(), values.end(), [&] { return normal(random); });
    data->add(memory::DoubleArray("v" + std::to_string(k), {{"x", ROWS}}, std::move(values)));
  }
  const tables::Plan planned = tables::plan(*data);
  return {std::move(data), planned};
}

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// The processor time that this process has taken.
double processorTime() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

void throughStream(const tables::Table& table, arrow::DuckDb& engine) {
  arrow::Owned<ArrowArrayStream> stream;
  arrow::exportTable(table, stream.get());
  engine.take("t", stream.get());
}

void throughCsv(const tables::Table& table, arrow::DuckDb& engine, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  tables::writeCsv(table, [&file](std::string_view piece) {
    file.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  });
  file.close();
  engine.run("create table t as select x::ubigint as x, * exclude x from read_csv('" + path + "')");
}

/// The least processor time of some trials. Each must give the engine what the table has.
template <class Give>
double leastTime(const arrow::DuckDbLibrary& library, const tables::Table& table,
                 const Give& give) {
  double least = 1e9;
  for (int trial = 0; trial < TRIALS; ++trial) {
    arrow::DuckDb engine(library);
    const double start = processorTime();
    give(engine);
    least = std::min(least, processorTime() - start);
    const std::string difference = arrow::differenceOf(engine.query("select * from t"), table);
    if (!difference.empty()) {
      throw std::runtime_error("The engine has something else: " + difference);
    }
  }
  return least;
}

/// The least processor time that the engine takes to fill a table from one of its own.
double leastCopyTime(const arrow::DuckDbLibrary& library, const tables::Table& table) {
  double least = 1e9;
  for (int trial = 0; trial < TRIALS; ++trial) {
    arrow::DuckDb engine(library);
    throughStream(table, engine);
    const double start = processorTime();
    engine.run("create table copy as select * from t");
    least = std::min(least, processorTime() - start);
  }
  return least;
}

void printRatio(const char* libraryPath) {
  const arrow::DuckDbLibrary library(libraryPath);
  const test::ScratchDirectory scratch;
  const tables::Table table = measurements();
  const double stream =
      leastTime(library, table, [&](arrow::DuckDb& engine) { throughStream(table, engine); });
  const double csv = leastTime(library, table, [&](arrow::DuckDb& engine) {
    throughCsv(table, engine, scratch.path("t.csv"));
  });
  const double copy = leastCopyTime(library, table);
  std::printf("%-64s %5s %5s %7s %7s\n", "into DuckDB", "ratio", "goal", "ours", "theirs");
  std::printf("%-64s %5.2f %5.2f %5.2f s %5.2f s%s\n", "10^6 x 10 as a stream / as a CSV",
              stream / csv, GOAL, stream, csv, stream / csv > GOAL ? "  missed" : "");
  std::printf("%-64s %5.2f %5s %5.2f s %5.2f s\n", "its own copy of such a table / the same CSV",
              copy / csv, "-", copy, csv);
}

}  // namespace

int main() {
  const char* const library = std::getenv("QUILLON_LIBDUCKDB");
  if (library == nullptr) {
    std::cerr << "QUILLON_LIBDUCKDB does not say where DuckDB's library is\n";
    return 1;
  }
  try {
    printRatio(library);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
