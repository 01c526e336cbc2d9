#include <gtest/gtest.h>
#include <hdf5.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <utility>

#include "Hdf5Files.h"
#include "StoredFiles.h"
#include "StoredValues.h"
#include "support/Allocations.h"

namespace quillon::netcdf {
namespace {

constexpr std::size_t ROWS = 7;
constexpr std::size_t COLUMNS = 10;

/// The bytes of numbers of this machine.
template <class Value>
std::string bytesOfAll(const std::vector<Value>& values) {
  std::string bytes(values.size() * sizeof(Value), '\0');
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

class StoredValuesTest : public testing::Test {
 protected:
  /// ROWS x COLUMNS values, most of which are their offset.
  template <class Value>
  static std::vector<Value> ramp() {
    std::vector<Value> values(ROWS * COLUMNS);
    std::iota(values.begin(), values.end(), Value{0});
    return values;
  }

  /// A file with a variable v of ROWS x COLUMNS floats.
  std::string file(const std::string& name, const Storage& storage,
                   const std::vector<float>& values = ramp<float>()) const {
    const std::string path = m_scratch.path(name);
    const Writer writer(path, NC_NETCDF4);
    const int y = writer.dimension("y", ROWS);
    const int v = define(writer, "v", {y, writer.dimension("x", COLUMNS)}, storage);
    must(nc_enddef(writer.root()));
    must(nc_put_var_float(writer.root(), v, values.data()));
    return path;
  }

  Variable variable(const Storage& storage) const { return variableOf(file("a.nc", storage), "v"); }

  bool areKnownToBeSame(const Storage& a, const Storage& b) const {
    return holdSame(variableOf(file("a.nc", a), "v"), variableOf(file("b.nc", b), "v"));
  }

  Scratch m_scratch;
};

struct Kind {
  nc_type type;
  int endian;
};

class StoredTypesTest : public StoredValuesTest, public testing::WithParamInterface<Kind> {};

TEST_P(StoredTypesTest, ChunksAreReadAsByLibnetcdf) {
  Storage storage{GetParam().type, GetParam().endian, {3, 4}, 6, true, true};
  for (const bool isShuffled : {true, false}) {
    storage.isShuffled = isShuffled;
    const Variable v = variable(storage);
    EXPECT_EQ(fromStored(v), byLibnetcdf(v));
  }
}

TEST_P(StoredTypesTest, ContiguousValuesAreReadAsByLibnetcdf) {
  const Variable v = variable({GetParam().type, GetParam().endian});
  EXPECT_EQ(fromStored(v), byLibnetcdf(v));
}

INSTANTIATE_TEST_SUITE_P(
    All, StoredTypesTest,
    testing::Values(Kind{NC_BYTE, NC_ENDIAN_LITTLE}, Kind{NC_UBYTE, NC_ENDIAN_LITTLE},
                    Kind{NC_SHORT, NC_ENDIAN_LITTLE}, Kind{NC_SHORT, NC_ENDIAN_BIG},
                    Kind{NC_USHORT, NC_ENDIAN_LITTLE}, Kind{NC_USHORT, NC_ENDIAN_BIG},
                    Kind{NC_INT, NC_ENDIAN_LITTLE}, Kind{NC_INT, NC_ENDIAN_BIG},
                    Kind{NC_UINT, NC_ENDIAN_LITTLE}, Kind{NC_UINT, NC_ENDIAN_BIG},
                    Kind{NC_INT64, NC_ENDIAN_LITTLE}, Kind{NC_INT64, NC_ENDIAN_BIG},
                    Kind{NC_UINT64, NC_ENDIAN_LITTLE}, Kind{NC_UINT64, NC_ENDIAN_BIG},
                    Kind{NC_FLOAT, NC_ENDIAN_LITTLE}, Kind{NC_FLOAT, NC_ENDIAN_BIG},
                    Kind{NC_DOUBLE, NC_ENDIAN_LITTLE}, Kind{NC_DOUBLE, NC_ENDIAN_BIG}));

TEST_F(StoredValuesTest, ChunksOfAnyShapeAreReadAsByLibnetcdf) {
  for (const std::vector<std::size_t>& chunks : std::vector<std::vector<std::size_t>>{
           {1, 1}, {1, 10}, {7, 1}, {2, 5}, {5, 2}, {4, 10}, {7, 10}}) {
    for (const nc_type type : {NC_BYTE, NC_INT}) {
      const Variable v = variable({type, NC_ENDIAN_NATIVE, chunks});
      EXPECT_EQ(fromStored(v), byLibnetcdf(v)) << chunks[0] << " " << chunks[1];
    }
  }
}

TEST_F(StoredValuesTest, SingleValueIsReadAsByLibnetcdf) {
  for (const int format : {0, NC_NETCDF4}) {
    const std::string path = m_scratch.path("a.nc");
    {
      const Writer writer(path, format);
      writer.put<double>(writer.variable("v", NC_DOUBLE, {}), {}, {2.5});
    }
    EXPECT_EQ(fromStored(variableOf(path, "v")), bytesOfAll(std::vector<double>{2.5}));
  }
}

// They are added up before the sums are cut to 16 bits again.
TEST_F(StoredValuesTest, ChecksumOfTheHighestBytesIsRight) {
  constexpr std::size_t BYTES = 3001;
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    Storage storage{NC_UBYTE, NC_ENDIAN_NATIVE, {BYTES}};
    storage.hasChecksum = true;
    const int v = define(writer, "v", {writer.dimension("x", BYTES)}, storage);
    writer.put<unsigned char>(v, {BYTES}, std::vector<unsigned char>(BYTES, 0xFF));
  }
  EXPECT_EQ(fromStored(variableOf(path, "v")), std::string(BYTES, '\xFF'));
}

class StoredFormatsTest : public StoredValuesTest, public testing::WithParamInterface<int> {
 protected:
  /// Two variables whose records alternate, and one that has none.
  std::string records(const std::string& name, float last) const {
    const std::string path = m_scratch.path(name);
    const Writer writer(path, GetParam());
    const int t = writer.dimension("t", NC_UNLIMITED);
    const int x = writer.dimension("x", 5);
    const int odd = writer.variable("odd", NC_SHORT, {t, x});
    const int v = writer.variable("v", NC_DOUBLE, {t, x});
    const int lone = writer.variable("lone", NC_INT, {x});
    writer.put<short>(odd, {3, 5}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
    writer.put<double>(v, {3, 5}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, last});
    writer.put<int>(lone, {5}, {1, 2, 3, 4, -5});
    return path;
  }
};

TEST_P(StoredFormatsTest, RecordsAreReadAsByLibnetcdf) {
  const std::string path = records("a.nc", 14);
  for (const char* name : {"odd", "v", "lone"}) {
    const Variable v = variableOf(path, name);
    EXPECT_EQ(fromStored(v), byLibnetcdf(v)) << name;
  }
}

TEST_P(StoredFormatsTest, RecordsAreTheSameUpToTheOneThatDiffers) {
  const Variable a = variableOf(records("a.nc", 14), "v");
  EXPECT_TRUE(holdSame(a, variableOf(records("b.nc", 14), "v")));
  const Variable other = variableOf(records("c.nc", 15), "v");
  EXPECT_FALSE(holdSame(a, other));
  const std::vector<unsigned long> start{0, 0};
  EXPECT_TRUE(storedValuesOf(a)->holdsSame(*storedValuesOf(other), start.data(),
                                           std::vector<unsigned long>{5, 2}.data()));
  EXPECT_TRUE(storedValuesOf(a)->holdsSame(*storedValuesOf(other), start.data(),
                                           std::vector<unsigned long>{4, 3}.data()));
}

TEST_P(StoredFormatsTest, RecordsAreTheSameAsThoseThatStandElsewhere) {
  const auto alone = [&](const std::string& name, float last) {
    const std::string path = m_scratch.path(name);
    {
      const Writer writer(path, GetParam());
      const int t = writer.dimension("t", NC_UNLIMITED);
      const int v = writer.variable("v", NC_DOUBLE, {t, writer.dimension("x", 5)});
      writer.put<double>(v, {3, 5}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, last});
    }
    return variableOf(path, "v");
  };
  const Variable a = variableOf(records("a.nc", 14), "v");
  const Variable same = alone("b.nc", 14);
  EXPECT_TRUE(holdSame(a, same));
  EXPECT_TRUE(holdSame(same, a));
  const Variable other = alone("c.nc", 15);
  EXPECT_FALSE(holdSame(a, other));
  EXPECT_FALSE(holdSame(other, a));
}

TEST_P(StoredFormatsTest, TextsAreLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, GetParam());
    writer.put<char>(writer.variable("v", NC_CHAR, {writer.dimension("x", 2)}), {2}, {'a', 'b'});
  }
  EXPECT_EQ(storedValuesOf(variableOf(path, "v")), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, StoredFormatsTest,
                         testing::Values(0, NC_64BIT_OFFSET, NC_64BIT_DATA));

TEST_F(StoredValuesTest, TextsAndEnumerationsAreLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    nc_type type = NC_NAT;
    must(nc_def_enum(writer.root(), NC_BYTE, "colour", &type));
    const signed char red = 1;
    must(nc_insert_enum(writer.root(), type, "red", &red));
    const int x = writer.dimension("x", 2);
    writer.put<signed char>(writer.variable("colours", type, {x}), {2}, {1, 1});
    writer.put<char>(writer.variable("text", NC_CHAR, {x}), {2}, {'a', 'b'});
    writer.put<const char*>(writer.variable("strings", NC_STRING, {x}), {2}, {"a", "b"});
  }
  for (const char* name : {"colours", "text", "strings"}) {
    EXPECT_EQ(storedValuesOf(variableOf(path, name)), nullptr) << name;
  }
}

/// A data set of HDF5 that is stored in a way of its own.
struct OwnStorage {
  std::string name;
  std::function<void(hid_t creation)> create;
};

void PrintTo(const OwnStorage& storage, std::ostream* stream) { *stream << storage.name; }

class OwnStorageTest : public StoredValuesTest, public testing::WithParamInterface<OwnStorage> {};

constexpr hsize_t EIGHT = 8;

/// A file of the eight values 'v', which are stored as `create` sets it.
void writeEight(const std::string& path, const std::vector<int>& values,
                const std::function<void(hid_t creation)>& create) {
  const Hdf5Writer writer(path);
  writeAll(writer.dataset("v", H5T_STD_I32LE, {EIGHT}, create), H5T_NATIVE_INT, values.data());
}

TEST_P(OwnStorageTest, IsLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  const std::vector<int> values{1, 2, 3, 4, 5, 6, 7, 8};
  writeEight(path, values, GetParam().create);
  const Variable v = variableOf(path, "v");
  EXPECT_EQ(storedValuesOf(v), nullptr);
  EXPECT_EQ(byLibnetcdf(v), bytesOfAll(values));
}

INSTANTIATE_TEST_SUITE_P(All, OwnStorageTest,
                         testing::Values(OwnStorage{"filter that is not known",
                                                    [](hid_t creation) {
                                                      H5Pset_chunk(creation, 1, &EIGHT);
                                                      H5Pset_nbit(creation);
                                                    }},
                                         OwnStorage{"filter behind one that packs",
                                                    [](hid_t creation) {
                                                      H5Pset_chunk(creation, 1, &EIGHT);
                                                      H5Pset_deflate(creation, 1);
                                                      H5Pset_shuffle(creation);
                                                    }},
                                         OwnStorage{"filter that packs what is packed",
                                                    [](hid_t creation) {
                                                      H5Pset_chunk(creation, 1, &EIGHT);
                                                      H5Pset_deflate(creation, 1);
                                                      H5Pset_deflate(creation, 1);
                                                    }},
                                         OwnStorage{"nine filters",
                                                    [](hid_t creation) {
                                                      H5Pset_chunk(creation, 1, &EIGHT);
                                                      for (int k = 0; k < 9; ++k) {
                                                        H5Pset_fletcher32(creation);
                                                      }
                                                    }},
                                         OwnStorage{"beside the data set's own description",
                                                    [](hid_t creation) {
                                                      H5Pset_layout(creation, H5D_COMPACT);
                                                    }}));

TEST_F(StoredValuesTest, EightFiltersAreUndone) {
  const std::string path = m_scratch.path("a.nc");
  const std::vector<int> values{1, 2, 3, 4, 5, 6, 7, 8};
  writeEight(path, values, [](hid_t creation) {
    H5Pset_chunk(creation, 1, &EIGHT);
    for (int k = 0; k < 7; ++k) {
      H5Pset_fletcher32(creation);
    }
    H5Pset_deflate(creation, 1);
  });
  EXPECT_EQ(fromStored(variableOf(path, "v")), bytesOfAll(values));
}

// The filter's one number is how many bytes a value has.
TEST_F(StoredValuesTest, ShufflingOfValuesOfAnotherLengthIsLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  writeEight(path, std::vector<int>(EIGHT), [](hid_t creation) {
    H5Pset_chunk(creation, 1, &EIGHT);
    H5Pset_shuffle(creation);
  });
  EXPECT_NE(storedValuesOf(variableOf(path, "v")), nullptr);
  const std::string filter("\1\0shuffle\0\4", 11);  // how many numbers, a name, the number
  const std::string bytes = readBytes(path);
  const std::size_t place = bytes.find(filter);
  ASSERT_NE(place, std::string::npos);
  for (const std::string& damaged :
       {std::string("\1\0shuffle\0\2", 11), std::string("\0\0shuffle\0\4", 11)}) {
    writeBytes(path, std::string(bytes).replace(place, filter.size(), damaged));
    EXPECT_EQ(storedValuesOf(variableOf(path, "v")), nullptr);
  }
}

TEST_F(StoredValuesTest, ValuesInAFileBesideItAreLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  writeEight(path, {1, 2, 3, 4, 5, 6, 7, 8}, [&](hid_t creation) {
    H5Pset_external(creation, m_scratch.path("values").c_str(), 0, H5F_UNLIMITED);
  });
  EXPECT_EQ(storedValuesOf(variableOf(path, "v")), nullptr);
}

TEST_F(StoredValuesTest, NumbersOfFewerBitsThanTheyTakeAreLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  const Hdf5Object type(mustHdf5(H5Tcopy(H5T_STD_I32LE)), H5Tclose);
  mustHdf5(H5Tset_precision(type.id(), 24));
  const std::vector<int> values{1, -2, 3};
  {
    const Hdf5Writer writer(path);
    writeAll(writer.dataset("v", type.id(), {3}), H5T_NATIVE_INT, values.data());
  }
  EXPECT_EQ(storedValuesOf(variableOf(path, "v")), nullptr);
}

TEST_F(StoredValuesTest, ContiguousValuesThatWereNeverWrittenAreLeftToLibnetcdf) {
  for (const hsize_t bytesBefore : {0UL, 1024UL}) {
    const std::string path = m_scratch.path("a.nc");
    const Hdf5Object creation(mustHdf5(H5Pcreate(H5P_FILE_CREATE)), H5Pclose);
    mustHdf5(H5Pset_userblock(creation.id(), bytesBefore));
    {
      const Hdf5Object file(
          mustHdf5(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation.id(), H5P_DEFAULT)), H5Fclose);
      const Hdf5Object space(mustHdf5(H5Screate_simple(1, &EIGHT, nullptr)), H5Sclose);
      const Hdf5Object data(mustHdf5(H5Dcreate2(file.id(), "v", H5T_STD_I32LE, space.id(),
                                                H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)),
                            H5Dclose);
    }
    const Variable v = variableOf(path, "v");
    EXPECT_EQ(storedValuesOf(v), nullptr);
    EXPECT_EQ(byLibnetcdf(v), bytesOfAll(std::vector<int>(EIGHT)));
  }
}

TEST_F(StoredValuesTest, ChunksWithoutAFillValueThatWereNeverWrittenAreLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Hdf5Writer writer(path);
    writer.dataset("v", H5T_STD_I32LE, {EIGHT}, [](hid_t creation) {
      H5Pset_chunk(creation, 1, &EIGHT);
      H5Pset_fill_value(creation, H5T_STD_I32LE, nullptr);
    });
  }
  EXPECT_EQ(fromStored(variableOf(path, "v")), "not known");
}

// Its place is one in another file.
TEST_F(StoredValuesTest, ValuesInAnotherFileAreLeftToLibnetcdf) {
  const std::string other = file("other.nc", {});
  const std::string path = m_scratch.path("a.nc");
  { const Writer writer(path, NC_NETCDF4); }
  const hid_t opened = H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
  EXPECT_GE(H5Lcreate_external("other.nc", "/v", opened, "v", H5P_DEFAULT, H5P_DEFAULT), 0);
  EXPECT_GE(H5Fclose(opened), 0);
  const auto source = std::make_shared<const Source>(path, OpenOptions());
  const std::lock_guard<std::mutex> guard(libraryLock());
  Variable variable{source, source->id(), -1, "/v", 4, {COLUMNS, ROWS}, {}};
  ASSERT_EQ(nc_inq_varid(variable.group, "v", &variable.id), NC_NOERR);
  EXPECT_EQ(findStoredValues(variable), nullptr);
}

TEST_F(StoredValuesTest, BytesBeforeTheFormatsOwnAreCounted) {
  const std::string path = m_scratch.path("a.nc");
  const hid_t creation = H5Pcreate(H5P_FILE_CREATE);
  H5Pset_userblock(creation, 1024);
  const hid_t opened = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation, H5P_DEFAULT);
  const hsize_t sizes[] = {300};
  const hid_t space = H5Screate_simple(1, sizes, nullptr);
  const hid_t data =
      H5Dcreate2(opened, "v", H5T_STD_I32BE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
  std::vector<int> values(300);
  std::iota(values.begin(), values.end(), 1);
  H5Dwrite(data, H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
  H5Dclose(data);
  H5Sclose(space);
  H5Pclose(creation);
  EXPECT_GE(H5Fclose(opened), 0);
  const Variable v = variableOf(path, "v");
  EXPECT_EQ(fromStored(v), byLibnetcdf(v));
}

TEST_F(StoredValuesTest, VariableThatIsCalledAsADimensionOfOthersIsFound) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    writer.dimension("x", 4);
    const int y = writer.dimension("y", 2);
    writer.put<int>(writer.variable("x", NC_INT, {y, y}), {2, 2}, {1, 2, 3, 4});
  }
  const Variable x = variableOf(path, "x");
  EXPECT_EQ(fromStored(x), byLibnetcdf(x));
}

TEST_F(StoredValuesTest, FileThatThisProcessWritesIsLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  const Writer writer(path, NC_NETCDF4);
  const int x = writer.dimension("x", 3);
  writer.put<int>(writer.variable("v", NC_INT, {x}), {3}, {1, 2, 3});
  must(nc_sync(writer.root()));
  const auto source = std::make_shared<const Source>(path, OpenOptions());
  EXPECT_FALSE(source->plainFile().isOpen());
  EXPECT_EQ(storedValuesOf(variableOf(source, "v")), nullptr);
}

TEST_F(StoredValuesTest, BlocksOfPartsOfChunksAreLeftToLibnetcdf) {
  const Variable v = variable({NC_FLOAT, NC_ENDIAN_NATIVE, {3, 4}});
  const auto stored = storedValuesOf(v);
  std::vector<float> values(ROWS * COLUMNS);
  const auto isRead = [&](std::vector<unsigned long> start, std::vector<unsigned long> extent) {
    return stored->read(start.data(), extent.data(), values.data());
  };
  EXPECT_TRUE(isRead({4, 3}, {4, 3}));
  EXPECT_TRUE(isRead({8, 6}, {2, 1}));
  EXPECT_FALSE(isRead({1, 0}, {3, 3}));
  EXPECT_FALSE(isRead({0, 0}, {4, 2}));
  EXPECT_FALSE(isRead({0, 0}, {12, 3}));
}

TEST_F(StoredValuesTest, BlocksThatAreNotThereAreNotRead) {
  for (const std::vector<std::size_t>& chunks : {std::vector<std::size_t>{}, {7, 5}}) {
    const std::string path = m_scratch.path("a.nc");
    {
      const Writer writer(path, NC_NETCDF4);
      const std::vector<int> dimensions{writer.dimension("y", ROWS),
                                        writer.dimension("x", COLUMNS)};
      for (const char* name : {"v", "behind"}) {
        const int id = define(writer, name, dimensions, {NC_FLOAT, NC_ENDIAN_NATIVE, chunks});
        writer.put<float>(id, {ROWS, COLUMNS}, ramp<float>());
      }
    }
    const auto stored = storedValuesOf(variableOf(path, "v"));
    std::vector<float> values(2 * ROWS * COLUMNS);
    const auto isRead = [&](std::vector<unsigned long> start, std::vector<unsigned long> extent) {
      return stored->read(start.data(), extent.data(), values.data());
    };
    EXPECT_TRUE(isRead({0, 0}, {10, 7}));
    EXPECT_TRUE(isRead({5, 0}, {5, 7}));
    EXPECT_FALSE(isRead({0, 0}, {15, 7}));
    EXPECT_FALSE(isRead({0, 0}, {10, 8}));
    EXPECT_FALSE(isRead({5, 0}, {10, 7}));
    EXPECT_FALSE(isRead({0, 7}, {10, 7}));
  }
}

TEST_F(StoredValuesTest, BlocksThatOneOfTwoVariablesLacksAreNotTheSame) {
  const auto zeros = [&](const std::string& name, std::size_t count, const Storage& storage) {
    const std::string path = m_scratch.path(name);
    {
      const Writer writer(path, NC_NETCDF4);
      const int x = writer.dimension("x", count);
      const int v = define(writer, "v", {x}, storage);
      const int behind = define(writer, "behind", {x}, storage);
      const float zero = 0;
      must(nc_def_var_fill(writer.root(), v, NC_FILL, &zero));
      writer.put<float>(v, {count}, std::vector<float>(count));
      writer.put<float>(behind, {count}, std::vector<float>(count));
    }
    return variableOf(path, "v");
  };
  for (const Storage& storage : {Storage{NC_FLOAT}, Storage{NC_FLOAT, NC_ENDIAN_NATIVE, {2}}}) {
    const Variable shorter = zeros("a.nc", 5, storage);
    const Variable longer = zeros("b.nc", 6, storage);
    EXPECT_TRUE(holdSame(shorter, longer));
    EXPECT_FALSE(holdSame(longer, shorter));
    EXPECT_FALSE(storedValuesOf(shorter)->holdsSame(*storedValuesOf(longer), origin(longer).data(),
                                                    longer.shape.data()));
  }
  const Variable grid =
      variableOf(file("c.nc", {NC_FLOAT}, std::vector<float>(ROWS * COLUMNS)), "v");
  EXPECT_FALSE(holdSame(grid, zeros("d.nc", ROWS * COLUMNS, {NC_FLOAT})));
}

// Several threads unpack them, where the machine has them.
TEST_F(StoredValuesTest, LargeChunksAreReadAsByLibnetcdf) {
  constexpr std::size_t CHUNK = 1UL << 16U;
  const std::string path = m_scratch.path("a.nc");
  std::vector<float> values(4 * CHUNK - 1);
  std::iota(values.begin(), values.end(), 0.0F);
  {
    const Writer writer(path, NC_NETCDF4);
    const int v = define(writer, "v", {writer.dimension("x", values.size())},
                         {NC_FLOAT, NC_ENDIAN_BIG, {CHUNK}, 1, true});
    writer.put<float>(v, {values.size()}, values);
  }
  EXPECT_TRUE(fromStored(variableOf(path, "v")) == bytesOfAll(values));
}

TEST_F(StoredValuesTest, ArrayThatWasNeverWrittenHasItsFillValue) {
  for (const std::size_t count : {4UL, 5UL}) {
    const std::string path = m_scratch.path("a.nc");
    {
      const Writer writer(path, NC_NETCDF4);
      const int x = writer.dimension("x", count);
      const float fill = -7;
      const int v = define(writer, "v", {x}, {NC_FLOAT, NC_ENDIAN_BIG, {2}, 1});
      must(nc_def_var_fill(writer.root(), v, NC_FILL, &fill));
    }
    const Variable v = variableOf(path, "v");
    EXPECT_EQ(fromStored(v), byLibnetcdf(v));
  }
}

// They are unpacked to where they go, and a whole one is one run there.
TEST_F(StoredValuesTest, ChunksTakeNoMoreRoomThanTheirStoredBytes) {
  constexpr unsigned long BYTES = 1UL << 20U;
  using Extents = std::vector<std::size_t>;
  for (const auto& [extents, chunks] : {std::pair<Extents, Extents>{{4, 256, 256}, {4, 256, 256}},
                                        {{2, 1U << 17U}, {1, 1U << 16U}}}) {
    const std::string path = m_scratch.path("a.nc");
    std::vector<int> values(BYTES / sizeof(int));
    std::iota(values.begin(), values.end(), 0);
    {
      const Writer writer(path, NC_NETCDF4);
      std::vector<int> dimensions;
      for (const std::size_t extent : extents) {
        dimensions.push_back(writer.dimension("d" + std::to_string(dimensions.size()), extent));
      }
      const int v = define(writer, "v", dimensions, {NC_INT, NC_ENDIAN_NATIVE, chunks});
      writer.put<int>(v, extents, values);
    }
    const Variable v = variableOf(path, "v");
    const auto stored = storedValuesOf(v);
    const std::vector<int> expected = std::exchange(values, std::vector<int>(values.size()));
    const unsigned long before = ::test::requestedBytes();
    EXPECT_TRUE(stored->read(origin(v).data(), v.shape.data(), values.data()));
    EXPECT_LT(::test::requestedBytes() - before, BYTES + BYTES / 8);
    EXPECT_TRUE(values == expected);
  }
}

// They are more than are unpacked at a time.
TEST_F(StoredValuesTest, ChunksOfManyMebibytesAreReadOneByOne) {
  constexpr std::size_t CHUNK = (2UL << 20U) + 1;
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    const int x = writer.dimension("x", CHUNK + 1);
    const double fill = -7;
    const int v = define(writer, "v", {x}, {NC_DOUBLE, NC_ENDIAN_NATIVE, {CHUNK}, 1});
    must(nc_def_var_fill(writer.root(), v, NC_FILL, &fill));
  }
  EXPECT_TRUE(fromStored(variableOf(path, "v")) == bytesOfAll(std::vector<double>(CHUNK + 1, -7)));
}

TEST_F(StoredValuesTest, WhatIsMissingAmongWrittenValuesIsLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    const int t = writer.dimension("t", NC_UNLIMITED);
    const int x = writer.dimension("x", 4);
    const int v = define(writer, "v", {t, x}, {NC_FLOAT, NC_ENDIAN_BIG, {1, 2}, 1});
    const int shorter = define(writer, "shorter", {t}, {NC_FLOAT, NC_ENDIAN_BIG, {1}, 1});
    // Its one chunk has room for what is missing.
    const int part = define(writer, "part", {t, x}, {NC_FLOAT, NC_ENDIAN_BIG, {3, 4}, 1});
    const float value = 5;
    must(nc_enddef(writer.root()));
    must(nc_put_var1_float(writer.root(), v, std::vector<std::size_t>{2, 1}.data(), &value));
    must(nc_put_var1_float(writer.root(), shorter, std::vector<std::size_t>{0}.data(), &value));
    must(nc_put_var1_float(writer.root(), part, std::vector<std::size_t>{0, 0}.data(), &value));
  }
  EXPECT_EQ(fromStored(variableOf(path, "v")), "not known");
  EXPECT_EQ(fromStored(variableOf(path, "shorter")), "not known");
  EXPECT_EQ(fromStored(variableOf(path, "part")), "not known");
}

TEST_F(StoredValuesTest, WhatNobodyFilledIsLeftToLibnetcdf) {
  const std::string path = m_scratch.path("a.nc");
  {
    const Writer writer(path, NC_NETCDF4);
    const int x = writer.dimension("x", 4);
    const Storage storage{NC_FLOAT, NC_ENDIAN_NATIVE, {2}, 1};
    const int v = define(writer, "v", {x}, storage);
    must(nc_def_var_fill(writer.root(), v, NC_NOFILL, nullptr));
    must(nc_def_var_fill(writer.root(), define(writer, "never", {x}, storage), NC_NOFILL, nullptr));
    writer.put<float>(v, {1}, {5});
  }
  EXPECT_EQ(fromStored(variableOf(path, "v")), "not known");
  EXPECT_EQ(fromStored(variableOf(path, "never")), "not known");
}

TEST_F(StoredValuesTest, SameBytesInTheSameWayAreTheSame) {
  for (const Storage& storage :
       {Storage{NC_FLOAT, NC_ENDIAN_NATIVE, {}}, Storage{NC_FLOAT, NC_ENDIAN_NATIVE, {3, 4}},
        Storage{NC_FLOAT, NC_ENDIAN_BIG, {3, 4}, 6, true, true}}) {
    EXPECT_TRUE(areKnownToBeSame(storage, storage));
  }
}

TEST_F(StoredValuesTest, OneChangedValueIsNotTheSame) {
  for (const std::size_t place : {std::size_t{0}, ROWS * COLUMNS - 1}) {
    std::vector<float> changed = ramp<float>();
    changed[place] += 1;
    for (const Storage& storage :
         {Storage{NC_FLOAT, NC_ENDIAN_NATIVE, {}}, Storage{NC_FLOAT, NC_ENDIAN_NATIVE, {3, 4}},
          Storage{NC_FLOAT, NC_ENDIAN_BIG, {3, 4}, 6, true, true},
          Storage{NC_BYTE, NC_ENDIAN_NATIVE, {}}, Storage{NC_BYTE, NC_ENDIAN_NATIVE, {1, 1}}}) {
      EXPECT_FALSE(holdSame(variableOf(file("a.nc", storage), "v"),
                            variableOf(file("b.nc", storage, changed), "v")));
    }
  }
}

struct Pair {
  std::string name;
  Storage first;
  Storage second;
};

void PrintTo(const Pair& pair, std::ostream* stream) { *stream << pair.name; }

class DifferentStorageTest : public StoredValuesTest, public testing::WithParamInterface<Pair> {};

// All of the values are 0, so that the bytes are the same. They are not in chunks that reach beyond
// the array, where a fill value stands: each type has its own.
TEST_P(DifferentStorageTest, IsNotKnownToHoldTheSame) {
  const std::vector<float> zeros(ROWS * COLUMNS, 0);
  EXPECT_FALSE(holdSame(variableOf(file("a.nc", GetParam().first, zeros), "v"),
                        variableOf(file("b.nc", GetParam().second, zeros), "v")));
  EXPECT_FALSE(holdSame(variableOf(file("a.nc", GetParam().second, zeros), "v"),
                        variableOf(file("b.nc", GetParam().first, zeros), "v")));
}

INSTANTIATE_TEST_SUITE_P(
    All, DifferentStorageTest,
    testing::Values(
        Pair{"type of contiguous values", {NC_FLOAT}, {NC_INT}},
        Pair{"type of chunks", {NC_FLOAT, NC_ENDIAN_NATIVE, {7, 5}}, {NC_INT, 0, {7, 5}}},
        Pair{"sign", {NC_UINT, NC_ENDIAN_NATIVE, {7, 5}}, {NC_INT, 0, {7, 5}}},
        Pair{"order of contiguous values", {NC_INT, NC_ENDIAN_LITTLE}, {NC_INT, NC_ENDIAN_BIG}},
        Pair{"order", {NC_INT, NC_ENDIAN_LITTLE, {7, 5}}, {NC_INT, NC_ENDIAN_BIG, {7, 5}}},
        Pair{"chunks", {NC_INT, NC_ENDIAN_NATIVE, {3, 4}}, {NC_INT, NC_ENDIAN_NATIVE, {4, 3}}},
        Pair{"layout", {NC_INT, NC_ENDIAN_NATIVE, {7, 10}}, {NC_INT}},
        Pair{"shuffle", {NC_INT, 0, {3, 4}, 1, true}, {NC_INT, 0, {3, 4}, 1, false}},
        Pair{"deflate", {NC_INT, 0, {3, 4}, 1}, {NC_INT, 0, {3, 4}}},
        Pair{"checksum", {NC_INT, 0, {3, 4}, 1, false, true}, {NC_INT, 0, {3, 4}, 1}}));

TEST_F(StoredValuesTest, SameBytesOfWhichSomeWerePackedAreNotTheSame) {
  const auto chunk = [&](const std::string& name, std::uint32_t skipped) {
    const std::string path = m_scratch.path(name);
    {
      const Writer writer(path, NC_NETCDF4);
      define(writer, "v", {writer.dimension("x", 2)}, {NC_SHORT, 0, {2}, 0, true});
    }
    const Hdf5Object file(H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose);
    const Hdf5Object data(H5Dopen2(file.id(), "v", H5P_DEFAULT), H5Dclose);
    const hsize_t offset = 0;
    EXPECT_GE(H5Dwrite_chunk(data.id(), H5P_DEFAULT, skipped, &offset, 4, "abcd"), 0);
    return path;
  };
  const Variable shuffled = variableOf(chunk("a.nc", 0), "v");
  const Variable plain = variableOf(chunk("b.nc", 1), "v");
  EXPECT_EQ(fromStored(shuffled), "acbd");
  EXPECT_EQ(fromStored(plain), "abcd");
  EXPECT_FALSE(holdSame(shuffled, plain));
}

TEST_F(StoredValuesTest, ChunksThatWereNeverWrittenAreTheSameWithTheSameFillValue) {
  const auto unwritten = [&](const std::string& name, float fill) {
    const std::string path = m_scratch.path(name);
    const Writer writer(path, NC_NETCDF4);
    const int v = define(writer, "v", {writer.dimension("x", 4)}, {NC_FLOAT, 0, {2}, 1});
    must(nc_def_var_fill(writer.root(), v, NC_FILL, &fill));
    return path;
  };
  const Variable a = variableOf(unwritten("a.nc", 1), "v");
  EXPECT_TRUE(holdSame(a, variableOf(unwritten("b.nc", 1), "v")));
  EXPECT_FALSE(holdSame(a, variableOf(unwritten("c.nc", 2), "v")));
}

TEST_F(StoredValuesTest, ChunksThatWereWrittenAndOthersThatWereNotAreNotKnownToBeTheSame) {
  const auto chunks = [&](const std::string& name, const std::vector<std::size_t>& written) {
    const std::string path = m_scratch.path(name);
    {
      const Writer writer(path, NC_NETCDF4);
      const int v = define(writer, "v", {writer.dimension("x", 4)}, {NC_FLOAT, 0, {2}, 1});
      const float fill = 1;
      must(nc_def_var_fill(writer.root(), v, NC_FILL, &fill));
      must(nc_enddef(writer.root()));
      for (const std::size_t place : written) {
        must(nc_put_var1_float(writer.root(), v, &place, &fill));
      }
    }
    return variableOf(path, "v");
  };
  const Variable all = chunks("a.nc", {0, 2});
  EXPECT_TRUE(holdSame(all, chunks("b.nc", {0, 2})));
  for (const Variable& other : {chunks("c.nc", {}), chunks("d.nc", {0})}) {
    EXPECT_FALSE(holdSame(all, other));
    EXPECT_FALSE(holdSame(other, all));
  }
}

TEST_F(StoredValuesTest, PartsOfAChunkAreAsTheChunkIs) {
  const Storage storage{NC_FLOAT, 0, {7, 5}, 1};
  std::vector<float> changed = ramp<float>();
  changed.back() += 1;
  const Variable a = variableOf(file("a.nc", storage), "v");
  const Variable same = variableOf(file("b.nc", storage), "v");
  const Variable other = variableOf(file("c.nc", storage, changed), "v");
  const auto isSameAt = [&a](const Variable& second, unsigned long x) {
    const std::vector<unsigned long> start{x, 1};
    const std::vector<unsigned long> extent{2, 2};
    return storedValuesOf(a)->holdsSame(*storedValuesOf(second), start.data(), extent.data());
  };
  for (const unsigned long x : {0UL, 1UL, 5UL, 8UL}) {
    EXPECT_TRUE(isSameAt(same, x)) << x;
  }
  for (const unsigned long x : {0UL, 1UL, 5UL, 8UL}) {
    EXPECT_EQ(isSameAt(other, x), x < 4) << x;
  }
  for (const unsigned long x : {0UL, 1UL, 5UL, 8UL}) {
    EXPECT_TRUE(isSameAt(same, x)) << x;
    EXPECT_EQ(isSameAt(other, x), x < 4) << x;
  }
}

TEST_F(StoredValuesTest, PartsOfVeryManyChunksAreAsTheChunksAre) {
  constexpr std::size_t COUNT = 2 * 4098;
  const auto chunks = [&](const std::string& name, short last) {
    const std::string path = m_scratch.path(name);
    std::vector<short> values(COUNT, 1);
    values.back() = last;
    {
      const Writer writer(path, NC_NETCDF4);
      const int v = define(writer, "v", {writer.dimension("x", COUNT)}, {NC_SHORT, 0, {2}});
      writer.put<short>(v, {COUNT}, values);
    }
    return variableOf(path, "v");
  };
  const Variable a = chunks("a.nc", 1);
  const auto isSameUpTo = [&a](const Variable& second, unsigned long end) {
    const unsigned long start = 1;
    const unsigned long extent = end - start;
    return storedValuesOf(a)->holdsSame(*storedValuesOf(second), &start, &extent);
  };
  const Variable other = chunks("b.nc", 2);
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(isSameUpTo(other, COUNT - 3));
    EXPECT_FALSE(isSameUpTo(other, COUNT - 1));
  }
}

TEST_F(StoredValuesTest, DamagedChunkIsLeftToLibnetcdf) {
  const std::string path = file("a.nc", {NC_FLOAT, 0, {7, 10}, 6, false, true});
  const Variable v = variableOf(path, "v");
  const std::string sound = byLibnetcdf(v);
  std::string bytes = readBytes(path);
  const std::size_t place = bytes.find("\x78\x5e");  // where zlib's data begin at this level
  const std::size_t chunk = place == std::string::npos ? bytes.find("\x78\x9c") : place;
  ASSERT_NE(chunk, std::string::npos);
  bytes[chunk + 20] = static_cast<char>(bytes[chunk + 20] ^ 0x10);
  writeBytes(m_scratch.path("b.nc"), bytes);
  const Variable damaged = variableOf(m_scratch.path("b.nc"), "v");
  EXPECT_EQ(fromStored(damaged), "not known");
  EXPECT_FALSE(holdSame(v, damaged));
  std::vector<float> values(ROWS * COLUMNS);
  EXPECT_NE(errorOf([&] {
              damaged.read(origin(v).data(), v.shape.data(), values.data());
            }).find("variable '/v' cannot be read"),
            std::string::npos);
}

TEST_F(StoredValuesTest, ChunkThatNoFilterMadeIsLeftToLibnetcdf) {
  // Of fewer bytes than its values, and of more than they can become.
  for (const std::size_t bytes : {20UL, 400UL}) {
    for (const hsize_t column : {0UL, 6UL}) {
      const std::string path = file("a.nc", {NC_FLOAT, 0, {7, 6}, 6});
      {
        const Hdf5Object file(mustHdf5(H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT)), H5Fclose);
        const Hdf5Object data(mustHdf5(H5Dopen2(file.id(), "v", H5P_DEFAULT)), H5Dclose);
        const hsize_t offset[] = {0, column};
        mustHdf5(H5Dwrite_chunk(data.id(), H5P_DEFAULT, 0, offset, bytes,
                                std::string(bytes, 'x').data()));
      }
      EXPECT_EQ(fromStored(variableOf(path, "v")), "not known") << bytes << " " << column;
    }
  }
}

TEST_F(StoredValuesTest, NoRoomIsMadeForAChunkThatClaimsMoreBytesThanItsFileHas) {
  const std::string path = m_scratch.path("a.nc");
  const std::vector<int> values{1, 2, 3, 4, 5, 6, 7, 8};
  writeEight(path, values, [](hid_t creation) {
    H5Pset_chunk(creation, 1, &EIGHT);
    H5Pset_deflate(creation, 1);
  });
  EXPECT_EQ(fromStored(variableOf(path, "v")), bytesOfAll(values));
  std::string bytes = readBytes(path);
  const std::size_t index = bytes.find(std::string("TREE\1\0\1\0", 8));  // that of one chunk
  ASSERT_NE(index, std::string::npos);
  // How many bytes the chunk has stands behind the index's head.
  bytes.replace(index + 24, 4, std::string("\0\0\0\3", 4));
  writeBytes(path, bytes);
  const Variable v = variableOf(path, "v");
  EXPECT_NE(storedValuesOf(v), nullptr);
  const unsigned long before = ::test::requestedBytes();
  EXPECT_EQ(fromStored(v), "not known");
  EXPECT_LT(::test::requestedBytes() - before, 1UL << 20U);
}

// Random files, and random blocks of them.
RC_GTEST_FIXTURE_PROP(StoredValuesTest, ReadsNothingElseThanLibnetcdf, ()) {
  const int format = *rc::gen::element(NC_NETCDF4, NC_NETCDF4, NC_64BIT_DATA);
  const bool isHdf5 = format == NC_NETCDF4;
  const auto rank = *rc::gen::inRange<std::size_t>(1, 5);
  const auto shape =
      *rc::gen::container<std::vector<std::size_t>>(rank, rc::gen::inRange<std::size_t>(1, 9));
  Storage storage;
  storage.type = *rc::gen::element(NC_BYTE, NC_UBYTE, NC_SHORT, NC_USHORT, NC_INT, NC_UINT,
                                   NC_INT64, NC_UINT64, NC_FLOAT, NC_DOUBLE);
  storage.endian = *rc::gen::element(NC_ENDIAN_LITTLE, NC_ENDIAN_BIG);
  const bool isUnlimited = *rc::gen::arbitrary<bool>();
  const bool isChunked = isHdf5 && (isUnlimited || *rc::gen::arbitrary<bool>());
  if (isChunked) {
    for (const std::size_t extent : shape) {
      storage.chunks.push_back(*rc::gen::inRange<std::size_t>(1, extent + 1));
    }
    storage.level = *rc::gen::inRange(0, 10);
    storage.isShuffled = *rc::gen::arbitrary<bool>();
    storage.hasChecksum = *rc::gen::arbitrary<bool>();
  }
  const std::string path = m_scratch.path("random.nc");
  std::vector<std::size_t> start;
  std::vector<std::size_t> counts;
  {
    const Writer writer(path, format);
    std::vector<int> dimensions;
    for (std::size_t k = 0; k < rank; ++k) {
      const bool grows = k == 0 && isUnlimited;
      dimensions.push_back(
          writer.dimension("d" + std::to_string(k), grows ? NC_UNLIMITED : shape[k]));
      start.push_back(*rc::gen::inRange<std::size_t>(0, shape[k]));
      counts.push_back(*rc::gen::inRange<std::size_t>(1, shape[k] - start[k] + 1));
    }
    const int v = isHdf5 ? define(writer, "v", dimensions, storage)
                         : writer.variable("v", storage.type, dimensions);
    const int other = writer.variable("other", NC_SHORT, dimensions);
    must(nc_enddef(writer.root()));
    const std::size_t count =
        std::accumulate(counts.begin(), counts.end(), std::size_t{1}, std::multiplies<>());
    const auto values =
        *rc::gen::container<std::vector<signed char>>(count, rc::gen::arbitrary<signed char>());
    const std::vector<double> numbers(values.begin(), values.end());
    nc_put_vara_double(writer.root(), v, start.data(), counts.data(), numbers.data());
    nc_put_vara_double(writer.root(), other, start.data(), counts.data(), numbers.data());
  }
  std::vector<unsigned long> chunks(rank, 1);
  if (isChunked) {
    std::copy(storage.chunks.rbegin(), storage.chunks.rend(), chunks.begin());
  }
  const Variable v = variableOf(path, "v");
  const auto stored = storedValuesOf(v);
  RC_ASSERT(stored != nullptr);
  for (int round = 0; round < 4; ++round) {
    std::vector<unsigned long> first;
    std::vector<unsigned long> extent;
    bool isWritten = true;
    for (std::size_t k = 0; k < rank; ++k) {
      const unsigned long count = (v.shape[k] - 1) / chunks[k] + 1;
      const auto begin = *rc::gen::inRange<unsigned long>(0, count);
      const auto end = begin + *rc::gen::inRange<unsigned long>(1, count - begin + 1);
      first.push_back(begin * chunks[k]);
      extent.push_back(std::min(v.shape[k], end * chunks[k]) - first[k]);
      const std::size_t lastWritten = start[rank - 1 - k] + counts[rank - 1 - k] - 1;
      isWritten = isWritten && start[rank - 1 - k] / chunks[k] <= begin &&
                  lastWritten / chunks[k] >= end - 1;
    }
    const std::string expected = byLibnetcdf(v, first, extent);
    std::string values(expected.size(), 'x');
    const bool isRead = stored->read(first.data(), extent.data(), values.data());
    RC_CLASSIFY(isRead, "read");
    RC_ASSERT(isRead || (isChunked && !isWritten));
    RC_ASSERT(!isRead || values == expected);
    RC_ASSERT(stored->holdsSame(*stored, first.data(), extent.data()) == isRead);
  }
}

}  // namespace
}  // namespace quillon::netcdf
