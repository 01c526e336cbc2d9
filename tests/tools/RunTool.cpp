#include "RunTool.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quillon::tools::test {

bool operator==(const Outcome& first, const Outcome& second) {
  return first.status == second.status && first.out == second.out && first.err == second.err;
}

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "status " << outcome.status << "\nout:\n" << outcome.out << "err:\n" << outcome.err;
}

std::string Scratch::file(const std::string& name, const std::string& cdl) const {
  const std::string source = path(name + ".cdl");
  writeContent(source, "netcdf x {\n" + cdl + "\n}\n");
  const Outcome made = runProgram({NCGEN, "-k", "nc4", "-o", path(name), source});
  if (made.status != 0) {
    throw std::runtime_error("ncgen: " + made.err);
  }
  std::filesystem::remove(source);
  return path(name);
}

Outcome runProgram(const std::vector<std::string>& command, const std::string& output) {
  const Scratch scratch;
  const std::string out = output.empty() ? scratch.path("out") : output;
  const std::string err = scratch.path("err");
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT, 0600);
  ::posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT, 0600);
  ::posix_spawn_file_actions_addchdir_np(&actions, QUILLON_SOURCE_DIR);
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  pid_t process = 0;
  const int error =
      ::posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("cannot run " + command[0]);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          output.empty() ? contentOf(out) : std::string(), contentOf(err)};
}

Outcome runTool(std::vector<std::string> arguments, const std::string& output) {
  arguments.insert(arguments.begin(), QUILLON_TOOL);
  return runProgram(arguments, output);
}

Outcome runShell(const std::string& command) {
  return runProgram({"/bin/sh", "-c", "QUILLON='" QUILLON_TOOL "'\n" + command});
}

Outcome failed(const std::string& sentence) { return {2, "", "quillon: " + sentence + "\n"}; }

std::string contentOf(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

void writeContent(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace quillon::tools::test
