#include <object_model/InvalidCall.h>
#include <quillon/netcdf/StoredValues.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <ostream>

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

TEST_F(NumericArrayTest, EnumerationIsReadAsItsIntegers) {
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
  const File file(m_path);
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

TEST_F(NumericArrayTest, PackedValuesAreLeftAsTheyAreStored) {
  {
    const Writer writer(m_path, 0);
    const int v = writer.variable("v", NC_SHORT, {});
    const double factor = 0.01;
    must(nc_put_att_double(writer.root(), v, "scale_factor", NC_DOUBLE, 1, &factor));
    writer.put<short>(v, {}, {1234});
  }
  EXPECT_THAT(valuesOf(arrayAt(File(m_path), "v")), ElementsAre("1234"));
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

/// The array's values as they come in bulk; `lengths` is told how many came at a time.
template <class Stored>
std::vector<Stored> inBulk(const memory::ArrayBase& array, std::vector<unsigned long>& lengths) {
  const auto& stored = dynamic_cast<const StoredValues<Stored>&>(array);
  std::vector<Stored> values;
  Run<Stored> run;
  while (values.size() < array.numberOfElements()) {
    stored.readAround(values.size(), run);
    EXPECT_EQ(run.first, values.size());
    values.insert(values.end(), run.values.begin(), run.values.end());
    lengths.push_back(run.values.size());
  }
  return values;
}

TEST_F(NumericArrayTest, ValuesComeInBulkAsTheyAreStored) {
  std::vector<short> values(3 * 200'000);
  std::iota(values.begin(), values.end(), static_cast<short>(0));
  {
    const Writer writer(m_path, 0);
    const int y = writer.dimension("y", 3);
    const int v = writer.variable("v", NC_SHORT, {y, writer.dimension("x", 200'000)});
    writer.put<short>(v, {3, 200'000}, values);
  }
  std::vector<unsigned long> lengths;
  EXPECT_EQ(inBulk<short>(arrayAt(File(m_path), "v"), lengths), values);
  EXPECT_THAT(lengths, ElementsAre(400'000, 200'000));  // as many rows as a mebibyte holds
}

TEST_F(NumericArrayTest, ChunksComeInBulkAsAWhole) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    const int y = writer.dimension("y", 5);
    const int v = writer.variable("v", NC_DOUBLE, {y, writer.dimension("x", 200'000)});
    const std::size_t chunks[] = {2, 1000};
    must(nc_def_var_chunking(writer.root(), v, NC_CHUNKED, chunks));
    writer.put<double>(v, {5, 200'000}, std::vector<double>(1'000'000, 1.5));
  }
  OpenOptions options;
  options.windowBytes = 8000;
  std::vector<unsigned long> lengths;
  inBulk<double>(arrayAt(File(m_path, options), "v"), lengths);
  EXPECT_THAT(lengths, ElementsAre(400'000, 400'000, 200'000));
}

TEST_F(NumericArrayTest, ValuesInBulkAreMissingAsTheOthersAre) {
  {
    const Writer writer(m_path, NC_NETCDF4);
    writer.put<float>(writer.variable("v", NC_FLOAT, {writer.dimension("x", 2)}), {2},
                      {NC_FILL_FLOAT, 1});
  }
  OpenOptions options;
  options.missingAsNaN = true;
  std::vector<unsigned long> lengths;
  const std::vector<float> values = inBulk<float>(arrayAt(File(m_path, options), "v"), lengths);
  EXPECT_THAT(values, ElementsAre(testing::IsNan(), 1));
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
  std::vector<std::string> read(bool missingAsNaN) const {
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
    options.missingAsNaN = missingAsNaN;
    return valuesOf(arrayAt(File(path, options), "v"));
  }

 private:
  Scratch m_scratch;
};

TEST_P(MissingValueTest, ReadsAsNaNWhenAsked) { EXPECT_EQ(read(true), GetParam().read); }

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
        {"IntegersStayAsTheyAre", NC_INT, {{"_FillValue", {-9}}}, {-9, 1}, {"-9", "1"}},
    }),
    [](const auto& c) { return c.param.rule; });

}  // namespace
}  // namespace quillon::netcdf
