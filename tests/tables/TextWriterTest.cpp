#include <gtest/gtest.h>
#include <quillon/memory/Dictionary.h>
#include <quillon/tables/Writers.h>

#include <cmath>

#include "TestArrays.h"

namespace quillon::tables {
namespace {

using memory::Dictionary;
using memory::DoubleArray;

class TextWriterTest : public ::testing::Test {
 protected:
  std::string text(const Shown& shown = {}) {
    std::string result;
    writeText(Table(m_data, plan(m_data)), into(result), shown);
    return result;
  }

  void add(const std::string& name, const std::string& unit, std::vector<double> values) {
    const unsigned long size = values.size();
    DoubleArray array(name, {{"x", size}}, std::move(values));
    array.setUnit(unit);
    m_data.add(std::move(array));
  }

  Dictionary m_data{"data"};
};

TEST_F(TextWriterTest, NumbersStandAtTheRightAndTextsAtTheLeft) {
  add("area", "um2", {1.5, -20, std::nan(""), HUGE_VAL});
  m_data.add(memory::StringArray("stain", {{"x", 4}}, {"DAPI", "", "x", "GFP"}));
  m_data.add(memory::BooleanArray("good", {{"x", 4}}, {true, false, true, false}));
  EXPECT_EQ(text(),
            "x  area  stain  good\n"
            "    um2\n"
            "0   1.5  DAPI   true\n"
            "1   -20         false\n"
            "2        x      true\n"
            "3   inf  GFP    false\n"
            "[4 rows x 4 columns]\n");
}

TEST_F(TextWriterTest, NoRowOfUnitsWhereThereAreNone) {
  add("a", "", {1});
  EXPECT_EQ(text(), "x  a\n0  1\n[1 row x 2 columns]\n");
}

TEST_F(TextWriterTest, TenRowsAreShownUnlessMoreAreAskedFor) {
  add("a", "", countedUp<double>(12));
  EXPECT_EQ(text(),
            "x  a\n0  0\n1  1\n2  2\n3  3\n4  4\n5  5\n6  6\n7  7\n8  8\n9  9\n"
            "[12 rows x 2 columns]\n");
  EXPECT_EQ(text({2, 6, 0}), "x  a\n0  0\n1  1\n[12 rows x 2 columns]\n");
  const std::string all = text({0, 6, 0});
  const std::string end = "\n 9   9\n10  10\n11  11\n[12 rows x 2 columns]\n";
  EXPECT_EQ(all.substr(all.size() - end.size()), end);
}

TEST_F(TextWriterTest, FractionsAreRoundedAndIntegersAreNot) {
  m_data.add(DoubleArray("d", {{"x", 3}}, {1.0 / 3, 123456789, 1e-10}));
  m_data.add(memory::IntArray("i", {{"x", 3}}, {123456789, -1, 0}));
  EXPECT_EQ(text(),
            "x            d          i\n"
            "0     0.333333  123456789\n"
            "1  1.23457e+08         -1\n"
            "2        1e-10          0\n"
            "[3 rows x 3 columns]\n");
  EXPECT_EQ(text({10, 3, 0}),
            "x         d          i\n"
            "0     0.333  123456789\n"
            "1  1.23e+08         -1\n"
            "2     1e-10          0\n"
            "[3 rows x 3 columns]\n");
  EXPECT_EQ(text({1, 1, 0}),
            "x    d          i\n"
            "0  0.3  123456789\n"
            "[3 rows x 3 columns]\n");
}

TEST_F(TextWriterTest, DotsStandForTheColumnsThatDoNotFit) {
  for (const char* name : {"aaaa", "bbbb", "cccc", "dddd"}) {
    add(name, "", {1});
  }
  const std::string whole = "x  aaaa  bbbb  cccc  dddd\n0     1     1     1     1\n";
  const std::string footer = "[1 row x 5 columns]\n";
  EXPECT_EQ(text({10, 6, 25}), whole + footer);
  EXPECT_EQ(text({10, 6, 24}), "x  aaaa  ...  cccc  dddd\n0     1  ...     1     1\n" + footer);
  EXPECT_EQ(text({10, 6, 23}), "x  aaaa  ...  dddd\n0     1  ...     1\n" + footer);
  EXPECT_EQ(text({10, 6, 12}), "x  ...  dddd\n0  ...     1\n" + footer);
  EXPECT_EQ(text({10, 6, 1}), "x  ...\n0  ...\n" + footer);
}

TEST_F(TextWriterTest, ColumnsFitFromBothEndsInTurns) {
  for (const char* const name : {"a", "bbbbb", "cc", "dddddddd"}) {
    add(name, "", {1});
  }
  const auto head = [this](unsigned long width) {
    const std::string shown = text({10, 6, width});
    return shown.substr(0, shown.find('\n'));
  };
  for (unsigned long width = 0; width < 30; ++width) {
    EXPECT_EQ(head(width), width == 0 || width >= 25 ? "x  a  bbbbb  cc  dddddddd"
                           : width >= 23             ? "x  a  ...  cc  dddddddd"
                           : width >= 19             ? "x  a  ...  dddddddd"
                           : width >= 16             ? "x  ...  dddddddd"
                                                     : "x  ...")
        << width;
  }
}

TEST_F(TextWriterTest, OneOfTwoColumnsMayBeTooMuch) {
  add("a", "", {1});
  EXPECT_EQ(text({10, 6, 3}), "x  ...\n0  ...\n[1 row x 2 columns]\n");
}

TEST_F(TextWriterTest, ColumnsBehindDotsStandBelowEachOther) {
  m_data.add(memory::StringArray("s", {}, {"a"}));
  m_data.add(memory::StringArray("long", {}, {""}));
  for (const char* const name : {"wide one", "z"}) {
    m_data.add(DoubleArray(name, {}, {1}));
  }
  EXPECT_EQ(text({10, 6, 18}),
            "s  long  ...  z\n"
            "a        ...  1\n"
            "[1 row x 4 columns]\n");
}

TEST_F(TextWriterTest, GapsAreCountedBehindAColumnOfNoWidth) {
  for (const char* const name : {"", "bb", "cc"}) {
    m_data.add(memory::StringArray(name, {}, {name}));
  }
  const std::string footer = "[1 row x 3 columns]\n";
  EXPECT_EQ(text({10, 6, 8}), "  bb  cc\n  bb  cc\n" + footer);
  EXPECT_EQ(text({10, 6, 7}), "  ...\n  ...\n" + footer);
}

TEST_F(TextWriterTest, WideAndCombiningCharactersKeepTheColumns) {
  m_data.add(memory::StringArray("名前", {{"x", 3}}, {"東京", "e\xCC\x81t\xC3\xA9", "a"}));
  m_data.add(memory::IntArray("n", {{"x", 3}}, {1, 2, 3}));
  EXPECT_EQ(text(),
            "x  名前  n\n"
            "0  東京  1\n"
            "1  e\xCC\x81t\xC3\xA9   2\n"
            "2  a     3\n"
            "[3 rows x 3 columns]\n");
}

TEST_F(TextWriterTest, WhatATerminalWouldObeyIsEscaped) {
  memory::StringArray array("a\nb", {{"x", 1}}, {"\x1b[31m\xFF"});
  array.setUnit("\x1b[2J");
  m_data.add(std::move(array));
  EXPECT_EQ(text(), "x  a\\nb\n   \\x1b[2J\n0  \\x1b[31m\\xff\n[1 row x 2 columns]\n");
}

TEST_F(TextWriterTest, TimesAreDatesWhereAllAreMidnights) {
  m_data.add(Hours("x", {{"x", 3}}, {0, 24, std::nan("")}));
  add("a", "", {1, 2, 3});
  EXPECT_EQ(text(),
            "x           a\n"
            "1970-01-01  1\n"
            "1970-01-02  2\n"
            "            3\n"
            "[3 rows x 2 columns]\n");
}

TEST_F(TextWriterTest, ATableWithoutRowsHasItsNames) {
  add("a", "m", {});
  EXPECT_EQ(text(), "x  a\n   m\n[0 rows x 2 columns]\n");
}

TEST_F(TextWriterTest, AnOutputThatFailsEndsIt) {
  add("a", "", countedUp<double>(100'000));
  int pieces = 0;
  const auto failing = [&pieces](std::string_view piece) {
    EXPECT_GE(piece.size(), 65536U);
    EXPECT_LE(piece.size(), 65700U);
    if (++pieces == 2) {
      throw std::runtime_error("full");
    }
  };
  EXPECT_THROW(writeText(Table(m_data, plan(m_data)), failing, {0, 6, 0}), std::runtime_error);
  EXPECT_EQ(pieces, 2);
}

TEST_F(TextWriterTest, UnitsMayBeTheWidestOfAColumn) {
  add("a", "micrometre", {1});
  EXPECT_EQ(text(),
            "x           a\n"
            "   micrometre\n"
            "0           1\n"
            "[1 row x 2 columns]\n");
}

TEST_F(TextWriterTest, ASingleColumnIsShownWhateverItsWidth) {
  m_data.add(DoubleArray("one", {}, {1.25}));
  EXPECT_EQ(text({10, 6, 1}), " one\n1.25\n[1 row x 1 column]\n");
}

}  // namespace
}  // namespace quillon::tables
