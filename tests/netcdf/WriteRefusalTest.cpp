#include <gtest/gtest.h>
#include <netcdf.h>

#include <cerrno>
#include <string>

#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

std::string refusalOf(int status, int systemError) {
  try {
    errno = systemError;
    requireWritten(status, "'/a' cannot be written");
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return {};
}

TEST(WriteRefusalTest, SuccessIsNoneWhateverTheSystemSaidOnTheWay) {
  EXPECT_EQ(refusalOf(NC_NOERR, 0), "");
  EXPECT_EQ(refusalOf(NC_NOERR, ENOSPC), "");
}

TEST(WriteRefusalTest, WantOfRoomAndFailingDisksAreToldInTheSystemsWords) {
  EXPECT_EQ(refusalOf(NC_EHDFERR, ENOSPC), "'/a' cannot be written (No space left on device)");
  EXPECT_EQ(refusalOf(NC_EHDFERR, EDQUOT), "'/a' cannot be written (Disk quota exceeded)");
  EXPECT_EQ(refusalOf(NC_EHDFERR, EFBIG), "'/a' cannot be written (File too large)");
  EXPECT_EQ(refusalOf(NC_EHDFERR, EIO), "'/a' cannot be written (Input/output error)");
}

TEST(WriteRefusalTest, OthersAreToldInTheLibrarysWords) {
  EXPECT_EQ(refusalOf(NC_EHDFERR, 0), "'/a' cannot be written (NetCDF: HDF error)");
  EXPECT_EQ(refusalOf(NC_EBADTYPE, ENOENT),
            "'/a' cannot be written (NetCDF: Not a valid data type or _FillValue type mismatch)");
}

TEST(WriteRefusalTest, PathsOfEntriesHaveOneSlashBetweenNames) {
  EXPECT_EQ(entryPath("/", "a"), "/a");
  EXPECT_EQ(entryPath("/cells", "a"), "/cells/a");
}

}  // namespace
}  // namespace quillon::netcdf
