#include <object_model/BulkValues.h>
#include <object_model/InvalidCall.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Values.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <ostream>
#include <utility>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using object_model::ElementType;
using testing::ElementsAre;

struct TypeCase {
  const char* rule;
  nc_type type;
  int mode;
  std::function<void(const Writer&, int)> put;
  ElementType elementType;
  object_model::StoredType storedType;
  std::vector<std::string> values;
};

void PrintTo(const TypeCase& c, std::ostream* os) { *os << c.rule; }

template <class Value>
TypeCase extremes(const char* rule, nc_type type, int mode, ElementType elementType,
                  const std::vector<std::string>& values) {
  return {rule,
          type,
          mode,
          [](const Writer& writer, int variable) {
            using Limits = std::numeric_limits<Value>;
            writer.put<Value>(variable, {3}, {Limits::lowest(), 1, Limits::max()});
          },
          elementType,
          memory::StoredTraits<Value>::TYPE,
          values};
}

class NumericTypeTest : public testing::TestWithParam<TypeCase> {};

TEST_P(NumericTypeTest, ReadsToTheLastDigit) {
  const Scratch scratch;
  {
    const Writer writer(scratch.path("a.nc"), GetParam().mode);
    const int v = writer.variable("v", GetParam().type, {writer.dimension("x", 3)});
    GetParam().put(writer, v);
  }
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(arrayAt(file, "v").getElementType(), GetParam().elementType);
  EXPECT_EQ(valuesOf(arrayAt(file, "v")), GetParam().values);
  const object_model::BulkValues* bulk = memory::bulkValuesOf(arrayAt(file, "v"));
  ASSERT_NE(bulk, nullptr);
  EXPECT_EQ(bulk->storedType(), GetParam().storedType);
  EXPECT_EQ(bulk->valuesInPlace().first, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Types, NumericTypeTest,
    testing::ValuesIn(std::vector<TypeCase>{
        extremes<signed char>("Byte", NC_BYTE, 0, ElementType::Int, {"-128", "1", "127"}),
        extremes<short>("Short", NC_SHORT, 0, ElementType::Int, {"-32768", "1", "32767"}),
        extremes<int>("Int", NC_INT, NC_64BIT_OFFSET, ElementType::Int,
                      {"-2147483648", "1", "2147483647"}),
        extremes<float>("Float", NC_FLOAT, 0, ElementType::Double,
                        {"-3.4028234663852886e+38", "1", "3.4028234663852886e+38"}),
        extremes<double>("Double", NC_DOUBLE, 0, ElementType::Double,
                         {"-1.7976931348623157e+308", "1", "1.7976931348623157e+308"}),
        extremes<unsigned char>("UByte", NC_UBYTE, NC_64BIT_DATA, ElementType::UInt,
                                {"0", "1", "255"}),
        extremes<unsigned short>("UShort", NC_USHORT, NC_64BIT_DATA, ElementType::UInt,
                                 {"0", "1", "65535"}),
        extremes<unsigned int>("UInt", NC_UINT, NC_64BIT_DATA, ElementType::UInt,
                               {"0", "1", "4294967295"}),
        extremes<long>("Int64Classic", NC_INT64, NC_64BIT_DATA, ElementType::Int,
                       {"-9223372036854775808", "1", "9223372036854775807"}),
        extremes<unsigned long>("UInt64Classic", NC_UINT64, NC_64BIT_DATA, ElementType::UInt,
                                {"0", "1", "18446744073709551615"}),
        extremes<long>("Int64Netcdf4", NC_INT64, NC_NETCDF4, ElementType::Int,
                       {"-9223372036854775808", "1", "9223372036854775807"}),
        extremes<unsigned long>("UInt64Netcdf4", NC_UINT64, NC_NETCDF4, ElementType::UInt,
                                {"0", "1", "18446744073709551615"}),
        extremes<float>("FloatNetcdf4", NC_FLOAT, NC_NETCDF4 | NC_CLASSIC_MODEL,
                        ElementType::Double,
                        {"-3.4028234663852886e+38", "1", "3.4028234663852886e+38"}),
    }),
    [](const auto& c) { return c.param.rule; });

class NumericArrayTest : public testing::Test {
 protected:
  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_F(NumericArrayTest, EnumerationIsReadAsItsIntegersWhereNothingIsDecoded) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    nc_type phase = 0;
    must(nc_def_enum(writer.root(), NC_USHORT, "phase", &phase));
    const unsigned short resting = 7;
    const unsigned short dividing = 60000;
    must(nc_insert_enum(writer.root(), phase, "resting", &resting));
    must(nc_insert_enum(writer.root(), phase, "dividing", &dividing));
    const int v = writer.variable("v", phase, {writer.dimension("x", 2)});
    writer.put<unsigned short>(v, {2}, {dividing, resting});
  }
  OpenOptions options;
  options.decode = false;
  const File file(m_path, options);
  EXPECT_EQ(arrayAt(file, "v").getElementType(), ElementType::UInt);
  EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("60000", "7"));
}

TEST_F(NumericArrayTest, ScalarHasOneValueAndNoDimensions) {
  for (const int mode : {0, NC_NETCDF4}) {
    {
      const Writer writer(m_path, mode);
      writer.put<double>(writer.variable("v", NC_DOUBLE, {}), {}, {2.5});
    }
    const File file(m_path);
    EXPECT_THAT(shapeOf(arrayAt(file, "v")), ElementsAre());
    EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("2.5"));
  }
}

TEST_F(NumericArrayTest, OtherAccessorsFail) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.variable("i", NC_INT, {});
    writer.variable("u", NC_UINT, {});
    writer.variable("d", NC_FLOAT, {});
  }
  const File file(m_path);
  const object_model::TupleX scalar(0UL);
  EXPECT_THROW(arrayAt(file, "i").getValueAsDouble(scalar), object_model::InvalidCall);
  EXPECT_THROW(arrayAt(file, "i").getValueAsUInt(scalar), object_model::InvalidCall);
  EXPECT_THROW(arrayAt(file, "u").getValueAsInt(scalar), object_model::InvalidCall);
  EXPECT_THROW(arrayAt(file, "d").getValueAsInt(scalar), object_model::InvalidCall);
  EXPECT_THROW(arrayAt(file, "d").getValueAsString(scalar), object_model::InvalidCall);
}

TEST_F(NumericArrayTest, PositionOutsideTheShapeFails) {
  {
    const Writer writer(m_path, 0);
    writer.variable("v", NC_INT, {writer.dimension("x", 3)});
  }
  object_model::TupleX index(1);
  index[0] = 3;
  EXPECT_THROW(arrayAt(File(m_path), "v").getValueAsInt(index), std::out_of_range);
}

TEST_F(NumericArrayTest, ExceptionOfTheListenerPassesAndTheValueCanBeReadAgain) {
  {
    const Writer writer(m_path, 0);
    writer.put<int>(writer.variable("v", NC_INT, {}), {}, {5});
  }
  bool isTired = true;
  OpenOptions options;
  options.onRead = [&](unsigned long) {
    if (isTired) {
      throw std::length_error("enough");
    }
  };
  const File file(m_path, options);
  EXPECT_THROW(valuesOf(arrayAt(file, "v")), std::length_error);
  isTired = false;
  EXPECT_THAT(valuesOf(arrayAt(file, "v")), ElementsAre("5"));
}

/// An array of the stored values 0, 1, 2, … in storage order, three-dimensional.
class BulkTest : public NumericArrayTest {
 protected:
  void write(int mode, const std::vector<std::size_t>& chunks = {}) const {
    std::vector<short> values(4 * 3 * 5);
    std::iota(values.begin(), values.end(), static_cast<short>(0));
    const Writer writer(m_path, mode);
    const int z = writer.dimension("z", 4);
    const int y = writer.dimension("y", 3);
    const int v = writer.variable("v", NC_SHORT, {z, y, writer.dimension("x", 5)});
    if (!chunks.empty()) {
      must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, chunks.data()));
    }
    writer.put<short>(v, {4, 3, 5}, values);
  }
};

const object_model::BulkValues& bulkAt(const File& file, const std::string& path) {
  return *memory::bulkValuesOf(arrayAt(file, path));
}

TEST_F(BulkTest, BlockOfValuesComesInStorageOrder) {
  for (const int mode : {0, NC_64BIT_DATA, NC_NETCDF4}) {
    write(mode);
    const File file(m_path);
    const unsigned long start[] = {1, 0, 2};
    const unsigned long extent[] = {3, 2, 2};
    std::vector<short> values(12);
    bulkAt(file, "v").readValues(start, extent, values.data());
    EXPECT_THAT(values, ElementsAre(31, 32, 33, 36, 37, 38, 46, 47, 48, 51, 52, 53));
  }
}

TEST_F(BulkTest, AnyBlockHasTheAccessorsValues) {
  write(NC_NETCDF4, {3, 2, 4});
  OpenOptions options;
  options.windowBytes = 20;
  const File file(m_path, options);
  const memory::ArrayBase& array = arrayAt(file, "v");
  const memory::BlockLayout layout(array, 7);
  for (unsigned long offset = 0; offset < layout.size();) {
    const memory::Block block = layout.blockAt(offset);
    std::vector<long> values(block.count);
    memory::copyValues(array, block, values.data());
    for (const long value : values) {
      EXPECT_EQ(value, static_cast<long>(offset));
      ++offset;
    }
  }
}

TEST_F(BulkTest, EachReadIsReportedAndLeavesTheWindow) {
  write(0);
  std::vector<unsigned long> reads;
  const File file(m_path, countingReads(10, reads));
  const unsigned long start[] = {0, 2, 3};
  const unsigned long extent[] = {5, 1, 1};
  std::vector<short> values(5);
  arrayAt(file, "v").getValueAsInt(object_model::TupleX(3));
  bulkAt(file, "v").readValues(start, extent, values.data());
  arrayAt(file, "v").getValueAsInt(object_model::TupleX(3));
  EXPECT_THAT(reads, ElementsAre(10, 10));
}

TEST_F(BulkTest, ScalarIsABlockWithoutDimensions) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.put<double>(writer.variable("v", NC_DOUBLE, {}), {}, {2.5});
  }
  const File file(m_path);
  double value = 0;
  bulkAt(file, "v").readValues(nullptr, nullptr, &value);
  EXPECT_EQ(value, 2.5);
}

TEST_F(BulkTest, ChunkExtentsBeginWithDimensionZero) {
  write(NC_NETCDF4, {3, 2, 4});
  const File file(m_path);
  const unsigned long* chunks = bulkAt(file, "v").chunkExtents();
  ASSERT_NE(chunks, nullptr);
  EXPECT_THAT(std::vector<unsigned long>(chunks, chunks + 3), ElementsAre(4, 2, 3));
}

TEST_F(BulkTest, ChunksMayBeOneLong) {
  write(NC_NETCDF4, {1, 3, 1});
  const File file(m_path);
  const unsigned long* chunks = bulkAt(file, "v").chunkExtents();
  ASSERT_NE(chunks, nullptr);
  EXPECT_THAT(std::vector<unsigned long>(chunks, chunks + 3), ElementsAre(1, 3, 1));
}

TEST_F(BulkTest, ThereAreNoChunksWhereValuesStandInOnePiece) {
  for (const int mode : {0, NC_NETCDF4}) {
    write(mode);
    EXPECT_EQ(bulkAt(File(m_path), "v").chunkExtents(), nullptr);
  }
}

TEST_F(BulkTest, ExceptionOfTheListenerPasses) {
  write(0);
  OpenOptions options;
  options.onRead = [](unsigned long) { throw std::length_error("enough"); };
  const File file(m_path, options);
  const unsigned long position[] = {0, 0, 0};
  const unsigned long one[] = {1, 1, 1};
  short value = 0;
  EXPECT_THROW(bulkAt(file, "v").readValues(position, one, &value), std::length_error);
}

TEST_F(BulkTest, ListenerMayReadAndOpen) {
  write(0);
  const File* opened = nullptr;
  std::vector<long> found;
  bool isFirst = true;
  OpenOptions options;
  options.windowBytes = 10;
  options.onRead = [&](unsigned long) {
    if (opened != nullptr && std::exchange(isFirst, false)) {
      found.push_back(arrayAt(*opened, "v").getValueAsInt(object_model::TupleX(3)));
      found.push_back(static_cast<long>(arrayAt(File(m_path), "v").numberOfElements()));
    }
  };
  const File file(m_path, options);
  opened = &file;
  object_model::TupleX last(3);
  last[2] = 3;
  EXPECT_EQ(arrayAt(file, "v").getValueAsInt(last), 45);
  EXPECT_THAT(found, ElementsAre(0, 60));
}

TEST_F(BulkTest, ValuesAreMissingAsTheOthersAre) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.put<float>(writer.variable("v", NC_FLOAT, {writer.dimension("x", 2)}), {2},
                      {NC_FILL_FLOAT, 1});
  }
  const File file(m_path);
  std::vector<float> values(2);
  memory::copyValues(arrayAt(file, "v"), memory::BlockLayout({2}, 2).blockAt(0), values.data());
  EXPECT_THAT(values, ElementsAre(testing::IsNan(), 1));
}

TEST_F(NumericArrayTest, WindowsEndAtChunks) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int v = writer.variable("v", NC_BYTE, {writer.dimension("x", 10)});
    const std::size_t chunk = 4;
    must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, &chunk));
    writer.put<signed char>(v, {10}, std::vector<signed char>(10, 1));
  }
  std::vector<unsigned long> reads;
  valuesOf(arrayAt(File(m_path, countingReads(5, reads)), "v"));
  EXPECT_THAT(reads, ElementsAre(4, 4, 2));
}

TEST_F(NumericArrayTest, WindowBeyondAllMemoryIsAnError) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    // More than a vector takes: the address sanitizer ends a process that asks for less in vain.
    writer.variable("grid", NC_SHORT,
                    {writer.dimension("y", 1UL << 31U), writer.dimension("x", 1UL << 31U)});
  }
  OpenOptions options;
  options.windowBytes = std::numeric_limits<std::size_t>::max();
  const File file(m_path, options);
  EXPECT_EQ(errorOf([&] { arrayAt(file, "grid").getValueAsInt(object_model::TupleX(2)); }),
            "Cannot read '" + m_path +
                "': variable '/grid' cannot be read: there is no memory for "
                "4611686018427387904 values at a time");
}

struct MissingCase {
  const char* rule;
  nc_type type;
  std::vector<std::pair<const char*, std::vector<double>>> attributes;
  std::vector<double> stored;
  std::vector<std::string> read;
};

void PrintTo(const MissingCase& c, std::ostream* os) { *os << c.rule; }

class MissingValueTest : public testing::TestWithParam<MissingCase> {
 protected:
  // `_FillValue` must be of the variable's type; `missing_value` is stored as double throughout.
  std::vector<std::string> read(bool decode) const {
    const std::string path = m_scratch.path("a.nc");
    const MissingCase& c = GetParam();
    {
      const Writer writer(path, NC_NETCDF4);
      const int v = writer.variable("v", c.type, {writer.dimension("x", c.stored.size())});
      for (const auto& [name, values] : c.attributes) {
        const nc_type type = std::string(name) == "_FillValue" ? c.type : NC_DOUBLE;
        must(nc_put_att_double(writer.root(), v, name, type, values.size(), values.data()));
      }
      nc_enddef(writer.root());
      must(nc_put_var_double(writer.root(), v, c.stored.data()));
    }
    OpenOptions options;
    options.decode = decode;
    return valuesOf(arrayAt(File(path, options), "v"));
  }

 private:
  Scratch m_scratch;
};

TEST_P(MissingValueTest, ReadsAsNaNWhenDecoded) { EXPECT_EQ(read(true), GetParam().read); }

TEST_P(MissingValueTest, ReadsAsStoredOtherwise) {
  for (const std::string& value : read(false)) {
    EXPECT_NE(value, "nan");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, MissingValueTest,
    testing::ValuesIn(std::vector<MissingCase>{
        {"FillValueOfFloat", NC_FLOAT, {{"_FillValue", {-1e34}}}, {1, -1e34}, {"1", "nan"}},
        {"FillValueOfDouble", NC_DOUBLE, {{"_FillValue", {-99}}}, {-99, 2}, {"nan", "2"}},
        {"MissingValueIsTakenInTheVariablesType",
         NC_FLOAT,
         {{"missing_value", {-1e34}}},
         {1, -1e34},
         {"1", "nan"}},
        {"AllOfSeveralMissingValues",
         NC_DOUBLE,
         {{"missing_value", {-1, -2}}},
         {-1, -2, -3},
         {"nan", "nan", "-3"}},
        {"FillValueAndMissingValue",
         NC_DOUBLE,
         {{"_FillValue", {-9}}, {"missing_value", {-8}}},
         {-9, -8, -7},
         {"nan", "nan", "-7"}},
        {"DefaultOfFloat", NC_FLOAT, {}, {static_cast<double>(NC_FILL_FLOAT), 1}, {"nan", "1"}},
        {"DefaultOfDouble", NC_DOUBLE, {}, {NC_FILL_DOUBLE, 1}, {"nan", "1"}},
        {"DefaultStaysBesideAMissingValue",
         NC_DOUBLE,
         {{"missing_value", {-8}}},
         {NC_FILL_DOUBLE, -8},
         {"nan", "nan"}},
        {"DefaultIsAValueWhenThereIsAFillValue",
         NC_DOUBLE,
         {{"_FillValue", {-9}}},
         {NC_FILL_DOUBLE, -9},
         {"9.969209968386869e+36", "nan"}},
        {"MissingValueThatTheTypeCannotHoldIsNone",
         NC_FLOAT,
         {{"missing_value", {1e300}}},
         {1, 2},
         {"1", "2"}},
    }),
    [](const auto& c) { return c.param.rule; });

}  // namespace
}  // namespace quillon::netcdf
