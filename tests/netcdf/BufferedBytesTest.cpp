#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "BufferedBytes.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

/// Over a file of two and a half buffers.
class BufferedBytesTest : public testing::Test {
 protected:
  BufferedBytesTest() {
    for (int k = 0; k < 20480; ++k) {
      m_content += static_cast<char>(k % 251 + 1);
    }
    writeBytes(m_path, m_content);
    m_descriptor = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    m_bytes = BufferedBytes(m_descriptor);
  }
  ~BufferedBytesTest() override { close(m_descriptor); }

  void expectBytes(unsigned long position, unsigned long count) {
    std::string bytes(count, '\0');
    EXPECT_TRUE(m_bytes.read(position, bytes.data(), count)) << position;
    EXPECT_EQ(bytes, m_content.substr(position, count)) << position;
  }

  bool reads(unsigned long position, unsigned long count) {
    std::string bytes(count, '\0');
    return m_bytes.read(position, bytes.data(), count);
  }

  std::string m_content;
  BufferedBytes m_bytes{-1};

 private:
  Scratch m_scratch;

 protected:
  std::string m_path = m_scratch.path("a");

 private:
  int m_descriptor = -1;
};

TEST_F(BufferedBytesTest, BytesComeFromAnyPositionInAnyOrder) {
  for (const unsigned long position : {0UL, 4UL, 8190UL, 8192UL, 3UL, 20476UL, 12000UL, 0UL}) {
    expectBytes(position, 4);
  }
}

TEST_F(BufferedBytesTest, StretchMayBeLongerThanTheBuffer) {
  expectBytes(5, 20000);
  expectBytes(0, 20480);
}

TEST_F(BufferedBytesTest, NothingIsAlwaysThere) { EXPECT_TRUE(reads(99999, 0)); }

TEST_F(BufferedBytesTest, StretchThatGoesPastTheEndIsNotThere) {
  EXPECT_TRUE(reads(20479, 1));
  EXPECT_FALSE(reads(20479, 2));
  EXPECT_FALSE(reads(20480, 1));
  EXPECT_FALSE(reads(0, 20481));
}

TEST_F(BufferedBytesTest, ErrorOfAnEarlierCallDoesNotMatter) {
  errno = EINTR;
  expectBytes(0, 4);
  errno = EINTR;
  EXPECT_FALSE(reads(20480, 1));
}

TEST(BufferedBytesOfNoFileTest, NothingIsThere) {
  BufferedBytes bytes(-1);
  for (const unsigned long count : {1UL, 8192UL}) {
    std::string read(count, 'x');
    EXPECT_FALSE(bytes.read(0, read.data(), count));
    EXPECT_EQ(read, std::string(count, 'x'));
  }
}

TEST_F(BufferedBytesTest, FileThatWasCutEndsEarlier) {
  ASSERT_EQ(truncate(m_path.c_str(), 10000), 0);
  EXPECT_FALSE(reads(12000, 1));
  EXPECT_FALSE(reads(9999, 2));
}

}  // namespace
}  // namespace quillon::netcdf
