#include <gmock/gmock.h>
#include <quillon/memory/JsonText.h>

#include <limits>

namespace quillon::memory {
namespace {

TEST(JsonTextTest, TextStandsInQuotes) {
  EXPECT_EQ(jsonText(""), "\"\"");
  EXPECT_EQ(jsonText("area of \xC3\xA4"), "\"area of \xC3\xA4\"");
}

TEST(JsonTextTest, QuotesBackslashesAndControlCharactersAreEscaped) {
  EXPECT_EQ(jsonText("a\"b\\c\n\r\t"), R"("a\"b\\c\n\r\t")");
  EXPECT_EQ(jsonText(std::string("\0\x1f\x7f", 3)), R"("\u0000\u001f\u007f")");
  EXPECT_EQ(jsonText("\x01\x02\x03\x04\x05\x06\x07\x08"),
            R"("\u0001\u0002\u0003\u0004\u0005\u0006\u0007\u0008")");
  EXPECT_EQ(jsonText("\x19\x1a\x1b\x1c\x1d\x1e"), R"("\u0019\u001a\u001b\u001c\u001d\u001e")");
}

TEST(JsonTextTest, InvisibleCharactersAreEscaped) {
  EXPECT_EQ(jsonText("a\xE2\x80\xAE"
                     "b\xC2\x9B"),
            R"("a\u202eb\u009b")");
  EXPECT_EQ(jsonText("\xF3\xA0\x80\x81"), R"("\udb40\udc01")");
}

TEST(JsonTextTest, BytesThatAreNoUtf8BecomeTheReplacementCharacter) {
  EXPECT_EQ(jsonText("a\xFF\xC3"), R"("a\ufffd\ufffd")");
  EXPECT_EQ(jsonText("\xED\xA0\x80"), R"("\ufffd\ufffd\ufffd")");
}

TEST(JsonTextTest, NumbersAreTheShortestThatReadBack) {
  EXPECT_EQ(jsonNumber(0.1F), "0.1");
  EXPECT_EQ(jsonNumber(-3L), "-3");
  EXPECT_EQ(jsonNumber(true), "true");
}

TEST(JsonTextTest, WhatIsNoNumberInJsonIsAString) {
  constexpr double INFINITE = std::numeric_limits<double>::infinity();
  EXPECT_EQ(jsonNumber(-std::numeric_limits<float>::quiet_NaN()), "\"NaN\"");
  EXPECT_EQ(jsonNumber(INFINITE), "\"Infinity\"");
  EXPECT_EQ(jsonNumber(-INFINITE), "\"-Infinity\"");
  EXPECT_EQ(jsonNumber(std::complex<double>(1, -0.5)), "\"(1;-0.5)\"");
}

TEST(JsonTextTest, ObjectsGrowByAMemberAtATime) {
  Json object('{');
  EXPECT_EQ(object.text(), "{}");
  object.add("a", "1");
  EXPECT_EQ(object.text(), R"({"a": 1})");
  object.add("b\"", jsonText("x")).add("", "[]");
  EXPECT_EQ(object.text(), R"({"a": 1, "b\"": "x", "": []})");
}

TEST(JsonTextTest, ListsGrowByAnElementAtATime) {
  Json list('[');
  EXPECT_EQ(list.text(), "[]");
  list.add("1");
  EXPECT_EQ(list.text(), "[1]");
  list.add("2").add(jsonText("x"));
  EXPECT_EQ(list.text(), R"([1, 2, "x"])");
}

}  // namespace
}  // namespace quillon::memory
