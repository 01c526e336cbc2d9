#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>

#include "TestFiles.h"
#include "WriteFile.h"
#include "WriteRefusal.h"
#include "WriteRoom.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long KIBIBYTE = 1UL << 10U;
constexpr unsigned long MEBIBYTES_64 = 64UL << 20U;

class WriteRoomTest : public testing::Test {
 protected:
  WriteRoomTest() : m_file(open(m_scratch.path("a").c_str(), O_RDWR | O_CREAT, 0600)) {}
  ~WriteRoomTest() override { close(m_file); }

  struct stat status() const {
    struct stat status = {};
    fstat(m_file, &status);
    return status;
  }

  /// How many bytes of the disk the file takes.
  unsigned long bytesOnDisk() const { return static_cast<unsigned long>(status().st_blocks) * 512; }

  template <class Action>
  static std::string refusalOf(const Action& action) {
    try {
      action();
    } catch (const Refusal& refusal) {
      return refusal.what();
    }
    return {};
  }

  Scratch m_scratch;
  int m_file;
};

TEST_F(WriteRoomTest, IsThereBeforeAnythingIsWrittenAndIsGivenBack) {
  if (fallocate(m_file, FALLOC_FL_KEEP_SIZE, 0, 1) != 0) {
    GTEST_SKIP() << "the file system reserves nothing";
  }
  WriteRoom room(m_file, 100 * KIBIBYTE);
  EXPECT_EQ(status().st_size, 0);
  EXPECT_GE(bytesOnDisk(), 100 * KIBIBYTE);
  room.reserveFor(100 * KIBIBYTE);
  EXPECT_EQ(status().st_size, 0);
  EXPECT_GE(bytesOnDisk(), 200 * KIBIBYTE);
  ASSERT_EQ(::write(m_file, "text", 4), 4);
  room.release();
  EXPECT_EQ(status().st_size, 4);
  EXPECT_LE(bytesOnDisk(), 100 * KIBIBYTE);
}

// For each 100 bytes of values there is room for one more.
TEST_F(WriteRoomTest, IsRefusedWhereAFileMayNotBecomeSoLong) {
  const FileLimit limit(2010);
  EXPECT_EQ(refusalOf([this] { const WriteRoom room(m_file, 2010); }), "");
  EXPECT_EQ(refusalOf([this] { const WriteRoom room(m_file, 2011); }), "File too large");
  WriteRoom room(m_file, 1000);
  EXPECT_EQ(refusalOf([&] { room.reserveFor(400); }), "");
  EXPECT_EQ(refusalOf([&] { room.reserveFor(600); }), "");
  EXPECT_EQ(refusalOf([&] { room.reserve(); }), "");
  EXPECT_EQ(refusalOf([&] { room.reserveFor(1); }), "File too large");
  EXPECT_EQ(refusalOf([&] { room.reserve(); }), "File too large");
}

TEST_F(WriteRoomTest, IsRefusedWhereTheFileSystemHasNotSoMuch) {
  if (fallocate(m_file, FALLOC_FL_KEEP_SIZE, 0, 1) != 0) {
    GTEST_SKIP() << "the file system reserves nothing";
  }
  EXPECT_THAT(refusalOf([this] { const WriteRoom room(m_file, 1UL << 62U); }),
              testing::AnyOf("No space left on device", "File too large"));
}

TEST_F(WriteRoomTest, IsNeededForWhatIsHeldBackAloneOnceTheRestIsWritten) {
  const FileLimit limit(MEBIBYTES_64 + MEBIBYTES_64 / 100);
  WriteRoom room(m_file, 0);
  room.reserveFor(MEBIBYTES_64 - 1);
  EXPECT_FALSE(room.isSyncDue());
  room.reserveFor(1);
  EXPECT_TRUE(room.isSyncDue());
  EXPECT_EQ(refusalOf([&] { room.reserveFor(100); }), "File too large");
  ASSERT_EQ(::write(m_file, "text", 4), 4);
  room.noteSync();
  EXPECT_FALSE(room.isSyncDue());
  room.reserveFor(MEBIBYTES_64 - 100);
  EXPECT_EQ(refusalOf([&] { room.reserveFor(96); }), "");
  EXPECT_EQ(refusalOf([&] { room.reserveFor(1); }), "File too large");
}

TEST_F(WriteRoomTest, IsThereAgainOnceTheLibraryHasEmptiedTheFile) {
  if (fallocate(m_file, FALLOC_FL_KEEP_SIZE, 0, 1) != 0) {
    GTEST_SKIP() << "the file system reserves nothing";
  }
  const Plan plan = {{"/", "/", 0, {}, {}, {}}};
  const NewFile file(m_scratch.path("a"), m_file, plan);
  EXPECT_GE(bytesOnDisk(), 100 * KIBIBYTE);
}

TEST_F(WriteRoomTest, IsNotAskedForWhereNoneCanBeReserved) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  EXPECT_EQ(refusalOf([&] { WriteRoom(ends[1], 1000).reserveFor(1000); }), "");
  close(ends[0]);
  close(ends[1]);
}

}  // namespace
}  // namespace quillon::netcdf
