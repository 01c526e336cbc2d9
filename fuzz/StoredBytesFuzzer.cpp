// The law: whatever bytes a chunk has in its file, and whatever the file says of it, the reader of
// stored bytes gives the values that libnetcdf gives, or leaves them to libnetcdf. What it holds
// the same as in a sound file is the same.

#include <libdeflate.h>
#include <netcdf.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Hdf5File.h"
#include "Input.h"
#include "InputFile.h"
#include "KeptMemory.h"
#include "Law.h"
#include "Source.h"
#include "Variable.h"

namespace quillon::fuzz {
namespace {

using netcdf::Hdf5Object;
using netcdf::Variable;

void require(bool holds) {
  if (!holds) {
    reportBreach("the libraries cannot make the file");
  }
}

hid_t typeOf(unsigned long choice) {
  const hid_t types[] = {H5T_STD_I32LE,  H5T_STD_I32BE, H5T_STD_U8LE,   H5T_STD_I16BE,
                         H5T_IEEE_F32LE, H5T_STD_U64BE, H5T_IEEE_F64LE, H5T_STD_I16LE};
  return types[choice % std::size(types)];
}

constexpr unsigned long SHUFFLE = 0;
constexpr unsigned long DEFLATE = 1;  // and 2 is Fletcher's checksum

/// How a data set is stored, as the input chooses. Shuffling what is deflated already is unheard
/// of, and left to libnetcdf.
struct Case {
  explicit Case(Input& input) : type(typeOf(input.byte())) {
    const unsigned long rank = 1 + input.below(3);
    for (unsigned long k = 0; k < rank; ++k) {
      chunks.push_back(1 + input.below(7));
      extents.push_back(chunks[k] * input.below(3) + 1 + input.below(chunks[k]));
    }
    for (unsigned long k = input.below(4); k > 0; --k) {
      const unsigned long choice = input.below(3);
      const bool isBehindDeflate = isChosen(DEFLATE) && choice == SHUFFLE;
      if (!isChosen(choice) && !isBehindDeflate) {
        filterChoices.push_back(choice);
      }
    }
  }

  bool isChosen(unsigned long filter) const {
    return std::find(filterChoices.begin(), filterChoices.end(), filter) != filterChoices.end();
  }

  Hdf5Object properties() const {
    Hdf5Object result(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
    require(H5Pset_chunk(result.id(), static_cast<int>(chunks.size()), chunks.data()) >= 0);
    for (const unsigned long choice : filterChoices) {
      if (choice == SHUFFLE) {
        H5Pset_shuffle(result.id());
      } else if (choice == DEFLATE) {
        H5Pset_deflate(result.id(), 4);
      } else {
        H5Pset_fletcher32(result.id());
      }
    }
    return result;
  }

  std::size_t values() const {
    std::size_t count = 1;
    for (const hsize_t extent : extents) {
      count *= extent;
    }
    return count;
  }

  hid_t type;
  std::vector<hsize_t> extents;
  std::vector<hsize_t> chunks;
  std::vector<unsigned long> filterChoices;
};

void writeFile(const std::string& path, const Case& some) {
  const Hdf5Object file(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT), H5Fclose);
  const int rank = static_cast<int>(some.extents.size());
  const std::vector<hsize_t> most(some.extents.size(), H5S_UNLIMITED);
  const Hdf5Object space(H5Screate_simple(rank, some.extents.data(), most.data()), H5Sclose);
  const Hdf5Object properties = some.properties();
  const Hdf5Object data(
      H5Dcreate2(file.id(), "v", some.type, space.id(), H5P_DEFAULT, properties.id(), H5P_DEFAULT),
      H5Dclose);
  std::vector<int> values(some.values());
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = static_cast<int>(k * k % 251);
  }
  require(data.exists() &&
          H5Dwrite(data.id(), H5T_NATIVE_INT, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) >= 0);
}

std::vector<std::uint8_t> deflated(const std::vector<std::uint8_t>& bytes) {
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(1), libdeflate_free_compressor);
  std::vector<std::uint8_t> result(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
  result.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(),
                                         result.data(), result.size()));
  return result;
}

/// Changes the stored bytes of a chunk.
void mutate(std::vector<std::uint8_t>& bytes, Input& input) {
  switch (input.below(4)) {
    case 0:  // some of them
      for (unsigned long k = input.below(4); k > 0 && !bytes.empty(); --k) {
        bytes[input.bits<std::uint16_t>() % bytes.size()] ^= input.byte();
      }
      break;
    case 1:  // how many there are
      bytes.resize(1 + input.bits<std::uint16_t>() % 600, input.byte());
      break;
    case 2:  // what they unpack to
      bytes.assign(1 + input.bits<std::uint16_t>() % 600, input.byte());
      bytes = deflated(bytes);
      break;
    default:  // only the facts
      break;
  }
}

void mutateChunks(const std::string& path, const Case& some, Input& input) {
  const Hdf5Object file(H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT), H5Fclose);
  const Hdf5Object data(H5Dopen2(file.id(), "v", H5P_DEFAULT), H5Dclose);
  for (unsigned long count = 1 + input.below(3); count > 0; --count) {
    std::vector<hsize_t> offset;
    for (std::size_t k = 0; k < some.chunks.size(); ++k) {
      offset.push_back(input.below((some.extents[k] - 1) / some.chunks[k] + 1) * some.chunks[k]);
    }
    hsize_t size = 0;
    std::uint32_t skipped = 0;
    require(H5Dget_chunk_storage_size(data.id(), offset.data(), &size) >= 0);
    std::vector<std::uint8_t> bytes(size);
    require(H5Dread_chunk(data.id(), H5P_DEFAULT, offset.data(), &skipped, bytes.data()) >= 0);
    mutate(bytes, input);
    skipped ^= input.oneIn(4) ? input.byte() : 0U;
    // Without filters a chunk has its size.
    if (!some.filterChoices.empty() || bytes.size() == size) {
      require(H5Dwrite_chunk(data.id(), H5P_DEFAULT, skipped, offset.data(), bytes.size(),
                             bytes.data()) >= 0);
    }
  }
}

Variable variableOf(const std::string& path, const Case& some) {
  const auto source = std::make_shared<const netcdf::Source>(path, netcdf::OpenOptions());
  const std::lock_guard<std::mutex> guard(netcdf::libraryLock());
  Variable variable{source, source->id(), -1, "/v", H5Tget_size(some.type), {}, {}};
  variable.shape.assign(some.extents.rbegin(), some.extents.rend());
  require(nc_inq_varid(variable.group, "v", &variable.id) == NC_NOERR);
  return variable;
}

std::string byLibnetcdf(const Variable& variable, unsigned long bytes) {
  std::string values(bytes, '\0');
  const std::lock_guard<std::mutex> guard(netcdf::libraryLock());
  if (nc_get_var(variable.group, variable.id, values.data()) != NC_NOERR) {
    return "an error";
  }
  return values;
}

/// @return whether the values were read.
bool requireTheLaw(const Variable& variable, const Variable& sound, const Case& some) {
  const auto stored = variable.stored.of(variable);
  const auto others = sound.stored.of(sound);
  if (stored == nullptr || others == nullptr) {
    reportBreach("a filter is not known");
  }
  const std::vector<unsigned long> start(variable.shape.size(), 0);
  const unsigned long bytes = some.values() * variable.valueBytes;
  std::string values(bytes, '\0');
  const bool isRead = stored->read(start.data(), variable.shape.data(), values.data());
  // libnetcdf makes something of chunks that are too short, and is not asked for it.
  if (isRead && values != byLibnetcdf(variable, bytes)) {
    reportBreach("the values are others than libnetcdf's");
  }
  if (stored->holdsSame(*others, start.data(), variable.shape.data()) &&
      (!isRead || values != byLibnetcdf(sound, bytes))) {
    reportBreach("other values are held to be the same");
  }
  return isRead;
}

}  // namespace
}  // namespace quillon::fuzz

// The libraries below leak when they give up on a damaged file. The name is the leak sanitizer's.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libnetcdf.so\nleak:libhdf5"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace quillon::fuzz;
  [[maybe_unused]] static const bool keepsMemory = keepMemoryOfFiles();
  Input input(bytes, size);
  const Case some(input);
  const InputFile sound(nullptr, 0);
  writeFile(sound.path(), some);
  const Variable variable = variableOf(sound.path(), some);
  if (!requireTheLaw(variable, variable, some)) {
    reportBreach("a sound file is not read");
  }
  const InputFile mutated(nullptr, 0);
  std::filesystem::copy_file(sound.path(), mutated.path(),
                             std::filesystem::copy_options::overwrite_existing);
  mutateChunks(mutated.path(), some, input);
  requireTheLaw(variableOf(mutated.path(), some), variable, some);
  return 0;
}
