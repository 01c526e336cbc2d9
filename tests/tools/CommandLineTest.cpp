#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(ToolTest, VersionIsPrinted) {
  EXPECT_EQ(runTool({"--version"}), (Outcome{0, "quillon " QUILLON_VERSION "\n", ""}));
}

TEST(ToolTest, HelpListsTheVerbs) {
  const Outcome outcome = runTool({"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, HasSubstr("\n  table   "));
  EXPECT_THAT(outcome.out, HasSubstr("\n  info   "));
  EXPECT_THAT(outcome.out, HasSubstr("\n  diff   "));
}

TEST(ToolTest, HelpFitsEightyPlaces) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                    {"table", "--help"},
                                                    {"info", "--help"},
                                                    {"diff", "--help"},
                                                    {"completion", "--help"}}) {
    std::istringstream lines(runTool(arguments).out);
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(line.size(), 80) << line;
    }
  }
}

TEST(ToolTest, EveryVerbHasHelp) {
  for (const char* verb : {"table", "info", "diff", "completion"}) {
    const Outcome outcome = runTool({verb, "--help"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Usage: quillon " + std::string(verb)));
  }
}

struct CommandLineCase {
  const char* rule;
  std::vector<std::string> arguments;
  const char* sentence;
};

void PrintTo(const CommandLineCase& c, std::ostream* stream) { *stream << c.rule; }

class MistakenCommandLineTest : public ::testing::TestWithParam<CommandLineCase> {};

TEST_P(MistakenCommandLineTest, IsRefusedWithOneSentence) {
  EXPECT_EQ(runTool(GetParam().arguments), failed(GetParam().sentence));
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, MistakenCommandLineTest,
    ::testing::ValuesIn(std::vector<CommandLineCase>{
        {"NoVerb",
         {},
         "A verb is missing; the verbs are table, info, diff, completion (see quillon --help)"},
        {"UnknownVerb",
         {"tabel", "a.nc"},
         "There is no verb 'tabel'; did you mean 'table'? (see quillon --help)"},
        {"NoFile", {"table"}, "FILE is required (see quillon table --help)"},
        {"UnknownOption",
         {"info", "a.nc", "--what"},
         "There is no option '--what'; did you mean '--help'? (see quillon info --help)"},
        {"MistypedOptionIsNamedWhateverElseSeemsWrong",
         {"table", "--max-row", "3", "a.nc"},
         "There is no option '--max-row'; did you mean '--max-rows'? (see quillon table --help)"},
        {"MistypedOptionWithItsValue",
         {"diff", "a.nc", "--relativ=3"},
         "There is no option '--relativ'; did you mean '--relative'? (see quillon diff --help)"},
        {"MistypedShortOption",
         {"table", "a.nc", "-m", "3"},
         "There is no option '-m'; did you mean '-h'? (see quillon table --help)"},
        {"MistypedOptionOfTheTool",
         {"--verison"},
         "There is no option '--verison'; did you mean '--version'? (see quillon --help)"},
        {"UnknownShell",
         {"completion", "bsh"},
         "completion takes one of bash, zsh, fish, not 'bsh'; did you mean 'bash'?"},
        {"TwoFiles",
         {"table", "a.nc", "b.nc"},
         "The following argument was not expected: b.nc (see quillon table --help)"},
        {"OptionWithoutValue",
         {"table", "a.nc", "--max-rows"},
         "--max-rows: 1 required N missing (see quillon table --help)"},
        {"OptionTwice",
         {"table", "a.nc", "--max-rows", "1", "--max-rows", "2"},
         "--max-rows: At Most 1 required but received 2 (see quillon table --help)"},
        {"ControlCharactersAreEscaped",
         {"info", "a.nc", "\x1b[2J"},
         "The following argument was not expected: \\x1b[2J (see quillon info --help)"},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(ToolTest, FileCalledLikeAVerbIsAFile) {
  EXPECT_EQ(runTool({"table", "info"}), failed("Cannot read 'info': there is no such file"));
}

TEST(ToolTest, FullStandardOutputIsAFailure) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                    {"info", "data/nuclei_measurements.nc"},
                                                    {"table", "data/nuclei_measurements.nc"}}) {
    EXPECT_EQ(runTool(arguments, "/dev/full"),
              failed("Cannot write to standard output: No space left on device"));
  }
}

TEST(ToolTest, ClosedStandardOutputIsAFailure) {
  EXPECT_EQ(runShell("$QUILLON info data/nuclei_measurements.nc >&-"),
            failed("Cannot write to standard output: Bad file descriptor"));
}

TEST(ToolTest, ClosedStreamsDoNotSwallowTheOutput) {
  const Scratch scratch;
  const std::string path = scratch.path("table");
  EXPECT_EQ(runShell("$QUILLON table data/nuclei_measurements.nc --variables area --index label "
                     "--max-rows 1 --output " +
                     path + " <&- >&- 2>&-"),
            (Outcome{0, "", ""}));
  EXPECT_EQ(contentOf(path), "label  area\n        px2\n    0   111\n[85 rows x 2 columns]\n");
}

TEST(ToolTest, ReaderThatLeavesEarlyIsNoTrouble) {
  const Outcome outcome = runShell(
      "$QUILLON table data/north_atlantic_climate.nc --max-rows 0 | head -n 1 | cut -c 7-20");
  EXPECT_EQ(outcome, (Outcome{0, "COADSX        \n", ""}));
}

}  // namespace
}  // namespace quillon::tools::test
