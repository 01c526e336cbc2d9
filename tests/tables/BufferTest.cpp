#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Buffer.h"

namespace quillon::tables {
namespace {

TEST(BufferTest, KeepsItsTextWhereItGrows) {
  for (const std::size_t before : {0UL, 1UL, 2UL, 65'535UL, 65'536UL, 65'537UL}) {
    Buffer buffer;
    buffer.append(before, 'a');
    buffer.append(std::string(70'000, 'b'));
    EXPECT_EQ(buffer.view(), std::string(before, 'a') + std::string(70'000, 'b')) << before;
  }
}

// A text that outgrew its room by one character would never be given more.
TEST(BufferTest, GrowsForOneCharacterMore) {
  Buffer buffer;
  const std::size_t much = 1UL << 24U;
  std::string expected(1UL << 16U, 'a');
  buffer.append(expected);
  buffer.append('b');
  buffer.append(much, 'c');
  expected += 'b';
  expected.append(much, 'c');
  EXPECT_TRUE(buffer.view() == expected);
}

TEST(BufferTest, HandsOverWhatIsLeftAndNothingWhereNothingIs) {
  Buffer buffer;
  std::vector<std::string> pieces;
  const Output output = [&pieces](std::string_view piece) { pieces.emplace_back(piece); };
  buffer.finish(output);
  buffer.append('a');
  buffer.passOn(output);
  buffer.finish(output);
  buffer.finish(output);
  EXPECT_EQ(pieces, std::vector<std::string>{"a"});
}

}  // namespace
}  // namespace quillon::tables
