#include <ostream>

#include "WriteTesting.h"

namespace quillon::netcdf {
namespace {

using memory::Axis;
using memory::Dictionary;

TEST_F(WriteTest, NamesOfManyKindsAreTaken) {
  const std::vector<std::string> names = {
      "a",           "_",   "9 lives", "x-y+z", "a@b", "ä", "À", "日本", std::string(255, 'n'),
      "semi;colon:", "A.B", "0",       "Z",     "z"};
  Dictionary dictionary("d");
  std::map<std::string, std::vector<std::string>> expected;
  for (const std::string& name : names) {
    dictionary.add(row<int>(name, "of " + name.substr(0, 200), {1}));
    expected["/" + name] = {"1"};
  }
  write(dictionary);
  EXPECT_EQ(contentOf(File(m_path).root()), expected);
}

// libnetcdf composes accents with their letters, and has the first of both then.
TEST_F(WriteTest, NamesThatDifferInTheFormOfAccentsAloneAreRefused) {
  const std::string loose = "a\xCC\x88";
  const std::string why = " cannot be written (NetCDF: String match to name in use)";
  EXPECT_EQ(refusalOf(dictionaryOf(row<int>("ä", "x", {1}), row<int>(loose, "x", {1}))),
            "'/" + loose + "'" + why);
  EXPECT_EQ(refusalOf(dictionaryOf(row<int>("b", "ä", {1}), row<int>("c", loose, {1}))),
            "axis '" + loose + "' in '/'" + why);
  EXPECT_EQ(refusalOf(dictionaryOf(Dictionary("ä"), Dictionary(loose))),
            "group '/" + loose + "'" + why);
}

struct NameCase {
  const char* rule;
  std::string name;
  std::string quoted;
  std::string fault;
};
void PrintTo(const NameCase& c, std::ostream* os) { *os << c.rule; }

class WriteNamesTest : public WriteTest, public testing::WithParamInterface<NameCase> {
 protected:
  std::string refusal(const std::string& subject) const {
    return subject + " has a name that netCDF files do not take: " + GetParam().fault;
  }
};

TEST_P(WriteNamesTest, OfAnEntryIsRefused) {
  EXPECT_EQ(refusalOf(dictionaryOf(row<int>(GetParam().name, "x", {1}))),
            refusal("'/" + GetParam().quoted + "'"));
}

TEST_P(WriteNamesTest, OfADictionaryInADictionaryIsRefused) {
  Dictionary group("g");
  group.add(Dictionary(GetParam().name));
  EXPECT_EQ(refusalOf(dictionaryOf(std::move(group))), refusal("'/g/" + GetParam().quoted + "'"));
}

TEST_P(WriteNamesTest, OfAnAttributeIsRefused) {
  Dictionary dictionary("d");
  dictionary.setAttribute(GetParam().name, "text");
  EXPECT_EQ(refusalOf(dictionary), refusal("attribute '" + GetParam().quoted + "' of '/'"));
}

TEST_P(WriteNamesTest, OfAnAxisIsRefusedButForNone) {
  const std::string error = refusalOf(dictionaryOf(row<int>("a", GetParam().name, {1})));
  if (GetParam().name.empty()) {
    EXPECT_EQ(error, "");
    return;
  }
  // What is left of a name is only known when libnetcdf has made the dimension.
  EXPECT_THAT(error, testing::AnyOf(refusal("axis '" + GetParam().quoted + "' of '/a'"),
                                    refusal("axis '" + GetParam().quoted + "' in '/'")));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, WriteNamesTest,
    testing::ValuesIn(std::vector<NameCase>{
        {"Empty", "", "", "it is empty"},
        {"Slash", "a/b", "a/b", "it has a slash"},
        {"SlashAlone", "/", "/", "it has a slash"},
        {"LineBreak", "a\nb", "a\\nb", "it has a control character"},
        {"Delete", "a\x7F", "a\\x7f", "it has a control character"},
        {"NullCharacter", std::string("a\0b", 3), "a\\x00b", "it has a control character"},
        {"NoUtf8", "a\xFF", "a\\xff", "it is not UTF-8"},
        {"FirstBlank", " a", " a", "it begins with ' '"},
        {"FirstColon", ":", ":", "it begins with ':'"},
        {"FirstAt", "@a", "@a", "it begins with '@'"},
        {"FirstBracket", "[a]", "[a]", "it begins with '['"},
        {"FirstQuote", "`a", "`a", "it begins with '`'"},
        {"FirstBrace", "{a}", "{a}", "it begins with '{'"},
        {"FirstPoint", ".a", ".a", "it begins with '.'"},
        {"FirstSign", "-", "-", "it begins with '-'"},
        {"LastBlank", "a ", "a ", "it ends with a blank"},
        {"Hidden", "_nc4_non_coord_a", "_nc4_non_coord_a", "it begins with '_nc4_non_coord_'"},
        {"Long", std::string(256, 'n'), std::string(256, 'n'), "it has more than 255 bytes"},
        {"LooseAccent", "a\xCC\x88", "a\xCC\x88",
         "its accents stand beside their letters, as in 'ä' they do not"},
    }),
    [](const auto& c) { return c.param.rule; });

}  // namespace
}  // namespace quillon::netcdf
