#pragma once

#include <netcdf.h>
#include <quillon/memory/Bounded.h>

#include <array>
#include <stdexcept>
#include <string>

#include "BufferedBytes.h"

namespace quillon::netcdf {

/// What is wrong with a classic file.
class Damage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How much room values of so many bytes take.
inline unsigned long padded(unsigned long bytes) { return memory::boundedSum(bytes, 3) / 4 * 4; }

/// Reads the header's big-endian fields in order and never past the end of the file.
class Fields {
 public:
  Fields(BufferedBytes& file, unsigned long position, unsigned long fileBytes, char version)
      : m_file(file), m_position(position), m_fileBytes(fileBytes), m_version(version) {}

  char version() const { return m_version; }
  unsigned long position() const { return m_position; }

  unsigned long integer(unsigned long bytes) {
    std::array<char, sizeof(unsigned long)> field{};
    read(field.data(), bytes);
    unsigned long value = 0;
    for (unsigned long k = 0; k < bytes; ++k) {
      value = value << 8U | static_cast<unsigned char>(field[k]);
    }
    return value;
  }

  /// A number of things, as wide as the version makes it.
  unsigned long size() { return integer(m_version == 5 ? 8 : 4); }

  /// Where a variable's values begin.
  unsigned long offset() { return integer(m_version == 1 ? 4 : 8); }

  /// The number of entries of a list whose entries take at least `entryBytes` each.
  unsigned long count(unsigned long entryBytes) {
    const unsigned long entries = size();
    if (entries > (m_fileBytes - m_position) / entryBytes) {
      throw Damage("its header claims more entries than the file has room for");
    }
    return entries;
  }

  /// The number of entries of a list that stands behind its tag.
  unsigned long taggedCount(unsigned long tag, unsigned long entryBytes) {
    const unsigned long found = integer(4);
    const unsigned long entries = count(entryBytes);
    if (found != tag && (found != 0 || entries != 0)) {
      throw Damage("its header is damaged");
    }
    return entries;
  }

  /// libnetcdf copies names, however long, into room for its longest.
  std::string name() {
    const unsigned long length = count(1);
    if (length > NC_MAX_NAME) {
      throw Damage("its header has a name of " + std::to_string(length) +
                   " bytes, and names have at most " + std::to_string(NC_MAX_NAME));
    }
    std::string text(padded(length), '\0');
    read(text.data(), text.size());
    text.resize(length);
    return text;
  }

  void skip(unsigned long bytes) { take(bytes); }

  /// The size of one value of the type that comes next.
  unsigned long valueBytes() {
    static constexpr std::array<unsigned long, 12> BYTES = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
    const unsigned long lastType = m_version == 5 ? 11 : 6;
    const unsigned long type = integer(4);
    if (type == 0 || type > lastType) {
      throw Damage("its header names a type that does not exist");
    }
    return BYTES.at(type);
  }

 private:
  void read(char* destination, unsigned long bytes) {
    take(bytes);
    if (!m_file.read(m_position - bytes, destination, bytes)) {
      throw Damage("its header cannot be read");
    }
  }

  void take(unsigned long bytes) {
    if (bytes > m_fileBytes - m_position) {
      throw Damage("it ends within its header");
    }
    m_position += bytes;
  }

  BufferedBytes& m_file;
  unsigned long m_position;
  unsigned long m_fileBytes;
  char m_version;
};

}  // namespace quillon::netcdf
