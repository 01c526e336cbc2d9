#include "HeapDamage.h"

#include <string_view>

#include "MappedFile.h"

namespace quillon::netcdf {
namespace {

using namespace std::string_view_literals;

constexpr unsigned long SEARCHED_BYTES = 256UL << 20U;
constexpr auto FILE_SIGNATURE = "\x89HDF\r\n\x1a\n"sv;
constexpr auto HEAP_SIGNATURE = "GCOL\1\0\0\0"sv;  // with the only version that there is
constexpr unsigned long HEADER_BYTES = 16;         // of a heap and of each object in it

unsigned long littleEndian(std::string_view bytes) {
  unsigned long value = 0;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    value = value << 8U | static_cast<unsigned char>(*byte);
  }
  return value;
}

/// Where the file says how many bytes a size has: the place depends on the version that stands
/// behind the signature.
bool hasWideSizes(std::string_view file) {
  const unsigned long version = static_cast<unsigned char>(file[FILE_SIGNATURE.size()]);
  return file[version < 2 ? 14 : 10] == 8;
}

/// Whether the objects follow each other to the end of the heap, as `rest` goes from a heap on.
bool isSoundHeap(std::string_view rest) {
  if (rest.size() < HEADER_BYTES) {
    return false;
  }
  const unsigned long bytes = littleEndian(rest.substr(8, 8));
  if (bytes < HEADER_BYTES || bytes > rest.size()) {
    return false;
  }
  rest = rest.substr(HEADER_BYTES, bytes - HEADER_BYTES);
  while (rest.size() >= HEADER_BYTES) {
    const bool isFreeSpace = littleEndian(rest.substr(0, 2)) == 0;
    const unsigned long size = littleEndian(rest.substr(8, 8));
    if (size > rest.size() || (isFreeSpace && size < HEADER_BYTES)) {
      return false;
    }
    const unsigned long step = isFreeSpace ? size : HEADER_BYTES + (size + 7) / 8 * 8;
    if (step > rest.size()) {
      return false;
    }
    rest.remove_prefix(step);
  }
  return true;
}

}  // namespace

std::string findHeapDamage(const std::string& path, unsigned long fileBytes) {
  const MappedFile mapped(path, fileBytes);
  const std::string_view file = mapped.bytes();
  if (file.substr(0, FILE_SIGNATURE.size()) != FILE_SIGNATURE || file.size() < HEADER_BYTES ||
      !hasWideSizes(file)) {
    return {};
  }
  const std::string_view searched = file.substr(0, SEARCHED_BYTES);
  for (std::size_t heap = searched.find(HEAP_SIGNATURE); heap != std::string_view::npos;
       heap = searched.find(HEAP_SIGNATURE, heap + 1)) {
    if (!isSoundHeap(file.substr(heap))) {
      return "it is damaged: the heap at byte " + std::to_string(heap) + " is not sound";
    }
  }
  return {};
}

}  // namespace quillon::netcdf
