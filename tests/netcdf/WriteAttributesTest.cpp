#include "WriteTesting.h"

namespace quillon::netcdf {
namespace {

using memory::Attribute;
using memory::AttributeValue;
using memory::Axis;
using memory::Dictionary;

class WriteAttributesTest : public WriteTest {
 protected:
  /// The attributes of the group or, in lines that begin with "a", of the variable `a`.
  std::string attributesOf(const Dictionary& dictionary) const {
    write(dictionary);
    return printedBy("'" NCDUMP "' -h '" + m_path + "' | grep -E '^\t\t.* ;' | tr -d '\\t'").text;
  }

  /// Those of an array of one number that has an attribute.
  template <class T>
  memory::TypedArray<T> arrayWith(const std::string& name, AttributeValue value) const {
    memory::TypedArray<T> array("a", {}, std::vector<T>(1));
    array.setAttribute(name, std::move(value));
    return array;
  }
};

TEST_F(WriteAttributesTest, HaveTheTypesInWhichTheyAreKept) {
  Dictionary dictionary("d");
  dictionary.setAttribute("text", "ä b");
  dictionary.setAttribute("texts", std::vector<std::string>{"a", "", "ö"});
  dictionary.setAttribute("one", std::vector<std::string>{"a"});
  dictionary.setAttribute("i8", std::vector<signed char>{-128, 127});
  dictionary.setAttribute("i16", std::vector<short>{-32768, 32767});
  dictionary.setAttribute("i32", std::vector<int>{-2147483647 - 1, 2147483647});
  dictionary.setAttribute("i64", std::vector<long>{-9223372036854775807, 9223372036854775807});
  dictionary.setAttribute("u8", std::vector<unsigned char>{0, 255});
  dictionary.setAttribute("u16", std::vector<unsigned short>{0, 65535});
  dictionary.setAttribute("u32", std::vector<unsigned int>{0, 4294967295U});
  dictionary.setAttribute("u64", std::vector<unsigned long>{0, 18446744073709551615U});
  dictionary.setAttribute("f32", std::vector<float>{0.1F, std::nanf("")});
  dictionary.setAttribute("f64", std::vector<double>{0.1, HUGE_VAL});
  EXPECT_EQ(attributesOf(dictionary), R"(:text = "ä b" ;
string :texts = "a", "", "ö" ;
string :one = "a" ;
:i8 = -128b, 127b ;
:i16 = -32768s, 32767s ;
:i32 = -2147483648, 2147483647 ;
:i64 = -9223372036854775807LL, 9223372036854775807LL ;
:u8 = 0UB, 255UB ;
:u16 = 0US, 65535US ;
:u32 = 0U, 4294967295U ;
:u64 = 0ULL, 18446744073709551615ULL ;
:f32 = 0.1f, NaNf ;
:f64 = 0.1, Infinity ;
)");
}

TEST_F(WriteAttributesTest, MayBeEmptyAndKeepTheirType) {
  Dictionary dictionary("d");
  dictionary.setAttribute("text", "");
  dictionary.setAttribute("texts", std::vector<std::string>());
  dictionary.setAttribute("numbers", std::vector<short>());
  write(dictionary);
  int file = -1;
  must(nc_open(m_path.c_str(), NC_NOWRITE, &file));
  std::vector<std::pair<nc_type, std::size_t>> found(3);
  must(nc_inq_att(file, NC_GLOBAL, "text", &found[0].first, &found[0].second));
  must(nc_inq_att(file, NC_GLOBAL, "texts", &found[1].first, &found[1].second));
  must(nc_inq_att(file, NC_GLOBAL, "numbers", &found[2].first, &found[2].second));
  must(nc_close(file));
  EXPECT_EQ(found, (std::vector<std::pair<nc_type, std::size_t>>{
                       {NC_CHAR, 0}, {NC_STRING, 0}, {NC_SHORT, 0}}));
}

TEST_F(WriteAttributesTest, UnitAndDescriptionStandBeforeThoseOfTheArray) {
  auto array = arrayWith<int>("standard_name", "air_temperature");
  array.setUnit("K");
  array.setDescription("Warm air");
  EXPECT_EQ(attributesOf(dictionaryOf(std::move(array))),
            "a:long_name = \"Warm air\" ;\na:units = \"K\" ;\n"
            "a:standard_name = \"air_temperature\" ;\n");
}

TEST_F(WriteAttributesTest, PhysicalUnitStandsForOneThatIsNotThere) {
  auto array = row<int>("a", "x", {1});
  array.setPhysicalUnit("m");
  EXPECT_EQ(attributesOf(dictionaryOf(array.clone())), "a:units = \"m\" ;\n");
  array.setUnit("K");
  array.setPhysicalUnit("m");
  EXPECT_EQ(attributesOf(dictionaryOf(array.clone())), "a:units = \"K\" ;\n");
}

TEST_F(WriteAttributesTest, UnitsThatAreNoUnitOfTheArrayAreAnAttributeAsOthers) {
  EXPECT_EQ(attributesOf(dictionaryOf(arrayWith<int>("units", std::vector<int>{5}))),
            "a:units = 5 ;\n");
}

TEST_F(WriteAttributesTest, ThatSayTheSameAgainStandOnce) {
  auto array = arrayWith<bool>("units", std::vector<std::string>{"K"});
  array.setUnit("K");
  array.setAttribute("dtype", "bool");
  EXPECT_EQ(attributesOf(dictionaryOf(std::move(array))),
            "a:units = \"K\" ;\na:dtype = \"bool\" ;\n");
}

TEST_F(WriteAttributesTest, ThatContradictTheObjectAreRefused) {
  auto unit = arrayWith<int>("units", "m");
  unit.setUnit("K");
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(unit))),
            "attribute 'units' of '/a' is not what the file has there for its unit");
  auto units = arrayWith<int>("units", std::vector<std::string>{"K", "m"});
  units.setUnit("K");
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(units))),
            "attribute 'units' of '/a' is not what the file has there for its unit");
  auto other = arrayWith<int>("units", std::vector<std::string>{"m"});
  other.setUnit("K");
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(other))),
            "attribute 'units' of '/a' is not what the file has there for its unit");
  auto description = arrayWith<int>("long_name", std::vector<int>{1});
  description.setDescription("warm");
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(description))),
            "attribute 'long_name' of '/a' is not what the file has there for its description");
  EXPECT_EQ(refusalOf(dictionaryOf(arrayWith<bool>("dtype", "int"))),
            "attribute 'dtype' of '/a' is not what the file has there for its element type");
  Dictionary dictionary("d", "one");
  dictionary.setAttribute("title", "two");
  EXPECT_EQ(refusalOf(dictionary),
            "attribute 'title' of '/' is not what the file has there for its description");
}

TEST_F(WriteAttributesTest, MissingValueOfFloatingPointNumbersIsNanUnlessTheyHaveAnother) {
  EXPECT_EQ(attributesOf(dictionaryOf(row<float>("a", "x", {1}))), "a:_FillValue = NaNf ;\n");
  EXPECT_EQ(attributesOf(dictionaryOf(row<double>("a", "x", {1}))), "a:_FillValue = NaN ;\n");
  EXPECT_EQ(attributesOf(dictionaryOf(row<short>("a", "x", {1}))), "");
  EXPECT_EQ(attributesOf(dictionaryOf(arrayWith<float>("_FillValue", std::vector<float>{-999}))),
            "a:_FillValue = -999.f ;\n");
  EXPECT_EQ(attributesOf(dictionaryOf(arrayWith<short>("_FillValue", std::vector<short>{-1}))),
            "a:_FillValue = -1s ;\n");
  EXPECT_EQ(attributesOf(dictionaryOf(arrayWith<std::string>("_FillValue", "none"))),
            "string a:_FillValue = \"none\" ;\n");
}

TEST_F(WriteAttributesTest, MissingValuesOfAnotherTypeOrNumberAreRefused) {
  const std::string refusal =
      "attribute '_FillValue' of '/a' is not a single value of the array's type";
  EXPECT_EQ(refusalOf(dictionaryOf(arrayWith<float>("_FillValue", std::vector<double>{1}))),
            refusal);
  EXPECT_EQ(refusalOf(dictionaryOf(arrayWith<float>("_FillValue", std::vector<float>{1, 2}))),
            refusal);
  EXPECT_EQ(refusalOf(dictionaryOf(arrayWith<float>("_FillValue", std::vector<float>()))), refusal);
  EXPECT_EQ(refusalOf(dictionaryOf(arrayWith<float>("_FillValue", "1"))), refusal);
  EXPECT_EQ(
      refusalOf(dictionaryOf(arrayWith<std::string>("_FillValue", std::vector<signed char>{1}))),
      refusal);
}

TEST_F(WriteAttributesTest, NullCharactersAreRefused) {
  Dictionary dictionary("d");
  dictionary.setAttribute("one", std::string("a\0", 2));
  const std::string refusal = " of '/' has a null character, which ends a text in netCDF files";
  EXPECT_EQ(refusalOf(dictionary), "attribute 'one'" + refusal);
  dictionary.removeAttribute("one");
  dictionary.setAttribute("two", std::vector<std::string>{"", std::string("\0a", 2)});
  EXPECT_EQ(refusalOf(dictionary), "attribute 'two'" + refusal);
}

TEST_F(WriteAttributesTest, ThatTheLibraryKeepsForItselfAreRefusedByName) {
  Dictionary dictionary("d");
  dictionary.setAttribute("_NCProperties", "mine");
  EXPECT_EQ(refusalOf(dictionary).substr(0, 51),
            "attribute '_NCProperties' of '/' cannot be written ");
}

}  // namespace
}  // namespace quillon::netcdf
