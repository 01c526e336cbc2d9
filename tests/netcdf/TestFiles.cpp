#include "TestFiles.h"

#include <fcntl.h>
#include <object_model/Array.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#ifdef __SANITIZE_ADDRESS__
#define QUILLON_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILLON_ADDRESS_SANITIZER
#endif
#endif

namespace quillon::netcdf {
namespace {

constexpr int EXCEPTION_STATUS = 91;  // none that a sanitizer or the system has

std::string valueAt(const memory::ArrayBase& array, const object_model::Tuple& index) {
  switch (array.getElementType()) {
    case object_model::ElementType::Int:
      return std::to_string(array.getValueAsInt(index));
    case object_model::ElementType::UInt:
      return std::to_string(array.getValueAsUInt(index));
    case object_model::ElementType::Boolean:
      return array.getValueAsBoolean(index) ? "true" : "false";
    case object_model::ElementType::Double: {
      std::ostringstream text;
      text.precision(17);
      text << array.getValueAsDouble(index);
      return text.str();
    }
    default:
      return array.getValueAsString(index);
  }
}

// The sanitizers reserve more addresses than any limit allows.
void limitMemory() {
#ifndef QUILLON_ADDRESS_SANITIZER
  const rlimit limit{1UL << 30U, 1UL << 30U};
  setrlimit(RLIMIT_AS, &limit);
#endif
  const rlimit noDump{0, 0};
  setrlimit(RLIMIT_CORE, &noDump);
}

}  // namespace

void must(int status) {
  if (status != NC_NOERR) {
    throw std::runtime_error(nc_strerror(status));
  }
}

Writer::Writer(const std::string& path, int mode) {
  must(nc_create(path.c_str(), NC_CLOBBER | mode, &m_id));
}

Writer::~Writer() { EXPECT_EQ(nc_close(m_id), NC_NOERR); }

int Writer::root() const { return m_id; }
int Writer::group(const std::string& name) const { return group(name, m_id); }

int Writer::group(const std::string& name, int parent) const {
  int id = -1;
  must(nc_def_grp(parent, name.c_str(), &id));
  return id;
}

int Writer::dimension(const std::string& name, std::size_t size) const {
  return dimension(name, size, m_id);
}

int Writer::dimension(const std::string& name, std::size_t size, int group) const {
  int id = -1;
  must(nc_def_dim(group, name.c_str(), size, &id));
  return id;
}

int Writer::variable(const std::string& name, nc_type type,
                     const std::vector<int>& dimensions) const {
  return variable(name, type, dimensions, m_id);
}

int Writer::variable(const std::string& name, nc_type type, const std::vector<int>& dimensions,
                     int group) const {
  int id = -1;
  must(nc_def_var(group, name.c_str(), type, static_cast<int>(dimensions.size()), dimensions.data(),
                  &id));
  return id;
}

void Writer::text(int variable, const std::string& attribute, const std::string& value) const {
  text(variable, attribute, value, m_id);
}

void Writer::text(int variable, const std::string& attribute, const std::string& value,
                  int group) const {
  must(nc_put_att_text(group, variable, attribute.c_str(), value.size(), value.data()));
}

void writeCdl(const std::string& path, const std::string& cdl) {
  const std::string source = path + ".cdl";
  writeBytes(source, "netcdf a {\n" + cdl + "\n}\n");
  if (std::system(("ncgen -4 -o '" + path + "' '" + source + "'").c_str()) != 0) {
    throw std::runtime_error("ncgen refuses:\n" + cdl);
  }
}

std::string readBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

const memory::ArrayBase& arrayAt(const File& file, const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string group = slash == std::string::npos ? "" : path.substr(0, slash);
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  return dynamic_cast<const memory::ArrayBase&>(*file.group(group).data(name));
}

std::vector<std::string> valuesOf(const memory::ArrayBase& array) {
  std::vector<std::string> values;
  object_model::TupleX index(array.size().size());
  for (unsigned long k = 0; k < array.numberOfElements(); ++k) {
    unsigned long rest = k;
    for (unsigned long j = 0; j < index.size(); ++j) {
      index[j] = rest % array.size()[j];
      rest /= array.size()[j];
    }
    values.push_back(valueAt(array, index));
  }
  return values;
}

std::vector<unsigned long> shapeOf(const memory::ArrayBase& array) {
  std::vector<unsigned long> shape;
  for (unsigned long k = 0; k < array.size().size(); ++k) {
    shape.push_back(array.size()[k]);
  }
  return shape;
}

std::map<std::string, std::vector<std::string>> contentOf(const memory::Dictionary& dictionary,
                                                          const std::string& path) {
  std::map<std::string, std::vector<std::string>> content;
  for (int k = 0; k < static_cast<int>(dictionary.getNumOfData()); ++k) {
    const object_model::Data* entry = dictionary.data(k);
    const std::string entryPath = path + "/" + entry->getName();
    if (entry->isArray()) {
      content[entryPath] = valuesOf(dynamic_cast<const memory::ArrayBase&>(*entry));
    } else {
      content.merge(contentOf(dynamic_cast<const memory::Dictionary&>(*entry), entryPath));
    }
  }
  return content;
}

OpenOptions countingReads(std::size_t bytes, std::vector<unsigned long>& reads) {
  OpenOptions options;
  options.windowBytes = bytes;
  options.onRead = [&reads](unsigned long read) { reads.push_back(read); };
  return options;
}

FileLimit::FileLimit(rlim_t bytes) {
  getrlimit(RLIMIT_FSIZE, &m_before);
  rlimit limit = m_before;
  limit.rlim_cur = bytes;
  setrlimit(RLIMIT_FSIZE, &limit);
}

FileLimit::~FileLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

#ifdef QUILLON_ADDRESS_SANITIZER
const bool MEMORY_IS_LIMITED = false;
#else
const bool MEMORY_IS_LIMITED = true;
#endif

std::string fateOf(const std::function<void()>& action, unsigned int mostSeconds) {
  const pid_t child = fork();
  if (child == 0) {
    limitMemory();
    alarm(mostSeconds);
    int code = 0;
    try {
      action();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      code = EXCEPTION_STATUS;
    }
    _exit(code);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) {
    return strsignal(WTERMSIG(status));
  }
  if (WEXITSTATUS(status) == EXCEPTION_STATUS) {
    return BY_EXCEPTION;
  }
  return WEXITSTATUS(status) == 0 ? "" : "exit " + std::to_string(WEXITSTATUS(status));
}

void requireError(const std::string& error, const std::string& expected) {
  if (error != expected) {
    throw std::runtime_error(error);
  }
}

std::string errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return {};
}

}  // namespace quillon::netcdf
