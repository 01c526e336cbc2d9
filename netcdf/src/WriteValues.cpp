#include "WriteValues.h"

#include <netcdf.h>
#include <quillon/memory/ElementTypes.h>
#include <quillon/memory/Values.h>
#include <quillon/memory/Wording.h>
#include <quillon/netcdf/LibraryLock.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <mutex>
#include <variant>

#include "WriteBlocks.h"
#include "WriteRefusal.h"
#include "WriteTimes.h"
#include "WriteTypes.h"

namespace quillon::netcdf {
namespace {

using memory::Block;
using object_model::Array;

// A string's length is not known before it is read.
constexpr unsigned long TEXTS_PER_BLOCK = BLOCK_BYTES / 128;

// In the file: where it stands, how long it is, and what fills it up to a multiple of eight bytes.
constexpr unsigned long BYTES_BESIDE_A_TEXT = 64;

struct Writing {
  const DefinedVariable& variable;
  WriteRoom& room;

  const Array& array() const { return *variable.plan.array; }
  std::string subject() const { return memory::inQuotes(variable.plan.path); }
};

void sync(const Writing& writing) {
  errno = 0;
  requireWritten(nc_sync(writing.variable.file), writing.subject() + " cannot be written");
  writing.room.noteSync();
}

void put(const Writing& writing, const Block& block, const void* values) {
  const std::vector<std::size_t> start(block.start.rbegin(), block.start.rend());
  const std::vector<std::size_t> counts(block.extent.rbegin(), block.extent.rend());
  const std::lock_guard<std::mutex> guard(libraryLock());
  errno = 0;
  const DefinedVariable& variable = writing.variable;
  requireWritten(nc_put_vara(variable.group, variable.id, start.data(), counts.data(), values),
                 writing.subject() + " cannot be written");
  if (writing.room.isSyncDue()) {
    sync(writing);
  }
}

/// The extents of the chunks that the library has chosen; empty where there are none.
std::vector<unsigned long> chunksOf(const Writing& writing) {
  std::vector<std::size_t> chunks(writing.variable.plan.shape.size());
  int storage = NC_CONTIGUOUS;
  const std::lock_guard<std::mutex> guard(libraryLock());
  const int status =
      nc_inq_var_chunking(writing.variable.group, writing.variable.id, &storage, chunks.data());
  return status == NC_NOERR && storage == NC_CHUNKED
             ? std::vector<unsigned long>(chunks.rbegin(), chunks.rend())
             : std::vector<unsigned long>();
}

/// Calls `visit` with blocks that make up the array, for which there is room when each value takes
/// `bytes` in the file. Where the file has chunks, each is written once and as a whole, so that
/// none is packed twice; else there is room for all from the start, as the file has its full length
/// then.
template <class Visit>
void forEachPiece(const Writing& writing, unsigned long bytes, unsigned long maxValues,
                  const Visit& visit) {
  const std::vector<unsigned long> chunks = chunksOf(writing);
  const std::vector<unsigned long>& shape = writing.variable.plan.shape;
  if (chunks.empty()) {
    writing.room.reserveFor(memory::BlockLayout(shape, maxValues).size() * bytes);
    forEachBlock(writing.array(), maxValues, visit);
    return;
  }
  const memory::BoxLayout boxes(shape, maxValues, chunks.data());
  for (unsigned long k = 0; k < boxes.size(); ++k) {
    const Block box = boxes.boxAt(k);
    writing.room.reserveFor(box.count * bytes);
    visit(box);
  }
}

/// Has one number for all missing times.
template <class T>
void fillMissing(const memory::HasTimes& times, const Block& block, T fill, T* values) {
  std::vector<long> microseconds(block.count);
  times.readTimes(block.start.data(), block.extent.data(), microseconds.data());
  for (unsigned long k = 0; k < block.count; ++k) {
    values[k] = microseconds[k] == memory::MISSING_TIME ? fill : values[k];
  }
}

/// The number that is to stand for missing times; null where none is missing.
template <class T>
const T* fillOf(const PlannedVariable& variable) {
  for (const memory::Attribute& attribute : variable.attributes) {
    if (const auto* const fill = std::get_if<std::vector<T>>(&attribute.value);
        fill != nullptr && attribute.name == "_FillValue") {
      return fill->data();
    }
  }
  return nullptr;
}

/// Truth values, too, which are bytes of 0 and 1 in memory as in the file.
template <class T>
void putNumbers(const Writing& writing) {
  const Array& array = writing.array();
  const memory::HasTimes* const times = timesOf(array);
  forEachPiece(writing, sizeof(T), BLOCK_BYTES / sizeof(T), [&](const Block& block) {
    const auto values = std::make_unique<T[]>(block.count);
    memory::copyValues(array, block, values.get());
    if constexpr (IS_WHOLE<T>) {
      const T* const fill = fillOf<T>(writing.variable.plan);
      if (times != nullptr && fill != nullptr) {
        fillMissing(*times, block, *fill, values.get());
      }
    }
    put(writing, block, values.get());
  });
}

void putTexts(const Writing& writing) {
  forEachPiece(writing, BYTES_BESIDE_A_TEXT, TEXTS_PER_BLOCK, [&](const Block& block) {
    std::vector<std::string> texts(block.count);
    memory::copyValues(writing.array(), block, texts.data());
    std::vector<const char*> pointers;
    unsigned long bytes = 0;
    for (const std::string& text : texts) {
      if (text.find('\0') != std::string::npos) {
        throw Refusal("a text of " + writing.subject() +
                      " has a null character, which ends a text in netCDF files");
      }
      pointers.push_back(text.c_str());
      bytes += text.size();
    }
    writing.room.reserveFor(bytes);
    put(writing, block, pointers.data());
  });
}

}  // namespace

void putValues(const DefinedVariable& variable, WriteRoom& room) {
  const Writing writing{variable, room};
  if (!variable.plan.type) {
    putTexts(writing);
    return;
  }
  memory::visitStoredType(*variable.plan.type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    if constexpr (NETCDF_TYPE<T> != NC_NAT) {
      putNumbers<T>(writing);
    }
  });
}

}  // namespace quillon::netcdf
