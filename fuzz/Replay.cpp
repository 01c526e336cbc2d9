// Runs a fuzz target over given inputs, files or directories of them, with any compiler: what
// clang's own main does with the same arguments, its options apart.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const std::vector<std::string>& arguments) {
  std::vector<fs::path> files;
  for (const std::string& argument : arguments) {
    if (argument.front() == '-') {
      continue;
    }
    if (fs::is_directory(argument)) {
      files.insert(files.end(), fs::directory_iterator(argument), fs::directory_iterator());
    } else {
      files.emplace_back(argument);
    }
  }
  return files;
}

void replay(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(in), {}};
  // A block of exactly this size, so that a sanitizer sees a step past its end.
  const std::vector<std::uint8_t> bytes(content.begin(), content.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<fs::path> files = filesIn({arguments + 1, arguments + count});
  for (const fs::path& file : files) {
    // Said beforehand, since the one that is said last may be the one that ends the process.
    std::fprintf(stderr, "%s\n", file.c_str());
    replay(file);
  }
  std::fprintf(stderr, "%zu inputs replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
