#include <quillon/memory/NumberText.h>
#include <quillon/memory/Time.h>
#include <quillon/memory/Values.h>

#include <algorithm>
#include <numeric>
#include <ostream>

#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

using testing::ElementsAre;

/// The name of the type in which the values are kept, and each in the shortest text of that type.
std::vector<std::string> bulkOf(const memory::ArrayBase& array) {
  const object_model::BulkValues& bulk = *memory::bulkValuesOf(array);
  std::vector<std::string> texts = {memory::nameOf(bulk.storedType())};
  memory::visitStoredType(bulk.storedType(), [&](auto tag) {
    using Stored = typename decltype(tag)::Type;
    if constexpr (std::is_arithmetic_v<Stored> && !std::is_same_v<Stored, bool>) {
      std::vector<Stored> values(array.numberOfElements());
      const memory::BlockLayout layout(array, values.size());
      memory::copyValues(array, layout.blockAt(0), values.data());
      for (const Stored value : values) {
        texts.push_back(memory::shortestText(value));
      }
    }
  });
  return texts;
}

struct DecodingCase {
  const char* rule;
  std::string type;
  std::string attributes;  // CDL, of the variable v
  std::string data;
  std::vector<std::string> decoded;  // the stored type, then the values
};

void PrintTo(const DecodingCase& c, std::ostream* os) { *os << c.rule; }

class DecodingTest : public testing::TestWithParam<DecodingCase> {
 protected:
  DecodingTest() {
    const DecodingCase& c = GetParam();
    const auto count = std::count(c.data.begin(), c.data.end(), ',') + 1;
    writeCdl(m_path, "dimensions: x = " + std::to_string(count) + "; variables: " + c.type +
                         " v(x); " + c.attributes + " data: v = " + c.data + ";");
  }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a.nc");
};

TEST_P(DecodingTest, GivesTheValuesInBulk) {
  EXPECT_EQ(bulkOf(arrayAt(File(m_path), "v")), GetParam().decoded);
}

TEST_P(DecodingTest, GivesTheSameByAccessorInWindowsOfAnySize) {
  for (const std::size_t bytes : {1UL, 9UL, 1000UL}) {
    OpenOptions options;
    options.windowBytes = bytes;
    const File file(m_path, options);
    const memory::ArrayBase& array = arrayAt(file, "v");
    const std::vector<std::string> decoded(GetParam().decoded.begin() + 1,
                                           GetParam().decoded.end());
    std::vector<std::string> values;
    object_model::TupleX index(1);
    for (index[0] = 0; index[0] < array.numberOfElements(); ++index[0]) {
      const bool isFloat = GetParam().decoded[0] == "float32";
      switch (array.getElementType()) {
        case object_model::ElementType::Int:
          values.push_back(memory::shortestText(array.getValueAsInt(index)));
          break;
        case object_model::ElementType::UInt:
          values.push_back(memory::shortestText(array.getValueAsUInt(index)));
          break;
        default:
          values.push_back(
              isFloat ? memory::shortestText(static_cast<float>(array.getValueAsDouble(index)))
                      : memory::shortestText(array.getValueAsDouble(index)));
      }
    }
    EXPECT_EQ(values, decoded);
  }
}

TEST_P(DecodingTest, LeavesAllAsItIsStoredWhereNothingIsDecoded) {
  OpenOptions options;
  options.decode = false;
  const File file(m_path, options);
  const std::map<std::string, std::string> types = {
      {"byte", "int8"},     {"ubyte", "uint8"},   {"short", "int16"}, {"ushort", "uint16"},
      {"int", "int32"},     {"uint", "uint32"},   {"int64", "int64"}, {"uint64", "uint64"},
      {"float", "float32"}, {"double", "float64"}};
  EXPECT_EQ(bulkOf(arrayAt(file, "v"))[0], types.at(GetParam().type));
}

std::string nameOf(const testing::TestParamInfo<DecodingCase>& c) { return c.param.rule; }

INSTANTIATE_TEST_SUITE_P(
    Packing, DecodingTest,
    testing::ValuesIn(std::vector<DecodingCase>{
        {"ScaleAndOffsetInDouble",
         "short",
         "v:scale_factor = 0.01; v:add_offset = 273.15;",
         "0, 100, -32768",
         {"float64", "273.15", "274.15", "-54.53000000000003"}},
        {"ScaleAlone", "int", "v:scale_factor = 0.5;", "3, -3", {"float64", "1.5", "-1.5"}},
        {"OffsetAlone", "byte", "v:add_offset = 10.;", "1, -1", {"float64", "11", "9"}},
        {"FloatAttributesMakeFloatOf16Bits",
         "short",
         "v:scale_factor = 0.1f; v:add_offset = 1.f;",
         "1, 2",
         {"float32", "1.1", "1.2"}},
        {"FloatScaleAloneMakesFloat",
         "ubyte",
         "v:scale_factor = 0.1f;",
         "1, 255",
         {"float32", "0.1", "25.5"}},
        {"FloatAttributesMakeDoubleOf32Bits",
         "int",
         "v:scale_factor = 0.5f; v:add_offset = 1.f;",
         "16777217, 2",
         {"float64", "8388609.5", "2"}},
        {"OneDoubleAttributeMakesDouble",
         "short",
         "v:scale_factor = 0.5f; v:add_offset = 1.;",
         "1, 2",
         {"float64", "1.5", "2"}},
        {"IntegerAttributesMakeDouble",
         "short",
         "v:scale_factor = 2s;",
         "1, 2",
         {"float64", "2", "4"}},
        {"FloatStaysFloat", "float", "v:scale_factor = 2.f;", "1.25, 2", {"float32", "2.5", "4"}},
        {"FloatWithDoubleScaleIsDouble",
         "float",
         "v:scale_factor = 2.;",
         "1.25, 2",
         {"float64", "2.5", "4"}},
        {"DoubleStaysDouble",
         "double",
         "v:scale_factor = 2.f;",
         "1.25, 2",
         {"float64", "2.5", "4"}},
        {"Int64IsDoubleWhenPacked",
         "int64",
         "v:add_offset = 0.5;",
         "1, -2",
         {"float64", "1.5", "-1.5"}},
        {"UnsignedOf16Bits",
         "ushort",
         "v:scale_factor = 0.5;",
         "65535, 1",
         {"float64", "32767.5", "0.5"}},
        {"UnsignedOf32Bits",
         "uint",
         "v:scale_factor = 0.5;",
         "4294967295, 1",
         {"float64", "2147483647.5", "0.5"}},
        {"UnsignedOf64Bits",
         "uint64",
         "v:scale_factor = 0.5;",
         "9223372036854775808, 1",
         {"float64", "4611686018427387904", "0.5"}},
        {"FloatOfUnsigned16Bits",
         "ushort",
         "v:scale_factor = 0.5f;",
         "65535, 1",
         {"float32", "32767.5", "0.5"}},
        {"TextIsNoScale", "short", "v:scale_factor = \"0.1\";", "1, 2", {"int16", "1", "2"}},
        {"SeveralNumbersAreNoScale",
         "short",
         "v:scale_factor = 1., 2.;",
         "1, 2",
         {"int16", "1", "2"}},
    }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Missing, DecodingTest,
    testing::ValuesIn(std::vector<DecodingCase>{
        {"FillValueOfShortMakesFloat",
         "short",
         "v:_FillValue = -9s;",
         "1, -9",
         {"float32", "1", "nan"}},
        {"FillValueOfIntMakesDouble",
         "int",
         "v:_FillValue = -9;",
         "16777217, -9",
         {"float64", "16777217", "nan"}},
        {"MissingValueOfInt", "int", "v:missing_value = -9;", "1, -9", {"float64", "1", "nan"}},
        {"MissingValuesOfAnotherType",
         "short",
         "v:missing_value = -9., 7.5, 1e9;",
         "-9, 7",
         {"float32", "nan", "7"}},
        {"TheLowestNumberOfTheType",
         "short",
         "v:missing_value = -32768.;",
         "-32768, 7",
         {"float32", "nan", "7"}},
        {"ANumberBelowTheTypeIsPassedOver",
         "short",
         "v:missing_value = -32769., 7.;",
         "-32768, 32767, 7",
         {"float32", "-32768", "32767", "nan"}},
        {"ANumberAboveTheTypeIsPassedOver",
         "short",
         "v:missing_value = 32768., 7.;",
         "-32768, 32767, 7",
         {"float32", "-32768", "32767", "nan"}},
        {"BothAreMissing",
         "short",
         "v:_FillValue = 1s; v:missing_value = 2s, 3s;",
         "1, 2, 3, 4",
         {"float32", "nan", "nan", "nan", "4"}},
        {"ComparedAsStored",
         "short",
         "v:_FillValue = 5s; v:scale_factor = 0.5;",
         "5, 10",
         {"float64", "nan", "5"}},
        {"Int64WithoutPackingStays",
         "int64",
         "v:_FillValue = -9LL;",
         "-9, 9007199254740993",
         {"int64", "-9", "9007199254740993"}},
        {"UInt64WithoutPackingStays",
         "uint64",
         "v:missing_value = 3ULL;",
         "18446744073709551615, 3",
         {"uint64", "18446744073709551615", "3"}},
        {"Int64WithPackingIsMissing",
         "int64",
         "v:_FillValue = -9LL; v:scale_factor = 2.;",
         "-9, 1",
         {"float64", "nan", "2"}},
        {"FloatFill", "float", "v:_FillValue = -1e34f;", "1, -1e34", {"float32", "1", "nan"}},
        {"FloatMissingOfDouble",
         "float",
         "v:missing_value = 0.1;",
         "0.1, 0.2",
         {"float32", "nan", "0.2"}},
        {"DoublesNextToTheFillValueAreValues",
         "double",
         "v:_FillValue = 1e20;",
         "1e20, 1.0000000000000002e20, 9.999999999999998e19",
         {"float64", "nan", "100000000000000016384", "99999999999999983616"}},
        {"NoFloatIsMissingForANumberBeyondFloats",
         "float",
         "v:missing_value = 1e300, -1e300;",
         "1, Infinityf, -Infinityf",
         {"float32", "1", "inf", "-inf"}},
        {"DefaultFillOfFloat", "float", "", "1, _", {"float32", "1", "nan"}},
        {"ZerosKeepTheirSigns", "float", "", "-0.0, 0.0, _", {"float32", "-0", "0", "nan"}},
        {"DefaultFillOfDouble", "double", "", "_, 1", {"float64", "nan", "1"}},
        {"DefaultFillIsAValueBesideAFillValue",
         "double",
         "v:_FillValue = 1.;",
         "9.969209968386869e+36, 1",
         {"float64", "9.969209968386869e+36", "nan"}},
        {"DefaultFillOfIntegersIsAValue",
         "int",
         "",
         "-2147483647, 1",
         {"int32", "-2147483647", "1"}},
        {"IntegersStayExact", "int", "", "1, -2", {"int32", "1", "-2"}},
        {"ValidRangeIsNotApplied",
         "short",
         "v:valid_range = 0s, 1s; v:valid_min = 0s;",
         "-5, 5",
         {"int16", "-5", "5"}},
        {"NaNIsMissingAnyway", "float", "v:_FillValue = NaNf;", "NaN, 1", {"float32", "nan", "1"}},
        {"InfinityMayBeMissing",
         "float",
         "v:missing_value = Infinity;",
         "1, Infinityf, -Infinityf",
         {"float32", "1", "nan", "-inf"}},
        {"NumberBehindTheGreatestIsNotTheLeast",
         "short",
         "v:missing_value = 32768.;",
         "-32768, 32767",
         {"float32", "-32768", "32767"}},
        {"NumberWithoutSignIsNotTheNegativeOfItsBits",
         "byte",
         "v:missing_value = 255UB;",
         "-1, 1",
         {"float32", "-1", "1"}},
        {"UnpackedValueThatIsTheFillValueIsAValue",
         "float",
         "v:scale_factor = 2.f; v:_FillValue = 4.f;",
         "2, 4",
         {"float32", "4", "nan"}},
        {"TextIsNoMissingValue", "short", "v:missing_value = \"1\";", "1, 2", {"int16", "1", "2"}},
        {"ZeroAsAFractionOfATypeWithoutSign",
         "ubyte",
         "v:missing_value = 0., -1.;",
         "0, 255, 1",
         {"float32", "nan", "255", "1"}},
        {"ZeroOfAnotherTypeOfIntegers",
         "short",
         "v:missing_value = 0;",
         "0, 1",
         {"float32", "nan", "1"}},
        {"TextsAreNoMissingValues",
         "short",
         "string v:missing_value = \"1\", \"2\";",
         "1, 2",
         {"int16", "1", "2"}},
    }),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Unsigned, DecodingTest,
    testing::ValuesIn(std::vector<DecodingCase>{
        {"Byte", "byte", "v:_Unsigned = \"true\";", "-1, 1", {"uint8", "255", "1"}},
        {"Short", "short", "v:_Unsigned = \"true\";", "-1, 1", {"uint16", "65535", "1"}},
        {"Int", "int", "v:_Unsigned = \"true\";", "-1, 1", {"uint32", "4294967295", "1"}},
        {"Int64Stays", "int64", "v:_Unsigned = \"true\";", "-1, 1", {"int64", "-1", "1"}},
        {"FillValueIsTakenSo",
         "byte",
         "v:_Unsigned = \"true\"; v:_FillValue = -1b;",
         "-1, -2",
         {"float32", "nan", "254"}},
        {"MissingValueMayBeWider",
         "byte",
         "v:_Unsigned = \"true\"; v:missing_value = 255s;",
         "-1, -2",
         {"float32", "nan", "254"}},
        {"NegativeMissingValueIsWiderForNone",
         "byte",
         "v:_Unsigned = \"true\"; v:missing_value = -1s;",
         "-1, -2",
         {"float32", "255", "254"}},
        {"SpelledWithACapital", "byte", "v:_Unsigned = \"True\";", "-1, 1", {"uint8", "255", "1"}},
        {"PackedAfterIt",
         "byte",
         "v:_Unsigned = \"true\"; v:scale_factor = 0.5;",
         "-1, 1",
         {"float64", "127.5", "0.5"}},
        {"False", "ubyte", "v:_Unsigned = \"false\";", "255, 1", {"int8", "-1", "1"}},
        {"FalseOfSigned", "byte", "v:_Unsigned = \"false\";", "-1, 1", {"int8", "-1", "1"}},
    }),
    nameOf);

// More values than are decoded at a time. The missing one has the bits that some builds set what
// was not set to.
TEST(DecodedValues, AreWrittenWhereTheyBelongAndNotBehindThem) {
  constexpr std::size_t COUNT = 5000;
  constexpr short MISSING = -0x5556;
  const Scratch scratch;
  std::vector<short> stored(COUNT);
  std::iota(stored.begin(), stored.end(), short{0});
  {
    const Writer writer(scratch.path("a.nc"), NC_NETCDF4);
    const int v = writer.variable("v", NC_SHORT, {writer.dimension("x", COUNT)});
    const double scale = 0.5;
    must(nc_put_att_double(writer.root(), v, "scale_factor", NC_DOUBLE, 1, &scale));
    must(nc_put_att_short(writer.root(), v, "missing_value", NC_SHORT, 1, &MISSING));
    writer.put<short>(v, {COUNT}, stored);
  }
  const File file(scratch.path("a.nc"));
  std::vector<double> values(2 * COUNT, -1);
  const unsigned long start = 0;
  const unsigned long extent = COUNT;
  memory::bulkValuesOf(arrayAt(file, "v"))->readValues(&start, &extent, values.data());
  std::vector<double> expected(2 * COUNT, -1);
  std::transform(stored.begin(), stored.end(), expected.begin(),
                 [](short value) { return value * 0.5; });
  EXPECT_EQ(values, expected);
}

struct TimeCase {
  const char* rule;
  std::string type;
  std::string attributes;  // CDL, of the variable t
  std::string data;
  std::vector<std::string> times;  // empty where they are numbers
};

void PrintTo(const TimeCase& c, std::ostream* os) { *os << c.rule; }

class DecodedTimesTest : public testing::TestWithParam<TimeCase> {};

std::vector<std::string> timesOf(const memory::ArrayBase& array) {
  const auto* times = dynamic_cast<const memory::HasTimes*>(&array);
  std::vector<std::string> texts;
  if (times == nullptr) {
    return texts;
  }
  const memory::Block all = memory::BlockLayout(array, array.numberOfElements()).blockAt(0);
  std::vector<long> points(array.numberOfElements());
  times->readTimes(all.start.data(), all.extent.data(), points.data());
  for (const long point : points) {
    texts.push_back(
        memory::timeText(point, times->calendar(), memory::timeFormOf(points.data(), all.count)));
  }
  return texts;
}

TEST_P(DecodedTimesTest, AreTheFiles) {
  const Scratch scratch;
  const TimeCase& c = GetParam();
  const auto count = std::count(c.data.begin(), c.data.end(), ',') + 1;
  writeCdl(scratch.path("a.nc"), "dimensions: t = " + std::to_string(count) +
                                     "; variables: " + c.type + " t(t); " + c.attributes +
                                     " data: t = " + c.data + ";");
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(timesOf(arrayAt(file, "t")), c.times);
  OpenOptions options;
  options.decode = false;
  const File raw(scratch.path("a.nc"), options);
  EXPECT_EQ(dynamic_cast<const memory::HasTimes*>(&arrayAt(raw, "t")), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, DecodedTimesTest,
    testing::ValuesIn(std::vector<TimeCase>{
        {"WithoutCalendar",
         "double",
         "t:units = \"hours since 2011-08-01\";",
         "0, 6.5",
         {"2011-08-01T00:00:00", "2011-08-01T06:30:00"}},
        {"MidnightsAreDates",
         "int",
         "t:units = \"days since 2011-08-01\";",
         "0, 31",
         {"2011-08-01", "2011-09-01"}},
        {"Standard",
         "int",
         "t:units = \"days since 1582-10-04\"; t:calendar = \"standard\";",
         "0, 1",
         {"1582-10-04", "1582-10-15"}},
        {"Gregorian",
         "int",
         "t:units = \"days since 1582-10-04\"; t:calendar = \"gregorian\";",
         "0, 1",
         {"1582-10-04", "1582-10-15"}},
        {"ProlepticGregorian",
         "int",
         "t:units = \"days since 1582-10-04\"; t:calendar = \"proleptic_gregorian\";",
         "0, 1",
         {"1582-10-04", "1582-10-05"}},
        {"NoLeap",
         "short",
         "t:units = \"days since 2000-02-28\"; t:calendar = \"noleap\";",
         "0, 1",
         {"2000-02-28", "2000-03-01"}},
        {"Of365Days",
         "short",
         "t:units = \"days since 2000-02-28\"; t:calendar = \"365_day\";",
         "0, 1",
         {"2000-02-28", "2000-03-01"}},
        {"Of360Days",
         "short",
         "t:units = \"days since 2000-02-28\"; t:calendar = \"360_day\";",
         "0, 2",
         {"2000-02-28", "2000-02-30"}},
        {"Julian",
         "short",
         "t:units = \"days since 1900-02-28\"; t:calendar = \"julian\";",
         "0, 1",
         {"1900-02-28", "1900-02-29"}},
        {"CalendarNone",
         "short",
         "t:units = \"days since 1900-02-28\"; t:calendar = \"none\";",
         "0, 1",
         {"1900-02-28", "1900-03-01"}},
        {"OtherCalendarStaysNumbers",
         "short",
         "t:units = \"days since 1900-02-28\"; t:calendar = \"all_leap\";",
         "0, 1",
         {}},
        {"MonthsStayNumbers", "short", "t:units = \"months since 1900-01-01\";", "0, 1", {}},
        {"DurationsAreNumbers", "short", "t:units = \"days\";", "0, 1", {}},
        {"MissingOfDouble",
         "double",
         "t:units = \"days since 2000-01-01\"; t:_FillValue = -1.;",
         "-1, 1",
         {"", "2000-01-02"}},
        {"MissingOfInt",
         "int",
         "t:units = \"days since 2000-01-01\"; t:_FillValue = -1;",
         "-1, 1",
         {"", "2000-01-02"}},
        {"MissingOfInt64",
         "int64",
         "t:units = \"days since 2000-01-01\"; t:_FillValue = -1LL;",
         "-1, 1",
         {"", "2000-01-02"}},
        {"PackedTimes",
         "short",
         "t:units = \"hours since 2000-01-01\"; t:scale_factor = 0.5; t:add_offset = 24.;",
         "0, 1",
         {"2000-01-02T00:00:00", "2000-01-02T00:30:00"}},
        {"WithoutSign",
         "ubyte",
         "t:units = \"days since 2000-01-01\";",
         "255, 0",
         {"2000-09-12", "2000-01-01"}},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(DecodedTimes, AreTheNumbersWithTheirUnitAsAnArray) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: t = 2; variables: int64 t(t); t:units = \"hours since 2000-01-01\"; "
           "t:_FillValue = 7LL; data: t = 7, 9;");
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(arrayAt(file, "t").getUnit(), "hours since 2000-01-01");
  EXPECT_EQ(bulkOf(arrayAt(file, "t")), (std::vector<std::string>{"int64", "7", "9"}));
}

TEST(DecodedTimes, BoundsHaveTheUnitsOfTheirCoordinate) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: time = 2; nv = 2; variables: int time(time); "
           "time:units = \"days since 2000-01-01\"; time:calendar = \"noleap\"; "
           "time:bounds = \"time_bnds\"; float time_bnds(time, nv); float other(time, nv); "
           "data: time = 0, 1; time_bnds = 0, 1, 1, 59; other = 1, 2, 3, 4;");
  const File file(scratch.path("a.nc"));
  EXPECT_THAT(timesOf(arrayAt(file, "time_bnds")),
              ElementsAre("2000-01-01", "2000-01-02", "2000-01-02", "2000-03-01"));
  EXPECT_EQ(arrayAt(file, "time_bnds").getUnit(), "days since 2000-01-01");
  EXPECT_EQ(dynamic_cast<const memory::HasTimes*>(&arrayAt(file, "other")), nullptr);
  OpenOptions options;
  options.decode = false;
  const File raw(scratch.path("a.nc"), options);
  EXPECT_EQ(arrayAt(raw, "time_bnds").getUnit(), "");
  EXPECT_TRUE(arrayAt(raw, "time_bnds").attributes().empty());
}

TEST(DecodedTimes, ClimatologiesHaveTheUnitsOfTheirCoordinate) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: time = 1; nv = 2; variables: int time(time); "
           "time:units = \"days since 2000-01-01\"; time:climatology = \"clim\"; "
           "int clim(time, nv); data: time = 0; clim = 0, 31;");
  EXPECT_THAT(timesOf(arrayAt(File(scratch.path("a.nc")), "clim")),
              ElementsAre("2000-01-01", "2000-02-01"));
}

TEST(DecodedTimes, BoundsOfOtherCoordinatesHaveNoUnitsButTheirOwn) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: lat = 1; nv = 2; variables: int lat(lat); "
           "lat:units = \"degrees_north\"; lat:bounds = \"lat_bnds\"; int lat_bnds(lat, nv); "
           "data: lat = 5; lat_bnds = 0, 10;");
  EXPECT_EQ(arrayAt(File(scratch.path("a.nc")), "lat_bnds").getUnit(), "");
}

TEST(DecodedTimes, BoundsKeepTheirOwnUnits) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: time = 1; nv = 2; variables: int time(time); "
           "time:units = \"days since 2000-01-01\"; time:bounds = \"b\"; int b(time, nv); "
           "b:units = \"hours since 2000-01-01\"; data: time = 0; b = 0, 24;");
  const File file(scratch.path("a.nc"));
  EXPECT_EQ(arrayAt(file, "b").getUnit(), "hours since 2000-01-01");
  EXPECT_THAT(timesOf(arrayAt(file, "b")), ElementsAre("2000-01-01", "2000-01-02"));
}

TEST(DecodedTimes, BoundsHaveTheCalendarOfTheirCoordinateUnlessTheyHaveTheirOwn) {
  struct Case {
    const char* own;
    const char* unit;
    const char* end;  // of 59 days
  };
  for (const Case& each :
       {Case{"", "days since 2000-01-01", "2000-03-01"},
        Case{"b:units = \"days since 2001-01-01\";", "days since 2001-01-01", "2001-03-01"},
        Case{"b:units = \"days since 2000-01-01\";", "days since 2000-01-01", "2000-03-01"},
        Case{"b:calendar = \"360_day\";", "days since 2000-01-01", "2000-02-30"},
        Case{"b:units = \"days since 2000-01-01\"; b:calendar = \"standard\";",
             "days since 2000-01-01", "2000-02-29"}}) {
    const Scratch scratch;
    writeCdl(scratch.path("a.nc"),
             std::string("dimensions: time = 1; nv = 2; variables: int time(time); "
                         "time:units = \"days since 2000-01-01\"; time:calendar = \"noleap\"; "
                         "time:bounds = \"b\"; int b(time, nv); ") +
                 each.own + " data: time = 0; b = 0, 59;");
    const File file(scratch.path("a.nc"));
    EXPECT_EQ(arrayAt(file, "b").getUnit(), each.unit) << each.own;
    EXPECT_EQ(timesOf(arrayAt(file, "b")).back(), each.end) << each.own;
    EXPECT_TRUE(arrayAt(file, "b").attributes().empty()) << each.own;
  }
}

TEST(DecodedTimes, BoundsWithACalendarThatIsNoneKeepItAlone) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: time = 1; nv = 2; variables: int time(time); "
           "time:units = \"days since 2000-01-01\"; time:calendar = \"noleap\"; "
           "time:bounds = \"b\"; int b(time, nv); b:calendar = \"lunar\"; "
           "data: time = 0; b = 0, 59;");
  const File file(scratch.path("a.nc"));
  const std::vector<memory::Attribute> attributes = arrayAt(file, "b").attributes();
  ASSERT_EQ(attributes.size(), 1U);
  EXPECT_EQ(attributes[0].name, "calendar");
  EXPECT_EQ(attributes[0].value, memory::AttributeValue("lunar"));
  EXPECT_THAT(valuesOf(arrayAt(file, "b")), ElementsAre("0", "59"));
}

TEST(DecodedTimes, BoundsOfOneDimensionAreNone) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: time = 1; variables: int time(time); "
           "time:units = \"days since 2000-01-01\"; time:bounds = \"b\"; int b(time); "
           "data: time = 0; b = 0;");
  EXPECT_EQ(arrayAt(File(scratch.path("a.nc")), "b").getUnit(), "");
}

TEST(DecodedTimes, PartsOfThemAreRead) {
  const Scratch scratch;
  writeCdl(scratch.path("a.nc"),
           "dimensions: t = 4; variables: int t(t); t:units = \"days since 2000-01-01\"; "
           "data: t = 0, 1, 2, 3;");
  const File file(scratch.path("a.nc"));
  const auto& times = dynamic_cast<const memory::HasTimes&>(arrayAt(file, "t"));
  const unsigned long start = 2;
  const unsigned long extent = 1;
  long time = 0;
  times.readTimes(&start, &extent, &time);
  EXPECT_EQ(memory::timeText(time, times.calendar(), memory::TimeForm::Date), "2000-01-03");
}

}  // namespace
}  // namespace quillon::netcdf
