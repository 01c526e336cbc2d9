#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netcdf.h>
#include <object_model/TupleX.h>
#include <quillon/memory/ArrayBase.h>
#include <quillon/netcdf/File.h>
#include <sys/resource.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/ScratchDirectory.h"

namespace quillon::netcdf {

/// Fails the test that runs with the library's own words unless `status` is success.
void must(int status);

using Scratch = test::ScratchDirectory;

/// Writes a netCDF file through the C library and closes it when it goes.
class Writer {
 public:
  /// `mode` is the format's flag, such as NC_NETCDF4, or 0 for CDF-1.
  Writer(const std::string& path, int mode);
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer();

  int root() const;
  int group(const std::string& name) const;
  int group(const std::string& name, int parent) const;
  int dimension(const std::string& name, std::size_t size) const;
  int dimension(const std::string& name, std::size_t size, int group) const;
  int variable(const std::string& name, nc_type type, const std::vector<int>& dimensions) const;
  int variable(const std::string& name, nc_type type, const std::vector<int>& dimensions,
               int group) const;
  void text(int variable, const std::string& attribute, const std::string& value) const;
  void text(int variable, const std::string& attribute, const std::string& value, int group) const;

  /// Writes values from the first position on, as many as `extent` says.
  template <class Value>
  void put(int variable, const std::vector<std::size_t>& extent,
           const std::vector<Value>& values) const {
    put(variable, extent, values, m_id);
  }

  template <class Value>
  void put(int variable, const std::vector<std::size_t>& extent, const std::vector<Value>& values,
           int group) const {
    nc_enddef(m_id);  // fails where the file is past its definitions, which is what is wanted
    const std::vector<std::size_t> start(extent.size(), 0);
    must(nc_put_vara(group, variable, start.data(), extent.data(), values.data()));
  }

 private:
  int m_id = -1;
};

/// Makes a netCDF-4 file of what `dimensions:` and the rest of a CDL text say, by ncgen.
void writeCdl(const std::string& path, const std::string& cdl);

std::string readBytes(const std::string& path);
void writeBytes(const std::string& path, const std::string& bytes);

/// The array at a path such as "climate/SST".
const memory::ArrayBase& arrayAt(const File& file, const std::string& path);

/// An array's values as text to the last digit, dimension 0 fastest.
std::vector<std::string> valuesOf(const memory::ArrayBase& array);

/// The shape, dimension 0 first.
std::vector<unsigned long> shapeOf(const memory::ArrayBase& array);

/// All arrays of a dictionary and of those in it with their values, by path.
std::map<std::string, std::vector<std::string>> contentOf(const memory::Dictionary& dictionary,
                                                          const std::string& path = {});

/// Options with a window of `bytes` that count in `reads` the bytes of each read.
OpenOptions countingReads(std::size_t bytes, std::vector<unsigned long>& reads);

/// Lets no file of this process become longer than so many bytes for as long as it lives. What
/// writes more ends the process.
class FileLimit {
 public:
  explicit FileLimit(rlim_t bytes);
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;
  ~FileLimit();

 private:
  rlimit m_before{};
};

/// What `fateOf` says of an action that throws.
inline constexpr const char* BY_EXCEPTION = "exception";

/// Whether `fateOf` limits memory: that of the address sanitizer cannot be.
extern const bool MEMORY_IS_LIMITED;

/// Runs `action` in a process of its own with little memory and time, and returns what ended it: ""
/// when it came to its end, else the signal, the exit status or `BY_EXCEPTION`.
std::string fateOf(const std::function<void()>& action, unsigned int mostSeconds = 120);

/// What an action of `fateOf` throws where it ended with another error than it should.
void requireError(const std::string& error, const std::string& expected);

/// The message with which `action` fails; "" when it does not fail with an `Error`.
std::string errorOf(const std::function<void()>& action);

}  // namespace quillon::netcdf
