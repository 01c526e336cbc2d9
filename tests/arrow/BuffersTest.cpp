#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "Buffers.h"
#include "support/Thrown.h"

namespace quillon::arrow {
namespace {

TEST(BuffersTest, AreAlignedAsArrowRecommends) {
  for (const unsigned long count : {0UL, 1UL, 1000UL}) {
    EXPECT_EQ(reinterpret_cast<uintptr_t>(bufferOf<char>(count).get()) % 64, 0U) << count;
  }
}

TEST(BuffersTest, BitsBeginWithTheLowest) {
  const auto bits = bitsOf(10, [](unsigned long row) { return row == 0 || row == 3 || row == 9; });
  EXPECT_EQ(bits.get()[0], 0b1001);
  EXPECT_EQ(bits.get()[1], 0b10);
}

TEST(BuffersTest, BitsOfAnyNumberOfRowsAreAskedForOnceEachInOrder) {
  for (unsigned long count = 0; count <= 70; ++count) {
    std::vector<unsigned long> asked;
    const auto bits = bitsOf(count, [&asked](unsigned long row) {
      asked.push_back(row);
      return row % 3 == 0;
    });
    std::vector<unsigned long> rows(count);
    std::iota(rows.begin(), rows.end(), 0UL);
    EXPECT_EQ(asked, rows);
    for (const unsigned long row : rows) {
      EXPECT_EQ(bits.get()[row / 8] >> row % 8 & 1, row % 3 == 0 ? 1 : 0) << row << " of " << count;
    }
  }
}

TEST(BuffersTest, TextsHaveAnAddressEvenWithoutCharacters) {
  TextBuffers texts(1, "t");
  texts.add("");
  EXPECT_NE(texts.characters(), nullptr);
  EXPECT_EQ(texts.offsets().get()[1], 0);
}

TEST(BuffersTest, TooManyCharactersAreRefused) {
  TextBuffers texts(2, "t", 5);
  texts.add("12345");
  EXPECT_EQ(::test::thrownBy<tables::Error>([&] { texts.add("6"); }),
            "The texts of the column 't' have more than 5 bytes in one batch; ask for fewer rows a "
            "batch");
}

}  // namespace
}  // namespace quillon::arrow
