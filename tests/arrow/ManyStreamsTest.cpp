#include <gtest/gtest.h>
#include <quillon/arrow/Import.h>
#include <quillon/memory/Dictionary.h>

#include <optional>

#include "Streams.h"
#include "tables/SomeCells.h"
#include "tables/TestArrays.h"

// What is released, when and by whom, under the sanitizers.

namespace quillon::arrow {
namespace {

constexpr int STREAMS = 60'000;

/// Five rows of which a batch has two, of cells in memory, cells to be copied, texts and nulls.
tables::Table someTable() {
  auto data = std::make_shared<memory::Dictionary>("data");
  data->add(memory::DoubleArray("d", {{"x", 5}}, {1, 2, std::nan(""), 4, 5}));
  data->add(memory::StringArray("t", {{"x", 5}}, {"a", "b", "c", "d", "e"}));
  const tables::Plan planned = tables::plan(*data);
  return {std::move(data), planned};
}

OwnedStream twoByTwo(const tables::Table& table) {
  StreamOptions options;
  options.maxRows = 2;
  return streamOf(table, options);
}

Owned<ArrowArray> nextOf(OwnedStream& stream) {
  Owned<ArrowArray> batch;
  EXPECT_EQ(stream->get_next(stream.get(), batch.get()), 0);
  return batch;
}

TEST(ManyStreamsTest, AreMadeAndDropped) {
  const tables::Table table = someTable();
  for (int k = 0; k < STREAMS; ++k) {
    OwnedStream stream = twoByTwo(table);
  }
}

TEST(ManyStreamsTest, AreReadToTheEndOrStoppedEarly) {
  for (int k = 0; k < STREAMS / 10; ++k) {
    OwnedStream stream = twoByTwo(someTable());
    for (int batches = k % 5; batches > 0; --batches) {
      const Owned<ArrowArray> batch = nextOf(stream);
      EXPECT_EQ(batch ? batch->length : 0, batches == k % 5 - 2 ? 1 : batches < k % 5 - 2 ? 0 : 2);
    }
    if (k % 2 == 0) {
      EXPECT_TRUE(schemaOf(stream));
    }
  }
}

TEST(ManyStreamsTest, LeaveAConsumerTheBatchThatItKeeps) {
  for (int k = 0; k < STREAMS / 10; ++k) {
    std::optional<OwnedStream> stream = twoByTwo(someTable());
    nextOf(*stream);
    const Owned<ArrowArray> kept = nextOf(*stream);
    nextOf(*stream);
    stream.reset();
    ASSERT_EQ(cellAt(*kept->children[1], "g", 0) + cellAt(*kept->children[1], "g", 1) +
                  cellAt(*kept->children[2], "u", 1),
              "null4'd'");
  }
}

TEST(ManyStreamsTest, LeaveAConsumerTheColumnThatItKeeps) {
  for (int k = 0; k < STREAMS / 10; ++k) {
    OwnedStream stream = twoByTwo(someTable());
    Owned<ArrowArray> batch = nextOf(stream);
    const Owned<ArrowArray> kept(batch->children[static_cast<std::size_t>(k) % 3]);
    (k % 2 == 0 ? stream.reset() : batch.reset());
    ASSERT_EQ(kept->length, 2);
  }
}

TEST(ManyStreamsTest, AreImported) {
  for (int k = 0; k < STREAMS / 60; ++k) {
    const tables::Table table = importTable(twoByTwo(someTable()).get());
    const tables::Table again = importTable(streamOf(table).get());
    ASSERT_EQ(again.rows(), 5U);
  }
}

}  // namespace
}  // namespace quillon::arrow
