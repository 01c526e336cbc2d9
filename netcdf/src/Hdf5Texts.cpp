#include "Hdf5Texts.h"

#include <netcdf.h>
#include <quillon/memory/Bounded.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <mutex>

#include "Hdf5.h"
#include "SteppedRead.h"

namespace quillon::netcdf {
namespace {

/// Positions or extents in the file's order of dimensions, slowest first.
using FileNumbers = std::vector<hsize_t>;

/// Where the file has the first position of a block.
FileNumbers firstOf(const Variable& variable, const memory::Block& block) {
  FileNumbers first(block.start.size());
  for (std::size_t k = 0; k < first.size(); ++k) {
    first[first.size() - 1 - k] = variable.storedIndex(k, block.start[k]);
  }
  return first;
}

FileNumbers fileStepsOf(const Variable& variable) {
  FileNumbers steps(variable.shape.size(), 1);
  for (std::size_t k = 0; k < variable.ranges.size(); ++k) {
    steps[steps.size() - 1 - k] = static_cast<hsize_t>(variable.ranges[k].step);
  }
  return steps;
}

FileNumbers extentsOf(const Hdf5Object& space) {
  const int rank = H5Sget_simple_extent_ndims(space.id());
  FileNumbers extents(static_cast<std::size_t>(std::max(rank, 0)));
  H5Sget_simple_extent_dims(space.id(), extents.data(), nullptr);
  return extents;
}

/// A part of a data set on its way to a block of values in memory.
class Transfer {
 public:
  Transfer(const Variable& variable, const memory::Block& block)
      : m_dataset(openDataset(variable.source->hdf5(), variable.path)),
        m_type(H5Dget_type(m_dataset.id()), H5Tclose),
        m_space(H5Dget_space(m_dataset.id()), H5Sclose),
        m_extents(extentsOf(m_space)),
        m_start(firstOf(variable, block)),
        m_step(fileStepsOf(variable)),
        m_count(inFileOrder<hsize_t>(block.extent.data(), block.extent.size())),
        m_memory(H5Screate_simple(static_cast<int>(m_count.size()), m_count.data(), nullptr),
                 H5Sclose) {}

  bool isPossible() const {
    // never false: it is the data set that was found when the file was opened
    return m_type.exists() && m_memory.exists() && m_extents.size() == m_start.size();
  }

  const Hdf5Object& dataset() const { return m_dataset; }
  const Hdf5Object& type() const { return m_type; }

  /// The first position of the block, and the one behind its last that the data set has: a
  /// dimension may have grown for another variable alone.
  const FileNumbers& start() const { return m_start; }
  FileNumbers end() const {
    FileNumbers end = m_extents;
    for (std::size_t k = 0; k < end.size(); ++k) {
      end[k] = std::min(end[k], m_start[k] + (m_count[k] - 1) * m_step[k] + 1);
    }
    return end;
  }

  /// Reads what the block has of the positions from `first` on up to `end`; the rest of `values`
  /// stays as it is.
  bool read(const FileNumbers& first, const FileNumbers& end, hid_t type, void* values) const {
    if (H5Sget_simple_extent_type(m_space.id()) == H5S_NULL) {
      return true;  // a data set without any value, not even one
    }
    FileNumbers from(first.size());
    FileNumbers to(first.size());
    FileNumbers count(first.size());
    for (std::size_t k = 0; k < first.size(); ++k) {
      to[k] = indexOf(k, first[k]);
      from[k] = m_start[k] + to[k] * m_step[k];
      count[k] = indexOf(k, end[k]) - to[k];
      if (count[k] == 0) {
        return true;
      }
    }
    const FileNumbers ones(first.size(), 1);
    return (first.empty() ||
            // never false: libhdf5 selects any box of the space's rank
            (select(m_space, from, m_step, count) && select(m_memory, to, ones, count))) &&
           H5Dread(m_dataset.id(), type, m_memory.id(), m_space.id(), H5P_DEFAULT, values) >= 0;
  }

 private:
  /// The index in the block of the first of its positions that is not before `position`.
  hsize_t indexOf(std::size_t k, hsize_t position) const {
    const hsize_t distance = position <= m_start[k] ? 0 : position - m_start[k];
    return std::min((distance + m_step[k] - 1) / m_step[k], m_count[k]);
  }

  static bool select(const Hdf5Object& space, const FileNumbers& start, const FileNumbers& step,
                     const FileNumbers& count) {
    return H5Sselect_hyperslab(space.id(), H5S_SELECT_SET, start.data(), step.data(), count.data(),
                               nullptr) >= 0;
  }

  Hdf5Object m_dataset;
  Hdf5Object m_type;
  Hdf5Object m_space;
  FileNumbers m_extents;
  FileNumbers m_start;
  FileNumbers m_step;
  FileNumbers m_count;
  Hdf5Object m_memory;
};

void cutFilling(std::string& text, H5T_str_t padding) {
  if (padding == H5T_STR_NULLTERM) {
    text.resize(std::min(text.find('\0'), text.size()));
  }
  while (!text.empty() &&
         (text.back() == '\0' || (padding == H5T_STR_SPACEPAD && text.back() == ' '))) {
    text.pop_back();
  }
}

bool readFixed(const Variable& variable, const memory::Block& block, const Transfer& transfer,
               std::string* texts) {
  const std::size_t length = H5Tget_size(transfer.type().id());
  std::vector<char> bytes;
  variable.makeRoom(bytes, memory::boundedProduct(block.count, length));
  if (!transfer.read(transfer.start(), transfer.end(), transfer.type().id(), bytes.data())) {
    return false;
  }
  const H5T_str_t padding = H5Tget_strpad(transfer.type().id());
  for (unsigned long k = 0; k < block.count; ++k) {
    texts[k].assign(bytes.data() + k * length, length);
    cutFilling(texts[k], padding);
  }
  return true;
}

/// The type of strings in memory.
Hdf5Object stringType(const Hdf5Object& inFile) {
  Hdf5Object type(H5Tcopy(H5T_C_S1), H5Tclose);
  H5Tset_size(type.id(), H5T_VARIABLE);
  H5Tset_cset(type.id(), H5Tget_cset(inFile.id()));
  return type;
}

/// The strings that libhdf5 made, freed with it.
class Hdf5Strings {
 public:
  Hdf5Strings(const Variable& variable, unsigned long count) { variable.makeRoom(m_texts, count); }
  Hdf5Strings(const Hdf5Strings&) = delete;
  Hdf5Strings& operator=(const Hdf5Strings&) = delete;
  ~Hdf5Strings() { clear(); }

  char** data() { return m_texts.data(); }

  /// Marks all as not written.
  void clear() {
    for (char*& text : m_texts) {
      if (text != &m_unwritten) {
        H5free_memory(text);
      }
      text = &m_unwritten;
    }
  }

  /// `fill` for those that were not written; one that was written without any text is empty.
  void copyTo(std::string* texts, const std::string& fill) const {
    std::transform(m_texts.begin(), m_texts.end(), texts, [&](const char* text) {
      return text == &m_unwritten ? fill : std::string(text == nullptr ? "" : text);
    });
  }

 private:
  std::vector<char*> m_texts;
  char m_unwritten = '\0';
};

/// What stands for strings that were never written.
std::string fillOf(const Hdf5Object& creation, const Hdf5Object& type) {
  char* fill = nullptr;
  if (H5Pget_fill_value(creation.id(), type.id(), static_cast<void*>(&fill)) < 0 ||
      fill == nullptr) {
    return {};
  }
  std::string text = fill;
  H5free_memory(fill);
  return text;
}

/// Reads chunk by chunk, past those that were never written: libhdf5 would have to write the fill
/// value into the file to give it.
class ChunkedStrings {
 public:
  ChunkedStrings(const Transfer& transfer, const Hdf5Object& type, Hdf5Strings& strings)
      : m_transfer(transfer), m_type(type), m_strings(strings), m_end(transfer.end()) {}

  bool read(const Hdf5Object& creation) {
    m_chunk.resize(m_end.size());
    return H5Pget_layout(creation.id()) == H5D_CHUNKED &&
           // never false: what is chunked has chunks
           H5Pget_chunk(creation.id(), static_cast<int>(m_chunk.size()), m_chunk.data()) >= 0 &&
           readFrom(0, m_transfer.start());
  }

 private:
  /// Reads all chunks whose first position along the dimensions before `dimension` is known.
  bool readFrom(std::size_t dimension, FileNumbers first) {
    if (dimension == m_chunk.size()) {
      return readChunk(first);
    }
    first[dimension] -= first[dimension] % m_chunk[dimension];
    for (; first[dimension] < m_end[dimension]; first[dimension] += m_chunk[dimension]) {
      if (!readFrom(dimension + 1, first)) {
        return false;
      }
    }
    return true;
  }

  bool readChunk(const FileNumbers& first) {
    unsigned int mask = 0;
    haddr_t address = HADDR_UNDEF;
    hsize_t bytes = 0;
    if (H5Dget_chunk_info_by_coord(m_transfer.dataset().id(), first.data(), &mask, &address,
                                   &bytes) < 0) {
      return false;
    }
    FileNumbers end = m_end;
    for (std::size_t k = 0; k < end.size(); ++k) {
      end[k] = std::min(end[k], first[k] + m_chunk[k]);
    }
    return address == HADDR_UNDEF || m_transfer.read(first, end, m_type.id(), m_strings.data());
  }

  const Transfer& m_transfer;
  const Hdf5Object& m_type;
  Hdf5Strings& m_strings;
  FileNumbers m_end;
  FileNumbers m_chunk;
};

bool readStrings(const Variable& variable, const memory::Block& block, const Transfer& transfer,
                 std::string* texts) {
  const Hdf5Object type = stringType(transfer.type());
  Hdf5Strings strings(variable, block.count);
  if (transfer.read(transfer.start(), transfer.end(), type.id(), strings.data())) {
    strings.copyTo(texts, {});
    return true;
  }
  strings.clear();
  const Hdf5Object creation(H5Dget_create_plist(transfer.dataset().id()), H5Pclose);
  const std::string fill = fillOf(creation, type);
  if (fill.empty() || !ChunkedStrings(transfer, type, strings).read(creation)) {
    return false;
  }
  strings.copyTo(texts, fill);
  return true;
}

unsigned long bytesOf(const std::string* texts, unsigned long count) {
  unsigned long bytes = 0;
  for (unsigned long k = 0; k < count; ++k) {
    bytes += texts[k].size();
  }
  return bytes;
}

}  // namespace

TextType textTypeOf(const Variable& variable) {
  // never true: libnetcdf has each file with strings open in libhdf5
  if (variable.source->hdf5() < 0) {
    return {};  // never run: likewise
  }
  const QuietHdf5 quiet;
  const Hdf5Object dataset = openDataset(variable.source->hdf5(), variable.path);
  const Hdf5Object type(H5Dget_type(dataset.id()), H5Tclose);
  // never true: libnetcdf has opened the same data set
  if (!type.exists()) {
    // never run: likewise
    return {TextType::Kind::None, 0, "a type that libhdf5 does not find"};
  }
  if (H5Tget_class(type.id()) != H5T_STRING) {
    return {TextType::Kind::None, 0, describeType(type.id())};
  }
  if (H5Tis_variable_str(type.id()) > 0) {
    return {TextType::Kind::Variable, 0, {}};
  }
  return {TextType::Kind::Fixed, H5Tget_size(type.id()), {}};
}

unsigned long readHdf5Texts(const Variable& variable, const memory::Block& block,
                            std::string* texts) {
  const std::lock_guard<std::mutex> guard(libraryLock());
  const QuietHdf5 quiet;
  variable.chunkCache.prepare(variable, block.start.data(), block.extent.data());
  const Transfer transfer(variable, block);
  const bool isVariable = H5Tis_variable_str(transfer.type().id()) > 0;
  const bool isRead =
      // never false: see isPossible()
      transfer.isPossible() && (isVariable ? readStrings(variable, block, transfer, texts)
                                           : readFixed(variable, block, transfer, texts));
  variable.chunkCache.release(variable, block.start.data(), block.extent.data());
  variable.source->file().requireUncut();
  variable.source->require(isRead ? NC_NOERR : NC_EHDFERR, variable.subject() + " cannot be read");
  return isVariable ? bytesOf(texts, block.count) : block.count * H5Tget_size(transfer.type().id());
}

}  // namespace quillon::netcdf
