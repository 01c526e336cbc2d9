#include "Completion.h"

#include <algorithm>

namespace quillon::tools {

namespace {

using Names = std::vector<std::string>;

/// What a shell needs to know of an option.
struct Option {
  Names names;              ///< such as "-n" and "--max-rows"
  std::string description;  ///< in one line
  std::string takes;        ///< what its value is called; empty for a flag
  Names values;             ///< what it may be, where that is known
};

std::string inOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

bool isPositional(const CLI::Option& option) {
  return option.get_lnames().empty() && option.get_snames().empty();
}

std::vector<Option> optionsOf(const Verb& verb) {
  std::vector<Option> options;
  for (const CLI::Option* given : verb.command->get_options()) {
    if (isPositional(*given)) {
      continue;
    }
    Option option;
    for (const std::string& name : given->get_snames()) {
      option.names.push_back("-" + name);
    }
    for (const std::string& name : given->get_lnames()) {
      option.names.push_back("--" + name);
    }
    option.description = inOneLine(given->get_description());
    option.takes = given->get_items_expected_max() == 0 ? "" : given->get_type_name();
    const auto values = verb.values.find(option.names.back());
    option.values = values == verb.values.end() ? Names() : values->second;
    options.push_back(std::move(option));
  }
  return options;
}

/// What stands where a file would: the values of a verb's only argument.
Names argumentsOf(const Verb& verb) {
  const auto values = verb.values.find("");
  return values == verb.values.end() ? Names() : values->second;
}

std::string joined(const Names& names, const std::string& joint) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : joint) + name;
  }
  return text;
}

/// `text` with a backslash before each of `special`.
std::string quoted(const std::string& text, const std::string& special) {
  std::string result;
  for (const char character : text) {
    result += special.find(character) == std::string::npos ? "" : "\\";
    result += character;
  }
  return result;
}

/// In single quotes, as shells take it.
std::string inShellQuotes(const std::string& text) {
  std::string result = "'";
  for (const char character : text) {
    result += character == '\'' ? "'\\''" : std::string(1, character);
  }
  return result + "'";
}

bool takesFile(const Option& option) { return option.takes == "FILE"; }

std::string bashCase(const Verb& verb) {
  const std::string name = verb.command->get_name();
  Names all;
  std::string text;
  for (const Option& option : optionsOf(verb)) {
    all.insert(all.end(), option.names.begin(), option.names.end());
    if (!option.takes.empty() && !takesFile(option)) {
      text += "    1:" + name + ":" + joined(option.names, "|1:" + name + ":") + ") words='" +
              joined(option.values, " ") + "' ;;\n";
    }
  }
  const Names arguments = argumentsOf(verb);
  all.insert(all.end(), arguments.begin(), arguments.end());
  // Whatever is no option is a file, which bash completes by itself.
  return text + "    1:" + name + ":*) " +
         (arguments.empty() ? "[[ $word == -* ]] || return; " : "") + "words='" + joined(all, " ") +
         "' ;;\n";
}

std::string forBash(const std::vector<Verb>& verbs) {
  Names names;
  std::string cases;
  for (const Verb& verb : verbs) {
    names.push_back(verb.command->get_name());
    cases += bashCase(verb);
  }
  return R"(# Completion of quillon in bash; made by "quillon completion bash".
_quillon() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words=
  COMPREPLY=()
  case $((COMP_CWORD > 1)):${COMP_WORDS[1]}:$previous in
    0:*) words=')" +
         joined(names, " ") + " --help --version' ;;\n" + cases +
         "  esac\n"
         "  compopt +o default\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
         "}\n"
         "complete -o default -F _quillon quillon\n";
}

std::string zshOption(const Option& option) {
  const std::string description = "[" + quoted(option.description, "[]:\\") + "]";
  const std::string values = option.takes.empty() ? ""
                             : takesFile(option)  ? ":" + option.takes + ":_files"
                             : option.values.empty()
                                 ? ":" + option.takes + ": "
                                 : ":" + option.takes + ":(" + joined(option.values, " ") + ")";
  std::string text;
  for (const std::string& name : option.names) {
    std::string argument = "*" + name;
    argument += description;
    argument += values;
    text += "        " + inShellQuotes(argument) + " \\\n";
  }
  return text;
}

std::string forZsh(const std::vector<Verb>& verbs) {
  std::string names;
  std::string cases;
  for (const Verb& verb : verbs) {
    const std::string name = verb.command->get_name();
    names += "    " + inShellQuotes(name + ":" + verb.command->get_description()) + "\n";
    cases += "    " + name + ")\n      _arguments \\\n";
    for (const Option& option : optionsOf(verb)) {
      cases += zshOption(option);
    }
    const Names arguments = argumentsOf(verb);
    cases +=
        std::string("        ") +
        (arguments.empty() ? "'*:file:_files'" : "'*:shell:(" + joined(arguments, " ") + ")'") +
        " ;;\n";
  }
  return R"(#compdef quillon
# Completion of quillon in zsh; made by "quillon completion zsh".
_quillon() {
  local -a verbs=(
)" + names +
         R"(  )
  if (( CURRENT == 2 )); then
    _describe verb verbs
    return
  fi
  local verb=$words[2]
  shift words
  (( CURRENT-- ))
  case $verb in
)" + cases +
         R"(  esac
}
_quillon "$@"
)";
}

std::string fishOption(const Option& option, const std::string& verb) {
  std::string text = "complete -c quillon -n '__fish_seen_subcommand_from " + verb + "'";
  for (const std::string& name : option.names) {
    text += name[1] == '-' ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  text += option.takes.empty() ? "" : takesFile(option) ? " -r" : " -x";
  text += option.values.empty() ? "" : " -a '" + joined(option.values, " ") + "'";
  return text + " -d " + inShellQuotes(quoted(option.description, "\\")) + "\n";
}

std::string forFish(const std::vector<Verb>& verbs) {
  std::string text = "# Completion of quillon in fish; made by \"quillon completion fish\".\n";
  for (const Verb& verb : verbs) {
    const std::string name = verb.command->get_name();
    text += "complete -c quillon -n __fish_use_subcommand -f -a " + name + " -d " +
            inShellQuotes(verb.command->get_description()) + "\n";
    for (const Option& option : optionsOf(verb)) {
      text += fishOption(option, name);
    }
    if (const Names arguments = argumentsOf(verb); !arguments.empty()) {
      text += "complete -c quillon -n '__fish_seen_subcommand_from " + name + "' -f -a '" +
              joined(arguments, " ") + "'\n";
    }
  }
  return text;
}

}  // namespace

std::string completionFor(const std::string& shell, const std::vector<Verb>& verbs) {
  return shell == "bash" ? forBash(verbs) : shell == "zsh" ? forZsh(verbs) : forFish(verbs);
}

}  // namespace quillon::tools
