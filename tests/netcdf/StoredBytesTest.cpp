// What arrays of files tell of their stored bytes, and what they make of files that change.

#include <hdf5.h>
#include <object_model/BulkValues.h>
#include <quillon/memory/Facets.h>

#include <filesystem>

#include "StoredFiles.h"

namespace quillon::netcdf {
namespace {

constexpr std::size_t VALUES = 20000;

class StoredBytesTest : public testing::TestWithParam<int> {
 protected:
  /// A file with a variable of VALUES doubles, the last of which is `last`.
  std::string file(const std::string& name, double last, double fill = -1) const {
    const std::string path = m_scratch.path(name);
    std::vector<double> values(VALUES);
    std::iota(values.begin(), values.end(), 0);
    values.back() = last;
    const Writer writer(path, GetParam());
    const int x = writer.dimension("x", VALUES);
    const int v = GetParam() == NC_NETCDF4
                      ? define(writer, "v", {x}, {NC_DOUBLE, NC_ENDIAN_NATIVE, {4000}, 1, true})
                      : writer.variable("v", NC_DOUBLE, {x});
    must(nc_put_att_double(writer.root(), v, "_FillValue", NC_DOUBLE, 1, &fill));
    writer.put<double>(v, {VALUES}, values);
    return path;
  }

  static bool holdSame(const File& first, const File& second) {
    const auto* const bytes = dynamic_cast<const memory::HasStoredBytes*>(&arrayAt(first, "v"));
    const unsigned long start = 0;
    const unsigned long extent = VALUES;
    return bytes != nullptr && bytes->holdsSameBytes(arrayAt(second, "v"), &start, &extent);
  }

  static std::vector<double> firstValuesOf(const File& file, unsigned long count) {
    std::vector<double> values(count);
    const unsigned long start = 0;
    memory::copyValues(arrayAt(file, "v"), &start, &count, values.data());
    return values;
  }

  static std::vector<double> valuesOf(const File& file) { return firstValuesOf(file, VALUES); }

  Scratch m_scratch;
};

TEST_P(StoredBytesTest, EqualFilesHoldTheSame) {
  EXPECT_TRUE(holdSame(File(file("a.nc", 1)), File(file("b.nc", 1))));
  EXPECT_FALSE(holdSame(File(file("a.nc", 1)), File(file("b.nc", 2))));
}

TEST_P(StoredBytesTest, ValuesAreReadAsTheyWereWritten) {
  std::vector<unsigned long> reads;
  const File file(this->file("a.nc", -5), countingReads(1000, reads));
  std::vector<double> expected(VALUES);
  std::iota(expected.begin(), expected.end(), 0);
  expected.back() = -5;
  EXPECT_EQ(valuesOf(file), expected);
  EXPECT_EQ(reads, std::vector<unsigned long>{VALUES * sizeof(double)});
}

TEST_P(StoredBytesTest, SameBytesAreOtherValuesWhereOthersAreMissing) {
  const File first(file("a.nc", 1, -1));
  const File second(file("b.nc", 1, 7));
  EXPECT_FALSE(holdSame(first, second));
  EXPECT_TRUE(holdSame(first, File(file("c.nc", 1, -1))));
  OpenOptions options;
  options.decode = false;
  EXPECT_TRUE(
      holdSame(File(m_scratch.path("a.nc"), options), File(m_scratch.path("b.nc"), options)));
}

TEST_P(StoredBytesTest, SameBytesAreOtherValuesUnderAnotherPacking) {
  const std::string plain = file("plain.nc", 1);
  const auto packed = [&](const std::string& name, const char* attribute, double value) {
    const std::string path = file(name, 1);
    int id = -1;
    must(nc_open(path.c_str(), NC_WRITE, &id));
    nc_redef(id);
    must(nc_put_att_double(id, 0, attribute, NC_DOUBLE, 1, &value));
    must(nc_close(id));
    return path;
  };
  for (const char* attribute : {"scale_factor", "add_offset", "missing_value"}) {
    const File two(packed("two.nc", attribute, 2));
    EXPECT_FALSE(holdSame(File(plain), two)) << attribute;
    EXPECT_FALSE(holdSame(two, File(plain))) << attribute;
    EXPECT_FALSE(holdSame(two, File(packed("three.nc", attribute, 3)))) << attribute;
    EXPECT_TRUE(holdSame(two, File(packed("same.nc", attribute, 2)))) << attribute;
  }
}

TEST_P(StoredBytesTest, FileThatWasCutWhileItWasOpenIsAnError) {
  const File first(file("a.nc", 1));
  const File second(file("b.nc", 1));
  EXPECT_TRUE(holdSame(first, second));
  const auto bytes = std::filesystem::file_size(m_scratch.path("b.nc"));
  std::filesystem::resize_file(m_scratch.path("b.nc"), bytes / 2);
  const std::string message = "it was cut from " + std::to_string(bytes) + " to " +
                              std::to_string(bytes / 2) + " bytes while it was open";
  EXPECT_THAT(errorOf([&] { holdSame(first, second); }), testing::HasSubstr(message));
  EXPECT_THAT(errorOf([&] { holdSame(second, first); }), testing::HasSubstr(message));
  EXPECT_THAT(errorOf([&] { valuesOf(second); }), testing::HasSubstr(message));
  EXPECT_THAT(errorOf([&] { firstValuesOf(second, 4000); }), testing::HasSubstr(message));
  EXPECT_EQ(valuesOf(first)[0], 0);
}

TEST_P(StoredBytesTest, PartsAreTheSameOnlyAtTheSamePlaceAndWithoutSteps) {
  const File whole(file("a.nc", 1));
  const auto isSameAsTheFirst = [&](const Range& range) {
    const memory::Dictionary first = whole.select("/", {{"x", {0, 8000, 1}}});
    const memory::Dictionary other = whole.select("/", {{"x", range}});
    const unsigned long start = 0;
    const unsigned long extent = 8000;
    const auto isSame = [&](const memory::Dictionary& a, const memory::Dictionary& b) {
      return dynamic_cast<const memory::HasStoredBytes&>(*a.data("v"))
          .holdsSameBytes(*b.data("v")->asArray(), &start, &extent);
    };
    EXPECT_EQ(isSame(first, other), isSame(other, first));
    return isSame(first, other);
  };
  EXPECT_TRUE(isSameAsTheFirst({0, 8000, 1}));
  EXPECT_FALSE(isSameAsTheFirst({8000, 8000, 1}));
  EXPECT_FALSE(isSameAsTheFirst({0, 8000, 2}));
}

TEST_P(StoredBytesTest, FileThatGrewWhileItWasOpenIsRead) {
  const File first(file("a.nc", 1));
  const File second(file("b.nc", 1));
  writeBytes(m_scratch.path("b.nc"), readBytes(m_scratch.path("b.nc")) + "more");
  EXPECT_TRUE(holdSame(first, second));
  EXPECT_EQ(valuesOf(second), valuesOf(first));
}

TEST_P(StoredBytesTest, FileThatWasWrittenOverIsNotTheSame) {
  const File first(file("a.nc", 1));
  const File second(file("b.nc", 1));
  const std::string bytes = readBytes(m_scratch.path("b.nc"));
  std::string changed = bytes;
  for (std::size_t k = changed.size() - 100; k < changed.size(); ++k) {
    changed[k] = static_cast<char>(~changed[k]);
  }
  writeBytes(m_scratch.path("b.nc"), changed);
  EXPECT_FALSE(holdSame(first, second));
}

INSTANTIATE_TEST_SUITE_P(Formats, StoredBytesTest,
                         testing::Values(NC_NETCDF4, 0, NC_64BIT_OFFSET, NC_64BIT_DATA),
                         [](const auto& c) { return "Mode" + std::to_string(c.param); });

std::size_t copyAsItIs(unsigned /*flags*/, std::size_t /*count*/, const unsigned* /*values*/,
                       std::size_t bytes, std::size_t* /*room*/, void** /*buffer*/) {
  return bytes;
}

constexpr H5Z_filter_t OWN_FILTER = 511;

/// Makes the filter known to libhdf5 for as long as it lives.
class OwnFilter {
 public:
  OwnFilter() {
    const H5Z_class2_t filter{H5Z_CLASS_T_VERS, OWN_FILTER, 1,         1, "own",
                              nullptr,          nullptr,    copyAsItIs};
    EXPECT_GE(H5Zregister(&filter), 0);
  }
  OwnFilter(const OwnFilter&) = delete;
  OwnFilter& operator=(const OwnFilter&) = delete;
  ~OwnFilter() { H5Zunregister(OWN_FILTER); }
};

void writeWithOwnFilter(const std::string& path) {
  const hid_t file = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
  const hsize_t size = VALUES;
  const hid_t space = H5Screate_simple(1, &size, nullptr);
  const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
  H5Pset_chunk(properties, 1, &size);
  H5Pset_filter(properties, OWN_FILTER, H5Z_FLAG_MANDATORY, 0, nullptr);
  const hid_t data =
      H5Dcreate2(file, "v", H5T_IEEE_F64LE, space, H5P_DEFAULT, properties, H5P_DEFAULT);
  const std::vector<double> values(VALUES, 1);
  EXPECT_GE(H5Dwrite(data, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()), 0);
  H5Dclose(data);
  H5Pclose(properties);
  H5Sclose(space);
  H5Fclose(file);
}

TEST(StoredBytesFilterTest, EqualBytesUnderAFilterThatIsNotKnownHereAreNotKnownToBeTheSame) {
  const Scratch scratch;
  const OwnFilter filter;
  writeWithOwnFilter(scratch.path("a.nc"));
  writeWithOwnFilter(scratch.path("b.nc"));
  {
    const Writer writer(scratch.path("plain.nc"), NC_NETCDF4);
    writer.put<double>(writer.variable("v", NC_DOUBLE, {writer.dimension("x", VALUES)}), {VALUES},
                       std::vector<double>(VALUES, 1));
  }
  const File first(scratch.path("a.nc"));
  const File second(scratch.path("b.nc"));
  const auto& array = arrayAt(first, "v");
  const auto& bytes = dynamic_cast<const memory::HasStoredBytes&>(array);
  const unsigned long start = 0;
  const unsigned long extent = VALUES;
  EXPECT_FALSE(bytes.holdsSameBytes(arrayAt(second, "v"), &start, &extent));
  const File plain(scratch.path("plain.nc"));
  const auto& plainArray = arrayAt(plain, "v");
  const auto& plainBytes = dynamic_cast<const memory::HasStoredBytes&>(plainArray);
  EXPECT_FALSE(bytes.holdsSameBytes(plainArray, &start, &extent));
  EXPECT_FALSE(plainBytes.holdsSameBytes(array, &start, &extent));
  std::vector<double> values(VALUES);
  memory::copyValues(array, &start, &extent, values.data());
  EXPECT_EQ(values, std::vector<double>(VALUES, 1));
}

}  // namespace
}  // namespace quillon::netcdf
