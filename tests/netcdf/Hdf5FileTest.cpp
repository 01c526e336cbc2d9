#include <quillon/netcdf/LibraryLock.h>

#include <filesystem>
#include <mutex>
#include <optional>

#include "Hdf5File.h"
#include "Hdf5Files.h"
#include "OpenHandle.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

class Hdf5FileTest : public testing::Test {
 protected:
  Hdf5FileTest() { write(m_path, 3); }

  static void write(const std::string& path, std::size_t size) {
    const Writer writer(path, NC_NETCDF4);
    const int x = writer.dimension("x", size);
    writer.put<int>(writer.variable("numbers", NC_INT, {x}), {size}, std::vector<int>(size, 7));
    writer.put<const char*>(writer.variable("strings", NC_STRING, {x}), {size},
                            std::vector<const char*>(size, "word"));
  }

  /// The values of the data set called "strings".
  static std::vector<std::string> stringsBy(const Hdf5File& file) {
    const std::lock_guard<std::mutex> guard(libraryLock());
    const Hdf5Object data(H5Dopen2(file.id(), "strings", H5P_DEFAULT), H5Dclose);
    const Hdf5Object type(H5Dget_type(data.id()), H5Tclose);
    const Hdf5Object space(H5Dget_space(data.id()), H5Sclose);
    std::vector<char*> texts(static_cast<std::size_t>(H5Sget_simple_extent_npoints(space.id())),
                             nullptr);
    EXPECT_GE(H5Dread(data.id(), type.id(), H5S_ALL, H5S_ALL, H5P_DEFAULT, texts.data()), 0);
    const std::vector<std::string> values(texts.begin(), texts.end());
    H5Dvlen_reclaim(type.id(), space.id(), H5P_DEFAULT, texts.data());
    return values;
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
  const std::vector<std::string> m_words{"word", "word", "word"};
};

TEST_F(Hdf5FileTest, IsTheFileThatLibnetcdfHasOpen) {
  const CheckedFile checked(m_path);
  const OpenHandle handle(checked);
  const Hdf5File file(checked, handle.hdf5());
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(stringsBy(file), m_words);
}

TEST_F(Hdf5FileTest, IsTheOneAmongSeveral) {
  write(m_scratch.path("b.nc"), 1);
  const CheckedFile first(m_path);
  const CheckedFile second(m_scratch.path("b.nc"));
  const OpenHandle firstHandle(first);
  const OpenHandle secondHandle(second);
  EXPECT_EQ(stringsBy(Hdf5File(first, firstHandle.hdf5())), m_words);
  EXPECT_EQ(stringsBy(Hdf5File(second, secondHandle.hdf5())), std::vector<std::string>{"word"});
}

TEST_F(Hdf5FileTest, StaysWithTheFileWhereItsNameLeadsElsewhere) {
  const CheckedFile checked(m_path);
  const OpenHandle handle(checked);
  std::filesystem::rename(m_path, m_scratch.path("moved.nc"));
  write(m_path, 1);
  EXPECT_EQ(stringsBy(Hdf5File(checked, handle.hdf5())), m_words);
}

TEST_F(Hdf5FileTest, ThereIsNoneForAFileThatIsNotOpen) {
  write(m_scratch.path("b.nc"), 1);
  const CheckedFile other(m_scratch.path("b.nc"));
  const OpenHandle otherHandle(other);
  const CheckedFile checked(m_path);
  EXPECT_FALSE(Hdf5File(checked, H5I_INVALID_HID).isOpen());
  EXPECT_FALSE(Hdf5File(checked, otherHandle.hdf5()).isOpen());
}

TEST_F(Hdf5FileTest, ThereIsNoneForAFileThatIsOpenByAnotherDriver) {
  const CheckedFile checked(m_path);
  const Hdf5Object access(mustHdf5(H5Pcreate(H5P_FILE_ACCESS)), H5Pclose);
  mustHdf5(H5Pset_fapl_stdio(access.id()));
  const Hdf5Object opened(mustHdf5(H5Fopen(m_path.c_str(), H5F_ACC_RDONLY, access.id())), H5Fclose);
  EXPECT_FALSE(Hdf5File(checked, opened.id()).isOpen());
}

TEST_F(Hdf5FileTest, ThereIsNoneForAClassicFile) {
  const std::string path = m_scratch.path("classic.nc");
  {
    const Writer writer(path, 0);
    writer.put<int>(writer.variable("numbers", NC_INT, {}), {}, {7});
  }
  const CheckedFile checked(path);
  const OpenHandle handle(checked);
  EXPECT_FALSE(Hdf5File(checked, handle.hdf5()).isOpen());
}

// libhdf5 would follow a pointer into the handle that was opened first.
TEST_F(Hdf5FileTest, StringsAreReadBeforeAndAfterByEitherHandle) {
  for (int round = 0; round < 3; ++round) {
    const CheckedFile checked(m_path);
    std::optional<File> first(m_path);
    {
      const OpenHandle handle(checked);
      const Hdf5File own(checked, handle.hdf5());
      EXPECT_EQ(stringsBy(own), m_words);
      EXPECT_EQ(valuesOf(arrayAt(*first, "strings")), m_words);
      const File second(m_path);
      first.reset();
      EXPECT_EQ(valuesOf(arrayAt(second, "strings")), m_words);
      EXPECT_EQ(stringsBy(own), m_words);
    }
    EXPECT_EQ(valuesOf(arrayAt(File(m_path), "strings")), m_words);
  }
}

TEST(QuietHdf5Test, PrintsNothingAndLeavesWhatPrintedBefore) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  H5E_auto2_t before = nullptr;
  void* dataBefore = nullptr;
  mustHdf5(H5Eget_auto2(H5E_DEFAULT, &before, &dataBefore));
  int failures = 0;
  mustHdf5(H5Eset_auto2(
      H5E_DEFAULT,
      [](hid_t /*stack*/, void* data) -> herr_t {
        ++*static_cast<int*>(data);
        return 0;
      },
      &failures));
  {
    const QuietHdf5 quiet;
    H5Fopen("", H5F_ACC_RDONLY, H5P_DEFAULT);
    EXPECT_EQ(failures, 0);
  }
  H5Fopen("", H5F_ACC_RDONLY, H5P_DEFAULT);
  EXPECT_EQ(failures, 1);
  mustHdf5(H5Eset_auto2(H5E_DEFAULT, before, dataBefore));
}

TEST_F(Hdf5FileTest, IdentifierIsClosedOnce) {
  const CheckedFile checked(m_path);
  const OpenHandle handle(checked);
  const Hdf5File file(checked, handle.hdf5());
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  Hdf5Object data(H5Dopen2(file.id(), "numbers", H5P_DEFAULT), H5Dclose);
  const hid_t id = data.id();
  Hdf5Object other = std::move(data);
  EXPECT_FALSE(data.exists());  // NOLINT(bugprone-use-after-move): what is looked at
  EXPECT_EQ(other.id(), id);
  other = Hdf5Object();
  EXPECT_LE(H5Iis_valid(id), 0);
}

}  // namespace
}  // namespace quillon::netcdf
