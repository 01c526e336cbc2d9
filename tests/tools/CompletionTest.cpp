#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Completion.h"
#include "RunTool.h"

namespace quillon::tools::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

/// What bash offers where the words, the last of which is being written, stand on the command line.
std::string offered(const std::string& words) {
  const Outcome outcome = runProgram(
      {"/bin/bash", "-c",
       "compopt() { :; }; source <(" QUILLON_TOOL " completion bash); COMP_WORDS=(" + words +
           "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _quillon; printf '%s ' \"${COMPREPLY[@]}\""});
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

TEST(CompletionTest, BashOffersVerbsAndTheToolsOptions) {
  EXPECT_EQ(offered("quillon ''"), "table info diff completion --help --version ");
  EXPECT_EQ(offered("quillon d"), "diff ");
}

TEST(CompletionTest, BashOffersTheOptionsOfTheVerb) {
  EXPECT_EQ(offered("quillon table --max"), "--max-rows ");
  EXPECT_EQ(offered("quillon diff a.nc --ab"), "--absolute ");
  EXPECT_EQ(offered("quillon info --max"), " ");
}

TEST(CompletionTest, BashOffersWhatAnOptionTakes) {
  EXPECT_EQ(offered("quillon table --format j"), "json jsonl ");
  EXPECT_EQ(offered("quillon diff --format ''"), "text json html ");
  EXPECT_EQ(offered("quillon completion ''"), "-h --help bash zsh fish ");
}

TEST(CompletionTest, BashCompletesFilesByItself) {
  EXPECT_EQ(offered("quillon table ''"), " ");
  EXPECT_EQ(offered("quillon table --output ''"), " ");
}

TEST(CompletionTest, ZshAndFishHaveALineForEachOption) {
  const std::string zsh = runTool({"completion", "zsh"}).out;
  EXPECT_THAT(zsh, StartsWith("#compdef quillon\n"));
  EXPECT_THAT(zsh, HasSubstr("    'diff:Compare the arrays of two files, value by value'\n"));
  EXPECT_THAT(zsh,
              HasSubstr("        '*-o[Write to this file, whole or not at all]:FILE:_files' \\\n"
                        "        '*--output[Write to this file, whole or not at all]:FILE:"
                        "_files' \\\n"));
  EXPECT_THAT(zsh, HasSubstr("'*:shell:(bash zsh fish)' ;;\n"));
  const std::string fish = runTool({"completion", "fish"}).out;
  EXPECT_THAT(fish, HasSubstr("complete -c quillon -n __fish_use_subcommand -f -a diff -d 'Compare "
                              "the arrays of two files, value by value'\n"));
  EXPECT_THAT(fish, HasSubstr("complete -c quillon -n '__fish_seen_subcommand_from diff' -l format "
                              "-x -a 'text json html' -d 'text (default), json or html, a page to "
                              "look at'\n"));
  EXPECT_THAT(fish, HasSubstr("complete -c quillon -n '__fish_seen_subcommand_from diff' -s o -l "
                              "output -r -d "));
}

TEST(CompletionTest, DescriptionsAreQuotedForTheirShell) {
  CLI::App application;
  CLI::App* const command = application.add_subcommand("verb", "It's one");
  std::string value;
  command->add_option("--option", value, "It's [a:b]\\\nc")->type_name("N");
  const std::vector<Verb> verbs = {{command, [] { return 0; }, {}}};
  const std::string zsh = completionFor("zsh", verbs);
  EXPECT_THAT(zsh, HasSubstr(R"(    'verb:It'\''s one')"));
  EXPECT_THAT(zsh, HasSubstr(R"('*--option[It'\''s \[a\:b\]\\ c]:N: ' \)"));
  const std::string fish = completionFor("fish", verbs);
  EXPECT_THAT(fish, HasSubstr(R"( -a verb -d 'It'\''s one')"));
  EXPECT_THAT(fish, HasSubstr(R"( -l option -x -d 'It'\''s [a:b]\\ c')"));
}

/// Where the shell is installed, it reads the script without running it.
void expectReadBy(const std::string& shell, const std::string& option) {
  const std::string path = "/usr/bin/" + shell;
  if (!std::filesystem::exists(path)) {
    GTEST_SKIP() << "there is no " << shell;
  }
  const Scratch scratch;
  writeContent(scratch.path("script"), runTool({"completion", shell}).out);
  EXPECT_EQ(runProgram({path, option, scratch.path("script")}), (Outcome{0, "", ""}));
}

TEST(CompletionTest, BashReadsItsScript) { expectReadBy("bash", "-n"); }
TEST(CompletionTest, ZshReadsItsScript) { expectReadBy("zsh", "-n"); }
TEST(CompletionTest, FishReadsItsScript) { expectReadBy("fish", "--no-execute"); }

}  // namespace
}  // namespace quillon::tools::test
