#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <object_model/InvalidCall.h>
#include <quillon/arrow/Export.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/memory/TimeArray.h>
#include <tabra/MemoryDataFrame.h>

#include <cerrno>
#include <cmath>
#include <functional>
#include <memory>
#include <stdexcept>

#include "Streams.h"
#include "support/Allocations.h"
#include "support/Thrown.h"
#include "tables/SomeCells.h"
#include "tables/TestArrays.h"

namespace quillon::arrow {
namespace {

using memory::Dictionary;
using memory::DoubleArray;
using tables::Table;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Table tableOf(const Dictionary& data) { return {data, tables::plan(data)}; }

/// A table of one column of 0, 1, 2, ... beside the index.
std::shared_ptr<Dictionary> counted(unsigned long rows) {
  auto data = std::make_shared<Dictionary>("data");
  data->add(DoubleArray("a", {{"x", rows}}, tables::countedUp<double>(rows)));
  return data;
}

Table sharedTable(const std::shared_ptr<Dictionary>& data) { return {data, tables::plan(*data)}; }

TEST(ExportTest, EachTypeHasItsFormat) {
  Dictionary data("data");
  data.add(tables::Stored<signed char>("c", {{"x", 2}}, {-128, 127}));
  data.add(tables::Stored<short>("s", {{"x", 2}}, {-32768, 2}));
  data.add(tables::Stored<int>("i", {{"x", 2}}, {-3, 3}));
  data.add(memory::IntArray("l", {{"x", 2}}, {-4, 4}));
  data.add(tables::Stored<unsigned char>("C", {{"x", 2}}, {0, 255}));
  data.add(tables::Stored<unsigned short>("S", {{"x", 2}}, {0, 65535}));
  data.add(tables::Stored<unsigned int>("I", {{"x", 2}}, {6, 7}));
  data.add(tables::Stored<float>("f", {{"x", 2}}, {0.5, -1}));
  data.add(DoubleArray("g", {{"x", 2}}, {0.25, HUGE_VAL}));
  data.add(memory::BooleanArray("b", {{"x", 2}}, {true, false}));
  data.add(memory::StringArray("u", {{"x", 2}}, {"", "b\xC3\xA4"}));
  data.add(memory::TimeArray("t", {{"x", 2}}, {-1, 1}));
  OwnedStream stream = streamOf(tableOf(data));
  EXPECT_EQ(shown(*schemaOf(stream).get()),
            ":+s x:L?, c:c?, s:s?, i:i?, l:l?, C:C?, S:S?, I:I?, f:f?, g:g?, b:b?, u:u?, t:tsu:?");
  EXPECT_THAT(batchesOf(std::move(stream)), ElementsAre("2 rows\n"
                                                        "x: 0 1\n"
                                                        "c: -128 127\n"
                                                        "s: -32768 2\n"
                                                        "i: -3 3\n"
                                                        "l: -4 4\n"
                                                        "C: 0 255\n"
                                                        "S: 0 65535\n"
                                                        "I: 6 7\n"
                                                        "f: 0.5 -1\n"
                                                        "g: 0.25 inf\n"
                                                        "b: true false\n"
                                                        "u: '' 'b\xC3\xA4'\n"
                                                        "t: -1 1\n"));
}

TEST(ExportTest, UnitsAreMetadataOfTheirFields) {
  Dictionary data("data");
  DoubleArray metres("d", {{"x", 1}}, {1});
  metres.setUnit("m s-1");
  data.add(std::move(metres));
  Owned<ArrowSchema> schema;
  exportSchema(tableOf(data), schema.get());
  EXPECT_EQ(shown(*schema.get()), ":+s x:L?, d:g[1 units=m s-1]?");
}

TEST(ExportTest, WhatIsMissingIsNull) {
  Dictionary data("data");
  data.add(DoubleArray("d", {{"x", 3}}, {std::nan(""), 1, 2}));
  data.add(tables::Stored<float>("f", {{"x", 3}}, {1, 2, std::nan("")}));
  data.add(tables::Hours("t", {{"x", 3}}, {0, std::nan(""), 1}));
  data.add(memory::IntArray("l", {{"x", 3}}, {memory::MISSING_TIME, 1, 2}));
  EXPECT_THAT(batchesOf(streamOf(tableOf(data))), ElementsAre("3 rows\n"
                                                              "x: 0 1 2\n"
                                                              "d: null 1 2\n"
                                                              "f: 1 2 null\n"
                                                              "t: 0 null 3600000000\n"
                                                              "l: -9223372036854775808 1 2\n"));
}

TEST(ExportTest, NanStaysANumberWhereItIsAskedTo) {
  Dictionary data("data");
  data.add(DoubleArray("d", {{"x", 2}}, {std::nan(""), 1}));
  data.add(tables::Hours("t", {{"x", 2}}, {std::nan(""), 1}));
  StreamOptions options;
  options.nanIsNull = false;
  EXPECT_THAT(batchesOf(streamOf(tableOf(data), options)),
              ElementsAre("2 rows\nx: 0 1\nd: nan 1\nt: null 3600000000\n"));
}

TEST(ExportTest, CellsWithoutAValueAreNull) {
  EXPECT_THAT(batchesOf(streamOf(tables::nullables())), ElementsAre("3 rows\n"
                                                                    "i: 1 null 3\n"
                                                                    "b: null true false\n"
                                                                    "t: 'a' 'b' null\n"
                                                                    "d: null 0.5 null\n"));
}

TEST(ExportTest, TimesOfOtherCalendarsAreTexts) {
  Dictionary data("data");
  data.add(tables::Hours("t", {{"x", 3}}, {24. * 59, std::nan(""), 0.5}, memory::Calendar::Day360));
  OwnedStream stream = streamOf(tableOf(data));
  EXPECT_EQ(shown(*schemaOf(stream).get()), ":+s x:L?, t:u?");
  EXPECT_THAT(
      batchesOf(std::move(stream)),
      ElementsAre("3 rows\nx: 0 1 2\nt: '1970-02-30T00:00:00' null '1970-01-01T00:30:00'\n"));
}

TEST(ExportTest, BytesThatAreNoUtf8AreReplaced) {
  Dictionary data("data");
  data.add(memory::StringArray("u", {{"x", 2}}, {"a\xFFz", "\xE2\x82"}));
  EXPECT_THAT(batchesOf(streamOf(tableOf(data))),
              ElementsAre("2 rows\nx: 0 1\nu: 'a\xEF\xBF\xBDz' '\xEF\xBF\xBD\xEF\xBF\xBD'\n"));
}

TEST(ExportTest, ADataFrameIsAStream) {
  auto frame = std::make_shared<tabra::MemoryDataFrame>();
  frame->addRows(0, 2);
  frame->addColumn("d", tabra::DataType(tabra::DataTypeId::Float64));
  frame->setUnit(0, "K");
  const std::vector<double> values = {1.5, std::nan("")};
  frame->write(0, 0, 2, values.data());
  OwnedStream borrowing;
  exportView(*frame, borrowing.get());
  EXPECT_EQ(shown(*schemaOf(borrowing).get()), ":+s d:g[1 units=K]?");
  EXPECT_THAT(batchesOf(std::move(borrowing)), ElementsAre("2 rows\nd: 1.5 null\n"));
  OwnedStream sharing;
  exportView(std::move(frame), sharing.get());
  EXPECT_THAT(batchesOf(std::move(sharing)), ElementsAre("2 rows\nd: 1.5 null\n"));
}

class MaxRowsTest : public ::testing::TestWithParam<unsigned long> {};

TEST_P(MaxRowsTest, NoBatchHasMoreRows) {
  constexpr unsigned long ROWS = 23;
  const auto data = counted(ROWS);
  StreamOptions options;
  options.maxRows = GetParam();
  OwnedStream stream = streamOf(tableOf(*data), options);
  unsigned long rows = 0;
  for (Owned<ArrowArray> batch;; batch.reset()) {
    ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
    if (!batch) {
      break;
    }
    ASSERT_EQ(batch->length, static_cast<int64_t>(std::min(GetParam(), ROWS - rows)));
    for (int64_t k = 0; k < batch->length; ++k, ++rows) {
      ASSERT_EQ(numberAt<double>(*batch->children[1], k), std::to_string(rows));
    }
  }
  EXPECT_EQ(rows, ROWS);
}

INSTANTIATE_TEST_SUITE_P(Rows, MaxRowsTest, ::testing::Values(1, 2, 7, 8, 9, 22, 23, 24, 1000));

TEST(ExportTest, BatchesHave65536RowsUnlessAskedForOthers) {
  EXPECT_EQ(StreamOptions().maxRows, 65'536U);
  // Without columns, whose memory would make batches smaller.
  const Table table(std::vector<std::unique_ptr<tables::ColumnSource>>(), 65'537);
  EXPECT_THAT(batchesOf(streamOf(table)), ElementsAre("65536 rows\n", "1 rows\n"));
}

TEST(ExportTest, ABatchOfNoRowsIsRefused) {
  StreamOptions options;
  options.maxRows = 0;
  OwnedStream stream;
  EXPECT_EQ(::test::thrownBy<std::invalid_argument>(
                [&] { exportTable(tables::nullables(), stream.get(), options); }),
            "A batch has one row at least, not 0");
  EXPECT_FALSE(stream);
}

TEST(ExportTest, ATableWithoutRowsHasASchemaAndNoBatch) {
  const auto data = counted(0);
  OwnedStream stream = streamOf(tableOf(*data));
  EXPECT_EQ(shown(*schemaOf(stream).get()), ":+s x:L?, a:g?");
  EXPECT_THAT(batchesOf(std::move(stream)), IsEmpty());
}

TEST(ExportTest, ATableWithoutColumnsHasItsRows) {
  const Table table(std::vector<std::unique_ptr<tables::ColumnSource>>(), 5);
  OwnedStream stream = streamOf(table);
  EXPECT_EQ(shown(*schemaOf(stream).get()), ":+s");
  EXPECT_THAT(batchesOf(std::move(stream)), ElementsAre("5 rows\n"));
}

TEST(ExportTest, NoRowOfABatchIsNullAsAWhole) {
  OwnedStream stream = streamOf(tables::nullables());
  Owned<ArrowArray> batch;
  ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
  EXPECT_EQ(batch->null_count, 0);
  ASSERT_EQ(batch->n_buffers, 1);
  EXPECT_EQ(batch->buffers[0], nullptr);
}

TEST(ExportTest, TheEndStaysTheEnd) {
  OwnedStream stream = streamOf(tables::nullables());
  Owned<ArrowArray> batch;
  ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
  EXPECT_TRUE(batch);
  for (int k = 0; k < 2; ++k) {
    batch.reset();
    ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
    EXPECT_FALSE(batch);
  }
  EXPECT_EQ(stream->get_last_error(stream.get()), nullptr);
}

TEST(ExportTest, TheEndIsMarkedWhateverStoodThere) {
  OwnedStream stream = streamOf(Table(std::vector<std::unique_ptr<tables::ColumnSource>>(), 0));
  ArrowArray batch = {};
  batch.length = 7;
  batch.release = [](ArrowArray*) { FAIL() << "nobody's batch is released"; };
  ASSERT_EQ(stream->get_next(stream.get(), &batch), 0);
  EXPECT_EQ(batch.release, nullptr);
  EXPECT_EQ(batch.length, 0);
}

TEST(ExportTest, WhatIsReleasedIsMarkedSo) {
  ArrowArrayStream stream = {};
  exportTable(tables::nullables(), &stream);
  ArrowSchema schema = {};
  ASSERT_EQ(stream.get_schema(&stream, &schema), 0);
  ArrowArray batch = {};
  ASSERT_EQ(stream.get_next(&stream, &batch), 0);
  stream.release(&stream);
  schema.release(&schema);
  batch.release(&batch);
  EXPECT_EQ(stream.release, nullptr);
  EXPECT_EQ(schema.release, nullptr);
  EXPECT_EQ(batch.release, nullptr);
}

TEST(ExportTest, CellsInMemoryAreNotCopied) {
  Dictionary data("data");
  const auto& array = data.add(DoubleArray("d", {{"x", 4}}, {1, std::nan(""), 3, 4}));
  StreamOptions options;
  options.maxRows = 3;
  OwnedStream stream = streamOf(tableOf(data), options);
  for (const unsigned long first : {0UL, 3UL}) {
    Owned<ArrowArray> batch;
    ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
    EXPECT_EQ(batch->children[1]->buffers[1], array.data() + first);
  }
}

TEST(ExportTest, ABatchOutlivesStreamAndTable) {
  auto data = counted(4);
  const std::weak_ptr<Dictionary> watched = data;
  OwnedStream stream = streamOf(sharedTable(data));
  const Owned<ArrowSchema> schema = schemaOf(stream);
  data.reset();
  Owned<ArrowArray> batch;
  ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
  stream.reset();
  EXPECT_EQ(shown(*batch.get(), *schema.get()), "4 rows\nx: 0 1 2 3\na: 0 1 2 3\n");
  EXPECT_FALSE(watched.expired());
  batch.reset();
  EXPECT_TRUE(watched.expired());
}

TEST(ExportTest, AChildThatIsTakenOutOutlivesItsBatch) {
  auto data = counted(3);
  const std::weak_ptr<Dictionary> watched = data;
  OwnedStream stream = streamOf(sharedTable(data));
  data.reset();
  Owned<ArrowArray> batch;
  ASSERT_EQ(stream->get_next(stream.get(), batch.get()), 0);
  stream.reset();
  Owned<ArrowArray> child(batch->children[1]);
  batch.reset();
  EXPECT_EQ(numberAt<double>(*child.get(), 2), "2");
  EXPECT_FALSE(watched.expired());
  child.reset();
  EXPECT_TRUE(watched.expired());
}

TEST(ExportTest, AFieldThatIsTakenOutOutlivesItsSchema) {
  OwnedStream stream = streamOf(tables::nullables());
  Owned<ArrowSchema> schema = schemaOf(stream);
  Owned<ArrowSchema> field(schema->children[2]);
  schema.reset();
  stream.reset();
  EXPECT_EQ(shown(*field.get()), "t:u[1 units=m]?");
}

TEST(ExportTest, AStreamThatNobodyReadsLetsGoOfItsTable) {
  auto data = counted(3);
  const std::weak_ptr<Dictionary> watched = data;
  OwnedStream stream = streamOf(sharedTable(data));
  data.reset();
  EXPECT_FALSE(watched.expired());
  stream.reset();
  EXPECT_TRUE(watched.expired());
}

/// Numbers the third run of which cannot be had until they are mended.
class Damaged final : public tables::ColumnSource {
 public:
  explicit Damaged(std::function<void()> fail) : m_fail(std::move(fail)) {}

  void describe(tables::Column& column) const override { column.name = "d"; }

  void read(unsigned long first, unsigned long count, void* destination) const override {
    if (first == 4) {
      m_fail();
    }
    std::fill_n(static_cast<double*>(destination), count, static_cast<double>(first));
  }

 private:
  std::function<void()> m_fail;
};

OwnedStream damaged(std::function<void()> fail, std::function<std::string()> explain = {}) {
  std::vector<std::unique_ptr<tables::ColumnSource>> columns;
  columns.push_back(std::make_unique<Damaged>(std::move(fail)));
  StreamOptions options;
  options.maxRows = 2;
  options.explain = std::move(explain);
  return streamOf(Table(std::move(columns), 6), options);
}

std::vector<std::string> failing(const std::string& error) {
  return {"2 rows\nd: 0 0\n", "2 rows\nd: 2 2\n", error};
}

TEST(ExportTest, WhatFailsInTheMiddleIsTold) {
  EXPECT_EQ(batchesOf(damaged([] { throw std::runtime_error("the disk is gone"); })),
            failing("error 5: the disk is gone"));
  EXPECT_EQ(batchesOf(damaged([] { throw object_model::InvalidCall("no such value"); })),
            failing("error 5: no such value"));
  EXPECT_EQ(batchesOf(damaged([] { throw 7; })), failing("error 5: The cells could not be read"));
}

TEST(ExportTest, WhatIsNoExceptionOfTheLibrariesIsExplainedByTheCaller) {
  const auto explain = [] {
    try {
      throw;
    } catch (int number) {
      return "number " + std::to_string(number);
    }
  };
  EXPECT_EQ(batchesOf(damaged([] { throw 7; }, explain)), failing("error 5: number 7"));
}

TEST(ExportTest, AnExplanationThatFailsLeavesTheErrorWithoutWords) {
  OwnedStream stream = damaged([] { throw 7; }, []() -> std::string { throw 8; });
  for (const int expected : {0, 0, EIO}) {
    Owned<ArrowArray> batch;
    EXPECT_EQ(stream->get_next(stream.get(), batch.get()), expected);
    EXPECT_EQ(static_cast<bool>(batch), expected == 0);
  }
  EXPECT_EQ(stream->get_last_error(stream.get()), nullptr);
}

TEST(ExportTest, WordsOfAnEarlierErrorAreNotThoseOfTheNext) {
  const auto expectNoWordsAfter = [](const std::function<void()>& failAgain) {
    bool isFirst = true;
    OwnedStream stream = damaged(
        [&] {
          if (!isFirst) {
            failAgain();
          }
          isFirst = false;
          throw std::runtime_error("the disk is gone");
        },
        []() -> std::string { throw 8; });
    for (const int expected : {0, 0, EIO}) {
      Owned<ArrowArray> batch;
      ASSERT_EQ(stream->get_next(stream.get(), batch.get()), expected);
    }
    EXPECT_STREQ(stream->get_last_error(stream.get()), "the disk is gone");
    Owned<ArrowArray> batch;
    EXPECT_NE(stream->get_next(stream.get(), batch.get()), 0);
    EXPECT_EQ(stream->get_last_error(stream.get()), nullptr);
  };
  expectNoWordsAfter([] { throw std::bad_alloc(); });
  expectNoWordsAfter([] { throw 7; });
}

TEST(ExportTest, RowsThatFailedAreTriedAgain) {
  bool isBroken = true;
  OwnedStream stream = damaged([&isBroken] {
    if (isBroken) {
      throw std::runtime_error("not yet");
    }
  });
  std::vector<int> statuses;
  for (int k = 0; k < 5; ++k) {
    Owned<ArrowArray> batch;
    statuses.push_back(stream->get_next(stream.get(), batch.get()));
    isBroken = isBroken && statuses.back() == 0;
    EXPECT_EQ(batch ? batch->length : 0, statuses.back() == 0 && k < 4 ? 2 : 0);
  }
  EXPECT_THAT(statuses, ElementsAre(0, 0, EIO, 0, 0));
  EXPECT_EQ(stream->get_last_error(stream.get()), nullptr);
}

TEST(ExportTest, EveryAllocationMayFail) {
  const Table table = tables::nullables();
  int status = 0;
  const long failures = ::test::failEachAllocation(
      [&] {
        status = 0;
        OwnedStream stream = streamOf(table);
        Owned<ArrowSchema> schema;
        status = stream->get_schema(stream.get(), schema.get());
        Owned<ArrowArray> batch;
        status = status == 0 ? stream->get_next(stream.get(), batch.get()) : status;
      },
      [&](const ::test::OutOfMemory& outcome) {
        EXPECT_EQ(status, outcome.badAlloc ? 0 : ENOMEM);
        EXPECT_EQ(outcome.leakedBlocks, 0);
      });
  EXPECT_GE(failures, 10);
}

}  // namespace
}  // namespace quillon::arrow
