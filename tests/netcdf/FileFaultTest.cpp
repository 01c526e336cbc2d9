// What becomes of a file that is opened where memory is short.

#include "Hdf5Files.h"
#include "TestFiles.h"
#include "support/Allocations.h"

namespace quillon::netcdf {
namespace {

constexpr const char* ENOUGH = "enough memory";

/// How the call ends while an allocation of it fails.
std::string endWithout(long allocation, const std::function<void()>& call) {
  ::test::failAllocation(allocation);
  std::string end;
  try {
    call();
  } catch (const std::exception& error) {
    const ::test::SparedAllocations spared;
    end = error.what();
  }
  end = end.empty() && !::test::hasAllocationFailed() ? ENOUGH : end;
  ::test::failNoAllocation();
  return end;
}

TEST(FileFaultTest, MemoryThatIsShortIsAnErrorAndLeavesNothingOpen) {
  const Scratch scratch;
  const std::string path = scratch.path("a.nc");
  {
    const Hdf5Writer writer(path);
    writer.group("g");
    writer.dataset("g/n", H5T_NATIVE_INT, {2, 3});
    writer.dataset("bits", H5T_STD_B8LE);
    writer.attribute("g/n", "flags", H5T_STD_B8LE);
    writer.dataset("texts", textType(H5T_VARIABLE).id(), {2});
  }
  const auto all = static_cast<hid_t>(H5F_OBJ_ALL);
  { const File first(path); }  // what the libraries keep is there then
  const ssize_t open = H5Fget_obj_count(all, H5F_OBJ_ALL);
  const long blocks = ::test::liveBlocks();
  long failures = 0;
  for (std::string end; end != ENOUGH; ++failures) {
    end = endWithout(failures, [&] { const File file(path); });
    const ::test::SparedAllocations spared;
    ASSERT_THAT(end, testing::AnyOf(ENOUGH, "std::bad_alloc",
                                    "Cannot read '" + path +
                                        "': there is no memory for what group '/' claims to have"))
        << failures;
    EXPECT_EQ(H5Fget_obj_count(all, H5F_OBJ_ALL), open) << failures;
  }
  EXPECT_GT(failures, 20);
  EXPECT_EQ(::test::liveBlocks(), blocks);
}

}  // namespace
}  // namespace quillon::netcdf
