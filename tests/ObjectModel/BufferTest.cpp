#include <gtest/gtest.h>
#include <object_model/Buffer.h>

#include <array>
#include <limits>
#include <type_traits>
#include <utility>

namespace object_model {
namespace {

TEST(BufferTest, ADefaultBufferIsNullAndEmpty) {
  Buffer buffer;
  EXPECT_EQ(buffer.getBuffer(), nullptr);
  EXPECT_EQ(std::as_const(buffer).getBuffer(), nullptr);
  EXPECT_EQ(buffer.getSize(), 0U);
}

TEST(BufferTest, KeepsPointerAndSizeAsGiven) {
  std::array<char, 4> bytes = {'a', 'b', 'c', 'd'};
  Buffer buffer(bytes.data(), bytes.size());
  EXPECT_EQ(buffer.getBuffer(), bytes.data());
  EXPECT_EQ(std::as_const(buffer).getBuffer(), bytes.data());
  EXPECT_EQ(buffer.getSize(), 4U);
}

TEST(BufferTest, DoesNotCheckWhatItIsGiven) {
  const Buffer buffer(nullptr, std::numeric_limits<unsigned long>::max());
  EXPECT_EQ(buffer.getBuffer(), nullptr);
  EXPECT_EQ(buffer.getSize(), std::numeric_limits<unsigned long>::max());
}

TEST(BufferTest, WritingThroughItReachesTheBytes) {
  std::array<char, 2> bytes = {'a', 'b'};
  Buffer buffer(bytes.data(), bytes.size());
  buffer.getBuffer()[1] = 'z';
  EXPECT_EQ(bytes, (std::array<char, 2>{'a', 'z'}));
}

TEST(BufferTest, OwnsNothing) {
  EXPECT_FALSE(std::is_polymorphic_v<Buffer>);
  EXPECT_TRUE(std::is_trivially_destructible_v<Buffer>);
  EXPECT_TRUE(std::is_trivially_copyable_v<Buffer>);
}

}  // namespace
}  // namespace object_model
