#include "StoredValues.h"

#include <netcdf.h>
#include <quillon/memory/Bounded.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "ByteOrder.h"
#include "StoredChunks.h"
#include "StoredForm.h"
#include "StoredRuns.h"
#include "Variable.h"

namespace quillon::netcdf {
namespace {

using Found = std::shared_ptr<const StoredValues>;
using Numbers = std::vector<unsigned long>;

/// libhdf5's types for the numbers of a type of libnetcdf's.
struct FileTypes {
  hid_t littleEndian;
  hid_t bigEndian;
};

FileTypes fileTypesOf(nc_type type) {
  switch (type) {
    case NC_BYTE:
      return {H5T_STD_I8LE, H5T_STD_I8BE};
    case NC_UBYTE:
      return {H5T_STD_U8LE, H5T_STD_U8BE};
    case NC_SHORT:
      return {H5T_STD_I16LE, H5T_STD_I16BE};
    case NC_USHORT:
      return {H5T_STD_U16LE, H5T_STD_U16BE};
    case NC_INT:
      return {H5T_STD_I32LE, H5T_STD_I32BE};
    case NC_UINT:
      return {H5T_STD_U32LE, H5T_STD_U32BE};
    case NC_INT64:
      return {H5T_STD_I64LE, H5T_STD_I64BE};
    case NC_UINT64:
      return {H5T_STD_U64LE, H5T_STD_U64BE};
    case NC_FLOAT:
      return {H5T_IEEE_F32LE, H5T_IEEE_F32BE};
    default:
      return {H5T_IEEE_F64LE, H5T_IEEE_F64BE};
  }
}

/// The steps between values that are stored without gaps.
Numbers stepsOf(const Numbers& extents, unsigned long valueBytes) {
  Numbers steps;
  for (const unsigned long extent : extents) {
    steps.push_back(valueBytes);
    valueBytes = memory::boundedProduct(valueBytes, extent);
  }
  return steps;
}

unsigned long product(const Numbers& factors, unsigned long first) {
  for (const unsigned long factor : factors) {
    first = memory::boundedProduct(first, factor);
  }
  return first;
}

Found findInClassicFile(const Variable& variable, nc_type type) {
  const std::vector<ClassicVariable>& known = variable.source->file().classicVariables();
  const auto id = static_cast<std::size_t>(variable.id);
  // never true: libnetcdf has its variables from the same header
  if (variable.id < 0 || id >= known.size()) {
    return nullptr;  // never run: likewise
  }
  const ClassicVariable& stored = known[id];
  // never true: libnetcdf has both from the same header
  if (stored.valueBytes != variable.valueBytes || stored.extents.size() != variable.shape.size()) {
    return nullptr;  // never run: likewise
  }
  RunPlace place{type, stored.valueBytes, true, stored.begin, {}, {}};
  place.extents.assign(stored.extents.rbegin(), stored.extents.rend());
  place.steps = stepsOf(place.extents, stored.valueBytes);
  if (stored.hasRecords) {
    place.steps.back() = stored.recordStep;
  }
  return std::make_shared<StoredRuns>(variable.source, std::move(place));
}

/// The extents of a data set, fastest dimension first. @return false for one of another rank.
bool readExtents(hid_t data, Numbers& extents, std::size_t rank) {
  const Hdf5Object space(H5Dget_space(data), H5Sclose);
  // never true: a data set of many values has a simple space
  if (!space.exists() || H5Sis_simple(space.id()) <= 0 ||
      // never true: libnetcdf gives the variable the data set's rank
      H5Sget_simple_extent_ndims(space.id()) != static_cast<int>(rank)) {
    return false;  // never run: likewise
  }
  std::vector<hsize_t> sizes(rank);
  // never true: a simple space has extents
  if (H5Sget_simple_extent_dims(space.id(), sizes.data(), nullptr) < 0) {
    return false;  // never run: likewise
  }
  extents.assign(sizes.rbegin(), sizes.rend());
  return true;
}

/// @return false for a filter that is not known here, or not behind one that packs.
bool readFilter(hid_t properties, unsigned number, ChunkFormat& format) {
  unsigned flags = 0;
  std::size_t count = 1;
  unsigned parameter = 0;
  const H5Z_filter_t filter =
      H5Pget_filter2(properties, number, &flags, &count, &parameter, 0, nullptr, nullptr);
  const bool isPacked = std::find(format.filters.begin(), format.filters.end(),
                                  ChunkFilter::Deflate) != format.filters.end();
  if (filter == H5Z_FILTER_DEFLATE && !isPacked) {
    format.filters.push_back(ChunkFilter::Deflate);
  } else if (filter == H5Z_FILTER_SHUFFLE && !isPacked && parameter == format.valueBytes) {
    format.filters.push_back(ChunkFilter::Shuffle);
  } else if (filter == H5Z_FILTER_FLETCHER32) {
    format.filters.push_back(ChunkFilter::Fletcher32);
  } else {
    return false;
  }
  return true;
}

/// @return false where there is a filter that is not known here.
bool readFilters(hid_t properties, ChunkFormat& format) {
  constexpr int MOST_FILTERS = 8;
  const int count = H5Pget_nfilters(properties);
  // never true: a data set's properties tell how many filters it has
  if (count < 0 || count > MOST_FILTERS) {
    return false;
  }
  for (int k = 0; k < count; ++k) {
    if (!readFilter(properties, static_cast<unsigned>(k), format)) {
      return false;
    }
  }
  return true;
}

/// What libhdf5 gives for chunks that were never written; empty where it leaves them as they are.
std::vector<char> fillOf(hid_t properties, hid_t memoryType, unsigned long valueBytes) {
  H5D_fill_time_t time = H5D_FILL_TIME_NEVER;
  std::vector<char> fill(valueBytes);
  // never true: every data set has a fill time
  if (H5Pget_fill_time(properties, &time) < 0 || time == H5D_FILL_TIME_NEVER ||
      // It fails for one that is undefined.
      H5Pget_fill_value(properties, memoryType, fill.data()) < 0) {
    return {};
  }
  return fill;
}

Found findRuns(const Variable& variable, hid_t data, RunPlace place) {
  const haddr_t begin = H5Dget_offset(data);
  // There is no place for values in other files.
  if (begin == HADDR_UNDEF ||
      H5Dget_storage_size(data) != product(place.extents, place.valueBytes)) {
    return nullptr;
  }
  place.begin = begin;
  place.steps = stepsOf(place.extents, place.valueBytes);
  return std::make_shared<StoredRuns>(variable.source, std::move(place));
}

Found findChunks(const Variable& variable, hid_t properties, hid_t memoryType, ChunkedData data) {
  std::vector<hsize_t> sizes(data.extents.size());
  if (H5Pget_chunk(properties, static_cast<int>(sizes.size()), sizes.data()) !=
          static_cast<int>(sizes.size()) ||
      // never true: libhdf5 opens no data set with chunks of no extent
      std::find(sizes.begin(), sizes.end(), 0) != sizes.end() ||
      !readFilters(properties, data.format)) {
    return nullptr;
  }
  constexpr unsigned long MOST_CHUNK_BYTES = 1UL << 32U;  // libhdf5's limit
  data.chunks.assign(sizes.rbegin(), sizes.rend());
  data.format.bytes = product(data.chunks, data.format.valueBytes);
  // never true: libhdf5 opens no data set with larger chunks
  if (data.format.bytes > MOST_CHUNK_BYTES) {
    return nullptr;  // never run: likewise
  }
  data.fill = fillOf(properties, memoryType, data.format.valueBytes);
  return std::make_shared<StoredChunks>(variable.source, std::move(data));
}

Found findInHdf5File(const Variable& variable, nc_type type) {
  const Hdf5File& file = variable.source->plainFile();
  if (!file.isOpen()) {
    return nullptr;
  }
  const QuietHdf5 quiet;
  const std::string path = datasetPath(file.id(), variable.path);
  const Hdf5Object data(H5Dopen2(file.id(), path.c_str(), H5P_DEFAULT), H5Dclose);
  // never true: libnetcdf has opened the same data set
  if (!data.exists() || !file.holds(data.id())) {
    return nullptr;
  }
  const Hdf5Object stored(H5Dget_type(data.id()), H5Tclose);
  const Hdf5Object properties(H5Dget_create_plist(data.id()), H5Pclose);
  const FileTypes types = fileTypesOf(type);
  const bool isLittleEndian = H5Tequal(stored.id(), types.littleEndian) > 0;
  const bool isBigEndian = H5Tequal(stored.id(), types.bigEndian) > 0;
  Numbers extents;
  // never true: every open data set tells how it was created
  if (!(isLittleEndian || isBigEndian) || !properties.exists() ||
      // never true: its extents are of the variable's rank
      !readExtents(data.id(), extents, variable.shape.size())) {
    return nullptr;
  }
  const unsigned long valueBytes = variable.valueBytes;
  switch (H5Pget_layout(properties.id())) {
    case H5D_CONTIGUOUS:
      return findRuns(variable, data.id(),
                      {type, valueBytes, isBigEndian, 0, std::move(extents), {}});
    case H5D_CHUNKED:
      return findChunks(variable, properties.id(),
                        // never true, never false: decided when compiled
                        IS_BIG_ENDIAN_HERE ? types.bigEndian : types.littleEndian,
                        {path, type, {valueBytes, isBigEndian, 0, {}}, std::move(extents), {}, {}});
    default:
      return nullptr;
  }
}

}  // namespace

Found findStoredValues(const Variable& variable) {
  nc_type type = NC_NAT;
  // never true: libnetcdf has told of the variable before
  if (nc_inq_vartype(variable.group, variable.id, &type) != NC_NOERR || !isNumber(type)) {
    return nullptr;
  }
  return variable.source->file().isClassic() ? findInClassicFile(variable, type)
                                             : findInHdf5File(variable, type);
}

Found LazyStoredValues::of(const Variable& variable) const {
  const std::lock_guard<std::mutex> guard(libraryLock());
  if (!m_isKnown) {
    m_values = findStoredValues(variable);
    m_isKnown = true;
  }
  return m_values;
}

}  // namespace quillon::netcdf
