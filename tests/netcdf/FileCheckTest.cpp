#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "FileCheck.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

/// Lets the process open no more files as long as it exists.
class NoMoreFiles {
 public:
  NoMoreFiles() {
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &m_before), 0);
    const rlimit none{0, m_before.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  NoMoreFiles(const NoMoreFiles&) = delete;
  NoMoreFiles& operator=(const NoMoreFiles&) = delete;
  ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &m_before); }

 private:
  rlimit m_before{};
};

class FileCheckTest : public testing::Test {
 protected:
  FileCheckTest() { writeBytes(m_path, "content"); }

  Scratch m_scratch;
  std::string m_path = m_scratch.path("a");
};

TEST_F(FileCheckTest, FileThatTheSystemDoesNotOpenIsAnErrorInItsWords) {
  const std::string path = m_path;
  const std::string error = errorOf([&path] {
    // Ends before anybody looks at an object: under sanitizers, that may take a descriptor.
    const NoMoreFiles limit;
    const CheckedFile file(path);
  });
  EXPECT_EQ(error, "Cannot read '" + path + "': Too many open files");
}

TEST_F(FileCheckTest, IsNeitherWaitedForNorInherited) {
  const CheckedFile file(m_path);
  EXPECT_EQ(fcntl(file.descriptor(), F_GETFD), FD_CLOEXEC);
  EXPECT_NE(fcntl(file.descriptor(), F_GETFL) & O_NONBLOCK, 0);
}

TEST_F(FileCheckTest, IsReadInAProcessWithoutStandardInput) {
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  std::string bytes;
  {
    const CheckedFile file(m_path);
    EXPECT_EQ(file.descriptor(), STDIN_FILENO);
    bytes = file.firstBytes(7);
  }
  if (input >= 0) {
    dup2(input, STDIN_FILENO);
    close(input);
  }
  EXPECT_EQ(bytes, "content");
}

TEST_F(FileCheckTest, NameThatGoesOnBehindANullCharacterIsRefused) {
  EXPECT_EQ(errorOf([&] { const CheckedFile file(m_path + '\0' + "b"); }),
            "Cannot read '" + m_path +
                "': its name goes on behind a null character, which no file's does");
}

TEST_F(FileCheckTest, FirstBytesAreAtMostThoseThatThereAre) {
  const CheckedFile file(m_path);
  EXPECT_EQ(file.firstBytes(3), "con");
  EXPECT_EQ(file.firstBytes(100), "content");
  EXPECT_EQ(file.firstBytes(0), "");
}

}  // namespace
}  // namespace quillon::netcdf
