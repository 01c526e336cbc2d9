#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Completion.h"
#include "Output.h"
#include "Verb.h"

namespace quillon::tools {

namespace {

const std::vector<std::string> SHELLS = {"bash", "zsh", "fish"};

}  // namespace

Verb addCompletion(CLI::App& application, const std::vector<Verb>& verbs) {
  CLI::App* command = application.add_subcommand(
      "completion", "Print the completion of a shell: bash, zsh or fish");
  command->footer(
      "For this session of bash: source <(quillon completion bash). Packages install\n"
      "the completions of all three.");
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell, "bash, zsh or fish")->required()->option_text(" ");
  const auto run = [shell, &verbs] {
    requireKnown("completion", *shell, SHELLS);
    writeOutput(completionFor(*shell, verbs));
    return 0;
  };
  return {command, run, {{"", SHELLS}}};
}

}  // namespace quillon::tools
