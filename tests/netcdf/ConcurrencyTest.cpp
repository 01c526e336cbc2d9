// Files and arrays in several threads at once, beside one that uses libhdf5 itself. The thread
// sanitizer watches.
#include <hdf5.h>
#include <object_model/ComparisonHelper.h>
#include <quillon/memory/Values.h>
#include <quillon/netcdf/LibraryLock.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <numeric>
#include <thread>

#include "TestFiles.h"
#include "support/Threads.h"

namespace quillon::netcdf {
namespace {

using test::concurrently;

constexpr int THREADS = 8;
constexpr int ROUNDS = 20;
constexpr std::size_t VALUES = 2000;

class ConcurrencyTest : public testing::Test {
 protected:
  ConcurrencyTest() {
    write(m_classic, 0);
    write(m_netcdf4, NC_NETCDF4);
  }

  /// A file with VALUES numbers that are their offsets, and with texts.
  static void write(const std::string& path, int mode) {
    std::vector<int> values(VALUES);
    std::iota(values.begin(), values.end(), 0);
    const Writer writer(path, mode);
    const int x = writer.dimension("x", VALUES);
    const int length = writer.dimension("length", 2);
    const int numbers = writer.variable("numbers", NC_INT, {x});
    const int texts = writer.variable("texts", NC_CHAR, {x, length});
    writer.put<int>(numbers, {VALUES}, values);
    writer.put<char>(texts, {VALUES, 2}, std::vector<char>(VALUES * 2, 'a'));
    if (mode == NC_NETCDF4) {
      const int strings = writer.variable("strings", NC_STRING, {x});
      writer.put<const char*>(strings, {VALUES}, std::vector<const char*>(VALUES, "word"));
    }
  }

  /// With windows that are much smaller than the arrays, so that they move.
  static OpenOptions smallWindows() {
    OpenOptions options;
    options.windowBytes = 1024;
    return options;
  }

  Scratch m_scratch;
  std::string m_classic = m_scratch.path("classic.nc");
  std::string m_netcdf4 = m_scratch.path("netcdf4.nc");
};

TEST_F(ConcurrencyTest, ThreadsPrintNothingThatTheLibrariesDidNotFind) {
  testing::internal::CaptureStderr();
  concurrently(2, [&](int /*thread*/) { return File(m_netcdf4).facts("/"); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ConcurrencyTest, FilesAreOpenedReadAndClosedByEachThread) {
  const auto content = contentOf(File(m_netcdf4).root());
  concurrently(THREADS, [&](int k) {
    for (int round = 0; round < 3; ++round) {
      const File file(k % 2 == 0 ? m_netcdf4 : m_classic, smallWindows());
      EXPECT_EQ(valuesOf(arrayAt(file, "numbers")), content.at("/numbers"));
      EXPECT_EQ(valuesOf(arrayAt(file, "texts")), content.at("/texts"));
      EXPECT_EQ(shapeOf(arrayAt(file, "numbers")), std::vector<unsigned long>{VALUES});
    }
  });
}

TEST_F(ConcurrencyTest, OneArrayIsReadByAllThreadsInDifferentWindows) {
  for (const std::string& path : {m_classic, m_netcdf4}) {
    const File file(path, smallWindows());
    const memory::ArrayBase& numbers = arrayAt(file, "numbers");
    const memory::ArrayBase& texts = arrayAt(file, "texts");
    concurrently(THREADS, [&](int k) {
      object_model::TupleX index(1);
      for (std::size_t round = 0; round < 500; ++round) {
        index[0] = (round * 37 + static_cast<std::size_t>(k) * 301) % VALUES;
        EXPECT_EQ(numbers.getValueAsInt(index), static_cast<long>(index[0]));
        EXPECT_EQ(texts.getValueAsString(index), "aa");
      }
    });
  }
}

TEST_F(ConcurrencyTest, BlocksComeBesideWindows) {
  const File file(m_netcdf4, smallWindows());
  const memory::ArrayBase& numbers = arrayAt(file, "numbers");
  const memory::BlockLayout layout(numbers, 100);
  concurrently(THREADS, [&](int k) {
    for (unsigned long offset = 0; offset < VALUES; offset += 100) {
      std::vector<long> values(100);
      memory::copyValues(numbers, layout.blockAt(offset), values.data());
      EXPECT_EQ(values.back(), static_cast<long>(offset) + 99);
      object_model::TupleX index(1);
      index[0] = (offset + static_cast<unsigned long>(k)) % VALUES;
      EXPECT_EQ(numbers.getValueAsInt(index), static_cast<long>(index[0]));
    }
  });
}

TEST_F(ConcurrencyTest, ThreadsCompareFilesAtOnce) {
  const File first(m_netcdf4, smallWindows());
  const File second(m_classic, smallWindows());
  concurrently(THREADS, [&](int) {
    for (const char* name : {"numbers", "texts"}) {
      std::string reason;
      EXPECT_TRUE(object_model::helper::areSameArrays(arrayAt(first, name), arrayAt(second, name),
                                                      object_model::helper::ComparisonType::Exact,
                                                      0, &reason))
          << reason;
    }
  });
}

TEST_F(ConcurrencyTest, EachReadIsReportedWhileOthersRead) {
  std::atomic<unsigned long> bytes = 0;
  OpenOptions options = smallWindows();
  options.onRead = [&](unsigned long read) { bytes += read; };
  const File file(m_netcdf4, options);
  const memory::ArrayBase& numbers = arrayAt(file, "numbers");
  concurrently(THREADS, [&](int) {
    std::vector<int> values(VALUES);
    memory::copyValues(numbers, memory::BlockLayout({VALUES}, VALUES).blockAt(0), values.data());
  });
  EXPECT_EQ(bytes, THREADS * VALUES * sizeof(int));
}

/// How many values HDF5's own functions find in the file.
hssize_t valuesByHdf5(const std::string& path) {
  const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  const hid_t data = H5Dopen2(file, "numbers", H5P_DEFAULT);
  const hid_t space = H5Dget_space(data);
  const hssize_t count = H5Sget_simple_extent_npoints(space);
  H5Sclose(space);
  H5Dclose(data);
  H5Fclose(file);
  return count;
}

/// Runs `other` again and again while files are opened, read and closed.
void runBeside(const std::string& path, const std::function<void()>& other) {
  std::atomic<bool> isDone = false;
  std::thread beside([&] {
    do {
      other();
    } while (!isDone);
  });
  for (int round = 0; round < ROUNDS; ++round) {
    const File file(path);
    EXPECT_EQ(arrayAt(file, "numbers").getValueAsInt(object_model::TupleX(1)), 0);
    EXPECT_EQ(arrayAt(file, "strings").getValueAsString(object_model::TupleX(1)), "word");
  }
  isDone = true;
  beside.join();
}

TEST_F(ConcurrencyTest, AnotherThreadUsesHdf5UnderTheLock) {
  const std::string own = m_scratch.path("own.nc");
  write(own, NC_NETCDF4);
  runBeside(m_netcdf4, [&] {
    const std::lock_guard<std::mutex> guard(libraryLock());
    EXPECT_EQ(valuesByHdf5(own), static_cast<hssize_t>(VALUES));
  });
}

TEST_F(ConcurrencyTest, AnotherThreadUsesAThreadSafeHdf5WithoutTheLock) {
  hbool_t isThreadSafe = 0;
  H5is_library_threadsafe(&isThreadSafe);
  if (!isThreadSafe) {
    GTEST_SKIP() << "this libhdf5 is not thread-safe";
  }
  const std::string own = m_scratch.path("own.nc");
  write(own, NC_NETCDF4);
  runBeside(m_netcdf4, [&] { EXPECT_EQ(valuesByHdf5(own), static_cast<hssize_t>(VALUES)); });
}

TEST_F(ConcurrencyTest, CoordinatesAreLookedForUnderTheLock) {
  const File file(m_netcdf4);
  const memory::ArrayBase& numbers = arrayAt(file, "numbers");
  std::atomic<bool> isDone = false;
  std::unique_lock<std::mutex> lock(libraryLock());
  std::thread thread([&] {
    numbers.coordinates(0);
    isDone = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(isDone);
  lock.unlock();
  thread.join();
  EXPECT_TRUE(isDone);
}

TEST_F(ConcurrencyTest, LockIsFreeAfterwards) {
  errorOf([] { const File file("/nonexistent"); });
  errorOf([&] { return File(m_classic).corner("none", {}); });
  { const File file(m_netcdf4); }
  ASSERT_TRUE(libraryLock().try_lock());
  libraryLock().unlock();
}

}  // namespace
}  // namespace quillon::netcdf
