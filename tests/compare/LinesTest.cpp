#include <gmock/gmock.h>

#include "Support.h"

namespace quillon::compare {
namespace {

using memory::Dictionary;
using ::testing::ElementsAre;

TEST(LinesTest, MissingOnOneSideAloneIsCounted) {
  EXPECT_THAT(linesOf(row<double>("a", {1, NOT_A_NUMBER, NOT_A_NUMBER, 5}),
                      row<double>("a", {2, 1, NOT_A_NUMBER, 5.25})),
              ElementsAre("/: 3 of 4 values differ, 1 missing in one file alone; the largest delta "
                          "is 1 at x=0: 1 and 2"));
  EXPECT_THAT(linesOf(row<double>("a", {1, 1}), row<double>("a", {1, NOT_A_NUMBER})),
              ElementsAre("/: 1 of 2 values differ, 1 missing in one file alone; the first is at "
                          "x=1: 1 and nan"));
}

TEST(LinesTest, DeltaHasSixDigitsAndValuesReadBack) {
  EXPECT_THAT(linesOf(StoredArray<float>("a", {}, {0.1F}), StoredArray<double>("a", {}, {1.0 / 3})),
              ElementsAre("/: 1 of 1 values differ; the largest delta is 0.233333: 0.1 and "
                          "0.3333333333333333"));
  EXPECT_THAT(linesOf(StoredArray<std::complex<float>>("a", {}, {{0.1F, 0}}),
                      StoredArray<std::complex<double>>("a", {}, {{0.1F, 2}})),
              ElementsAre("/: 1 of 1 values differ; the largest delta is 2: (0.1;0) and "
                          "(0.10000000149011612;2)"));
  EXPECT_THAT(linesOf(StoredArray<double>("a", {}, {1.0 / 3}), StoredArray<float>("a", {}, {0.1F})),
              ElementsAre("/: 1 of 1 values differ; the largest delta is 0.233333: "
                          "0.3333333333333333 and 0.1"));
  EXPECT_THAT(linesOf(StoredArray<std::complex<double>>("a", {}, {{0.1F, 2}}),
                      StoredArray<std::complex<float>>("a", {}, {{0.1F, 0}})),
              ElementsAre("/: 1 of 1 values differ; the largest delta is 2: "
                          "(0.10000000149011612;2) and (0.1;0)"));
  EXPECT_THAT(
      linesOf(row<double>("a", {INFINITE}), row<double>("a", {-INFINITE})),
      ElementsAre("/: 1 of 1 values differ; the largest delta is inf at x=0: inf and -inf"));
  EXPECT_THAT(
      linesOf(row<std::complex<double>>("a", {{3, 0}}), row<std::complex<double>>("a", {{0, 4}})),
      ElementsAre("/: 1 of 1 values differ; the largest delta is 5 at x=0: (3;0) and (0;4)"));
}

TEST(LinesTest, LargestAreListedBelow) {
  Options options;
  options.largest = 2;
  const Report report =
      compare(row<double>("a", {1, 1, NOT_A_NUMBER}), row<double>("a", {1.5, 3, 1}), options);
  EXPECT_THAT(lines(report, {20, 5}),
              ElementsAre("/: 3 of 3 values differ, 1 missing in one file alone; the largest delta "
                          "is 2 at x=1: 1 and 3",
                          "  2 at x=1: 1 and 3", "  0.5 at x=0: 1 and 1.5"));
}

TEST(LinesTest, FirstDifferencesAreListedBelowWhereNothingHasADelta) {
  Options options;
  options.largest = 2;
  const Report report = compare(row<std::string>("a", {"a", "b", "c"}),
                                row<std::string>("a", {"A", "B", "C"}), options);
  EXPECT_THAT(lines(report, {20, 5}),
              ElementsAre("/: 3 of 3 values differ; the first is at x=0: 'a' and 'A'",
                          "  at x=0: 'a' and 'A'", "  at x=1: 'b' and 'B'"));
}

TEST(LinesTest, ASingleTextIsListedBelowWithoutAPlace) {
  const Report report =
      compare(memory::StringArray("a", {}, {"run"}), memory::StringArray("a", {}, {"rerun"}));
  EXPECT_THAT(lines(report, {20, 5}),
              ElementsAre("/: 1 of 1 values differ; the first is: 'run' and 'rerun'",
                          "  'run' and 'rerun'"));
}

TEST(LinesTest, ColorsSetPathsAndValuesApart) {
  Options options;
  options.largest = 1;
  const Report report = compare(row<double>("a", {1}), row<double>("a", {1.5}), options);
  EXPECT_THAT(lines(report, {20, 1, true}),
              ElementsAre("\x1b[1m/\x1b[0m: 1 of 1 values differ; the largest delta is 0.5 at x=0: "
                          "\x1b[31m1\x1b[0m and \x1b[32m1.5\x1b[0m",
                          "  0.5 at x=0: \x1b[31m1\x1b[0m and \x1b[32m1.5\x1b[0m"));
  EXPECT_THAT(lines(compare(row<double>("a", {1}), row<double>("a", {1, 2})), {20, 0, true}),
              ElementsAre("\x1b[1m/\x1b[0m: the shapes differ: \x1b[31m(1)\x1b[0m and "
                          "\x1b[32m(2)\x1b[0m"));
}

TEST(LinesTest, LongListEndsWithHowManyMoreThereAre) {
  Dictionary many("a");
  for (int k = 0; k < 22; ++k) {
    many.add(row<double>("v" + std::to_string(k), {1}));
  }
  const Report report = compare(many, Dictionary("b"));
  const std::vector<std::string> shown = lines(report);
  ASSERT_EQ(shown.size(), 21);
  EXPECT_EQ(shown.front(), "/v0: only in the first");
  EXPECT_EQ(shown.back(), "... and 2 more");
  EXPECT_EQ(lines(report, {ALL_LINES, 0}).size(), 22);
}

TEST(LinesTest, LongTextsAreShownWhereTheyBeginToDiffer) {
  const std::string shared(100, 'x');
  EXPECT_THAT(linesOf(row<std::string>("a", {shared + "a"}), row<std::string>("a", {shared + "b"})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: ...'xxxxxxxxxxa' and "
                          "...'xxxxxxxxxxb'"));
}

TEST(LinesTest, NamesAreEscaped) {
  EXPECT_THAT(linesOf(dictionary("a", row<double>("\x1b[2J", {1})), Dictionary("b")),
              ElementsAre("/\\x1b[2J: only in the first"));
}

TEST(LinesTest, TextIsTheLinesWithBreaksBetween) {
  const Report report =
      compare(dictionary("a", row<double>("x", {1}), row<double>("y", {1})), Dictionary("b"));
  EXPECT_EQ(text(report), "/x: only in the first\n/y: only in the first");
  EXPECT_EQ(message(report), "/x: only in the first");
}

TEST(LinesTest, ExcerptsSayWhereTextsGoOn) {
  const std::string shared(30, 'x');
  const std::string rest(40, 'y');
  EXPECT_THAT(
      linesOf(row<std::string>("a", {shared + "a" + rest}), row<std::string>("a", {shared + "b"})),
      ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                  "...'xxxxxxxxxxayyyyyyyyyyyyyyyyyyyyyyyyyyyyy'... and ...'xxxxxxxxxxb'"));
}

TEST(LinesTest, ExcerptsBeginAtTheStartWhereLittleIsShared) {
  const std::string shared(19, 'x');
  const std::string rest(30, 'y');
  EXPECT_THAT(
      linesOf(row<std::string>("a", {shared + "a" + rest}), row<std::string>("a", {shared + "b"})),
      ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                  "'xxxxxxxxxxxxxxxxxxxayyyyyyyyyyyyyyyyyyyy'... and "
                  "'xxxxxxxxxxxxxxxxxxxb'"));
}

TEST(LinesTest, TextsOfFortyCharactersAreShownWhole) {
  const std::string shared(39, 'x');
  EXPECT_THAT(linesOf(row<std::string>("a", {shared + "a"}), row<std::string>("a", {shared + "b"})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                          "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxa' and "
                          "'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxb'"));
}

TEST(LinesTest, ExcerptsBeginBehindTheStartWhereTwentyCharactersAreShared) {
  const std::string shared(20, 'x');
  const std::string rest(30, 'y');
  EXPECT_THAT(
      linesOf(row<std::string>("a", {shared + "a" + rest}), row<std::string>("a", {shared + "b"})),
      ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                  "...'xxxxxxxxxxayyyyyyyyyyyyyyyyyyyyyyyyyyyyy'... and ...'xxxxxxxxxxb'"));
}

TEST(LinesTest, ExcerptsDoNotCutCharactersOfFourBytes) {
  const std::string shared(17, 'x');
  const std::string rest(26, 'y');
  EXPECT_THAT(linesOf(row<std::string>("a", {"\U0001F300" + shared + "a" + rest + "\U0001F300"}),
                      row<std::string>("a", {"\U0001F300" + shared + "b"})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                          "...'xxxxxxxxxxayyyyyyyyyyyyyyyyyyyyyyyyyy'... and ...'xxxxxxxxxxb'"));
}

TEST(LinesTest, ExcerptsOfTextsThatAreNoUtf8ShowWhereTheyBeginToDiffer) {
  const std::string bytes(32, '\x80');
  const std::string ten = "\\x80\\x80\\x80\\x80\\x80\\x80\\x80\\x80\\x80\\x80";
  EXPECT_THAT(linesOf(row<std::string>("a", {"xxxxxxx" + bytes.substr(0, 13) + "a" + bytes}),
                      row<std::string>("a", {"xxxxxxx" + bytes.substr(0, 13) + "b"})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: ...'" + ten + "a" + ten +
                          ten + ten.substr(0, 36) + "'... and ...'" + ten + "b'"));
  EXPECT_THAT(linesOf(row<std::string>("a", {"\x80"
                                             "a"}),
                      row<std::string>("a", {"\x80"
                                             "b"})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: '\\x80a' and '\\x80b'"));
}

TEST(LinesTest, WithoutPairsTheCountIsAll) {
  Options options;
  options.largest = 0;
  EXPECT_THAT(linesOf(row<double>("a", {1, 2}), row<double>("a", {1, 3}), options),
              ElementsAre("/: 1 of 2 values differ"));
}

TEST(LinesTest, ExcerptsDoNotCutCharacters) {
  std::string pairs;  // of bytes
  for (int k = 0; k < 20; ++k) {
    pairs += "ä";
  }
  EXPECT_THAT(linesOf(row<std::string>("a", {pairs + "x1" + pairs}),
                      row<std::string>("a", {pairs + "x22" + pairs})),
              ElementsAre("/: 1 of 1 values differ; the first is at x=0: "
                          "...'äääääx1ääääääääääääää'... and ...'äääääx22äääääääääääää'..."));
}

TEST(LinesTest, NoMoreOfTheLargestAreListedThanAskedFor) {
  Options options;
  options.largest = 3;
  const Report report = compare(row<double>("a", {1, 1, 1}), row<double>("a", {4, 3, 2}), options);
  EXPECT_THAT(lines(report, {20, 2}),
              ElementsAre("/: 3 of 3 values differ; the largest delta is 3 at x=0: 1 and 4",
                          "  3 at x=0: 1 and 4", "  2 at x=1: 1 and 3"));
}

TEST(LinesTest, LongListOfWhatWasNotComparedEndsWithHowManyMoreThereAre) {
  Dictionary many("a");
  for (int k = 0; k < 3; ++k) {
    many.add(std::make_unique<FailingArray<std::runtime_error>>("v" + std::to_string(k),
                                                                std::runtime_error("no")));
  }
  EXPECT_THAT(lines(compare(many, many), {2, 0}),
              ElementsAre("/v0: not compared: no", "/v1: not compared: no", "... and 1 more"));
}

TEST(LinesTest, NamesOfDimensionsAndOfWhatWasNotComparedAreEscaped) {
  EXPECT_THAT(linesOf(memory::DoubleArray("a", {{"\x1b[2J", 1}}, {1}),
                      memory::DoubleArray("a", {{"\x1b[3J", 1}}, {1})),
              ElementsAre("/: the dimensions differ: (\\x1b[2J) and (\\x1b[3J)"));
  Dictionary failing("a");
  failing.add(
      std::make_unique<FailingArray<std::runtime_error>>("\x1b[2J", std::runtime_error("no")));
  EXPECT_THAT(linesOf(failing, failing), ElementsAre("/\\x1b[2J: not compared: no"));
}

}  // namespace
}  // namespace quillon::compare
