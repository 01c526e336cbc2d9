#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace quillon::tables {

/// Runs a Python program that has `text` under this name, if there is a Python.
/// @return its exit status; 0 where there is none.
inline int readByPython(const std::string& text, const std::string& program) {
  const std::string python = QUILLON_TEST_PYTHON;
  if (!std::filesystem::exists(python)) {
    return 0;
  }
  const std::string path = ::testing::TempDir() + "quillon_tables_" +
                           ::testing::UnitTest::GetInstance()->current_test_info()->name();
  std::ofstream(path + ".txt", std::ios::binary) << text;
  std::ofstream(path + ".py", std::ios::binary)
      << "text = open('" + path + ".txt', encoding='utf-8', newline='').read()" << program << '\n';
  const std::string command = "'" + python + "' '" + path + ".py'";
  const int status = std::system(command.c_str());  // NOLINT(concurrency-mt-unsafe): a test
  std::filesystem::remove(path + ".txt");
  std::filesystem::remove(path + ".py");
  return status;
}

}  // namespace quillon::tables
