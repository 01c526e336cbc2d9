#include <quillon/memory/TimeArray.h>

#include "WriteTesting.h"

namespace quillon::netcdf {
namespace {

using memory::Axis;
using memory::Calendar;
using memory::MISSING_TIME;
using memory::TimeArray;

constexpr long LOWEST = MISSING_TIME;

/// Hours since 1970 as numbers of any type; 99 stands for a time that is missing.
template <class T>
class Hours final : public memory::ValueArray<T>,
                    public memory::InPlaceValues<T>,
                    public memory::HasTimes {
 public:
  Hours(std::vector<T> hours, const std::vector<long>& missingAt, const std::string& unit)
      : memory::ValueArray<T>("a", {Axis("x", hours.size())}),
        m_hours(std::move(hours)),
        m_missingAt(missingAt) {
    this->setPlace(m_hours.data(), {sizeof(T)});
    this->setUnit(unit);
  }
  memory::ResultOf<T> valueAt(const object_model::Tuple& index) const override {
    return m_hours[index[0]];
  }
  Calendar calendar() const override { return Calendar::NoLeap; }
  void readTimes(const unsigned long* start, const unsigned long* extent,
                 long* destination) const override {
    for (unsigned long k = start[0]; k < start[0] + extent[0]; ++k) {
      const bool isMissing =
          std::count(m_missingAt.begin(), m_missingAt.end(), static_cast<long>(k)) != 0;
      *destination++ = isMissing ? MISSING_TIME : static_cast<long>(m_hours[k]) * 3600000000;
    }
  }

 private:
  std::vector<T> m_hours;
  std::vector<long> m_missingAt;
};

template <class T>
memory::Dictionary hours(std::vector<T> values, const std::vector<long>& missingAt = {},
                         const std::string& unit = "hours since 1970-01-01") {
  memory::Dictionary dictionary("d");
  dictionary.add(std::make_unique<Hours<T>>(std::move(values), missingAt, unit));
  return dictionary;
}

class WriteTimesTest : public WriteTest {
 protected:
  /// What the file says of the variable `a`, the values last.
  std::string variableOf(const memory::Dictionary& dictionary) const {
    write(dictionary);
    return printedBy("'" NCDUMP "' '" + m_path + "' | grep -E '\ta:| a(\\(| =)' | tr -d '\\t'")
        .text;
  }
};

TEST_F(WriteTimesTest, KeepTheirNumbersAndHaveACalendar) {
  EXPECT_EQ(variableOf(dictionaryOf(TimeArray("a", {Axis("x", 2)}, {0, 86400000001}))),
            "int64 a(x) ;\na:units = \"microseconds since 1970-01-01\" ;\n"
            "a:calendar = \"standard\" ;\n a = 0, 86400000001 ;\n");
  EXPECT_EQ(variableOf(hours<short>({-1, 24})),
            "short a(x) ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = -1, 24 ;\n");
}

TEST_F(WriteTimesTest, CalendarsHaveTheNamesOfTheConventions) {
  const auto nameOf = [&](Calendar calendar) {
    write(dictionaryOf(TimeArray("a", {Axis("x", 1)}, {0}, calendar)));
    return printedBy("'" NCDUMP "' -h '" + m_path + "' | grep calendar | cut -d'\"' -f2").text;
  };
  EXPECT_EQ(nameOf(Calendar::Standard), "standard\n");
  EXPECT_EQ(nameOf(Calendar::ProlepticGregorian), "proleptic_gregorian\n");
  EXPECT_EQ(nameOf(Calendar::Julian), "julian\n");
  EXPECT_EQ(nameOf(Calendar::NoLeap), "noleap\n");
  EXPECT_EQ(nameOf(Calendar::Day360), "360_day\n");
}

TEST_F(WriteTimesTest, MayCallTheCalendarByAnotherName) {
  TimeArray times("a", {Axis("x", 1)}, {0});
  times.setAttribute("calendar", "gregorian");
  EXPECT_EQ(variableOf(dictionaryOf(std::move(times))),
            "int64 a(x) ;\na:units = \"microseconds since 1970-01-01\" ;\n"
            "a:calendar = \"gregorian\" ;\n a = 0 ;\n");
}

TEST_F(WriteTimesTest, NumberOfMissingOnesStaysWhereItIsOfNoOther) {
  EXPECT_EQ(variableOf(dictionaryOf(TimeArray("a", {Axis("x", 2)}, {LOWEST, 0}))),
            "int64 a(x) ;\na:_FillValue = -9223372036854775808LL ;\n"
            "a:units = \"microseconds since 1970-01-01\" ;\na:calendar = \"standard\" ;\n"
            " a = _, 0 ;\n");
  EXPECT_EQ(variableOf(hours<unsigned char>({99, 1, 99}, {0, 2})),
            "ubyte a(x) ;\na:_FillValue = 99UB ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = _, 1, _ ;\n");
}

TEST_F(WriteTimesTest, MissingOnesOfSeveralNumbersHaveTheOutermost) {
  EXPECT_EQ(variableOf(hours<int>({98, 1, 99}, {0, 2})),
            "int a(x) ;\na:_FillValue = -2147483648 ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = _, 1, _ ;\n");
  EXPECT_EQ(variableOf(hours<unsigned short>({99, 1, 99}, {0})),
            "ushort a(x) ;\na:_FillValue = 65535US ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = _, 1, 99 ;\n");
}

TEST_F(WriteTimesTest, MissingOnesOfSeveralNumbersStayThatWhateverFollows) {
  EXPECT_EQ(variableOf(hours<int>({98, 99, 99, 1}, {0, 1, 2})),
            "int a(x) ;\na:_FillValue = -2147483648 ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = _, _, _, 1 ;\n");
}

TEST_F(WriteTimesTest, MissingOnesWithoutAFreeNumberAreRefused) {
  EXPECT_EQ(
      refusalOf(hours<signed char>({99, 99, -128}, {0})),
      "'/a' has missing times, but -128, which would stand for them, is the number of another "
      "one");
}

TEST_F(WriteTimesTest, MissingOnesOfFloatingPointNumbersAreNan) {
  EXPECT_EQ(variableOf(hours<float>({std::nanf(""), 0.5F}, {0})),
            "float a(x) ;\na:_FillValue = NaNf ;\na:units = \"hours since 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = _, 0.5 ;\n");
}

TEST_F(WriteTimesTest, UnitsAreSpelledInAnyWayInWhichTheyAreRead) {
  EXPECT_EQ(variableOf(hours<int>({1}, {}, "HOURS SINCE 1970-01-01")),
            "int a(x) ;\na:units = \"HOURS SINCE 1970-01-01\" ;\n"
            "a:calendar = \"noleap\" ;\n a = 1 ;\n");
  write(hours<int>({1}, {}, "hours\tSince\t1970-01-01"));
  EXPECT_NE(dynamic_cast<const memory::HasTimes*>(&arrayAt(File(m_path), "a")), nullptr);
}

TEST_F(WriteTimesTest, WithoutABeginningAreRefused) {
  EXPECT_EQ(refusalOf(hours<int>({1}, {}, "hours")),
            "'/a' has times, but its unit 'hours' does not say since when they count");
}

/// A text that says of itself that it is a time.
class TextOfATime final : public memory::ValueArray<std::string>, public memory::HasTimes {
 public:
  TextOfATime() : ValueArray("a", {Axis("x", 1)}) {}
  std::string valueAt(const object_model::Tuple& /*index*/) const override { return "noon"; }
  Calendar calendar() const override { return Calendar::Standard; }
  void readTimes(const unsigned long* /*start*/, const unsigned long* /*extent*/,
                 long* destination) const override {
    *destination = 0;
  }
};

TEST_F(WriteTimesTest, TextsOfTimesAreTexts) {
  memory::Dictionary dictionary("d");
  dictionary.add(std::make_unique<TextOfATime>());
  EXPECT_EQ(variableOf(dictionary), "string a(x) ;\n a = \"noon\" ;\n");
}

TEST_F(WriteTimesTest, UnitsOfTimesMakeNoTimesOfNumbers) {
  auto numbers = row<int>("a", "x", {1});
  numbers.setUnit("hours since 1970-01-01");
  EXPECT_EQ(variableOf(dictionaryOf(std::move(numbers))),
            "int a(x) ;\na:units = \"hours since 1970-01-01\" ;\n a = 1 ;\n");
}

}  // namespace
}  // namespace quillon::netcdf
