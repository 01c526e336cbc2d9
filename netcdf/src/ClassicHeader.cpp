#include "ClassicHeader.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Bounded.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long RECORD_DIMENSION = 0;  // the length by which a header marks it

constexpr unsigned long MAGIC_BYTES = 4;

/// The version number that the file begins with, 1, 2 or 5; 0 for another format.
char classicVersion(std::ifstream& in) {
  std::array<char, MAGIC_BYTES> magic{};
  in.read(magic.data(), magic.size());
  const char version = magic[3];
  const bool isClassic =
      in && std::string(magic.data(), 3) == "CDF" && (version == 1 || version == 2 || version == 5);
  return isClassic ? version : '\0';
}

class Damage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

unsigned long padded(unsigned long bytes) { return boundedSum(bytes, 3) / 4 * 4; }

/// Reads the header's big-endian fields in order and never past the end of the file.
class Fields {
 public:
  Fields(std::ifstream& in, unsigned long position, unsigned long fileBytes, char version)
      : m_in(in), m_position(position), m_fileBytes(fileBytes), m_version(version) {}

  char version() const { return m_version; }
  unsigned long position() const { return m_position; }

  unsigned long integer(unsigned long bytes) {
    std::array<char, sizeof(unsigned long)> field{};
    take(bytes);
    if (!m_in.read(field.data(), static_cast<std::streamsize>(bytes))) {
      throw Damage("its header cannot be read");
    }
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

  std::string name() {
    std::string text(count(1), '\0');
    const unsigned long bytes = padded(text.size());
    take(bytes);
    m_in.read(text.data(), static_cast<std::streamsize>(text.size()));
    m_in.ignore(static_cast<std::streamsize>(bytes - text.size()));
    return text;
  }

  void skip(unsigned long bytes) {
    take(bytes);
    m_in.seekg(static_cast<std::streamoff>(m_position));
  }

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
  void take(unsigned long bytes) {
    if (bytes > m_fileBytes - m_position) {
      throw Damage("it ends within its header");
    }
    m_position += bytes;
  }

  std::ifstream& m_in;
  unsigned long m_position;
  unsigned long m_fileBytes;
  char m_version;
};

struct ClassicVariable {
  std::string name;
  bool hasRecords = false;
  unsigned long bytes = 0;  // of all values, or of one record's
  unsigned long begin = 0;
};

void skipAttributes(Fields& fields) {
  const unsigned long attributes = fields.taggedCount(12, 12);
  for (unsigned long k = 0; k < attributes; ++k) {
    fields.name();
    const unsigned long valueBytes = fields.valueBytes();
    fields.skip(padded(fields.count(valueBytes) * valueBytes));
  }
}

std::vector<unsigned long> readDimensions(Fields& fields) {
  const unsigned long count = fields.taggedCount(10, 8);
  std::vector<unsigned long> lengths;
  for (unsigned long k = 0; k < count; ++k) {
    fields.name();
    lengths.push_back(fields.size());
  }
  return lengths;
}

ClassicVariable readVariable(Fields& fields, const std::vector<unsigned long>& dimensions) {
  ClassicVariable variable;
  variable.name = fields.name();
  variable.bytes = 1;
  const unsigned long rank = fields.count(4);
  for (unsigned long k = 0; k < rank; ++k) {
    const unsigned long dimension = fields.size();
    if (dimension >= dimensions.size()) {
      throw Damage("variable '" + variable.name + "' has a dimension that does not exist");
    }
    if (dimensions[dimension] != RECORD_DIMENSION) {
      variable.bytes = boundedProduct(variable.bytes, dimensions[dimension]);
    } else if (k == 0) {
      variable.hasRecords = true;
    } else {
      throw Damage("the records of variable '" + variable.name + "' are not its first dimension");
    }
  }
  skipAttributes(fields);
  variable.bytes = boundedProduct(variable.bytes, fields.valueBytes());
  fields.size();  // the size of the values once more, which need not be right
  variable.begin = fields.offset();
  return variable;
}

std::vector<ClassicVariable> readVariables(Fields& fields,
                                           const std::vector<unsigned long>& dimensions) {
  const unsigned long count = fields.taggedCount(11, 28);
  std::vector<ClassicVariable> variables;
  for (unsigned long k = 0; k < count; ++k) {
    variables.push_back(readVariable(fields, dimensions));
  }
  return variables;
}

/// The distance from one record to the next. The records of a variable that alone has records
/// follow each other without padding.
unsigned long recordBytes(const std::vector<ClassicVariable>& variables) {
  unsigned long sum = 0;
  unsigned long count = 0;
  unsigned long last = 0;
  for (const ClassicVariable& variable : variables) {
    if (variable.hasRecords) {
      sum = boundedSum(sum, padded(variable.bytes));
      last = variable.bytes;
      ++count;
    }
  }
  return count == 1 ? last : sum;
}

void requireValues(const std::vector<ClassicVariable>& variables, unsigned long records,
                   unsigned long headerBytes, unsigned long fileBytes) {
  const unsigned long distance = recordBytes(variables);
  for (const ClassicVariable& variable : variables) {
    if (variable.hasRecords && records == 0) {
      continue;
    }
    if (variable.begin < headerBytes) {
      throw Damage("the values of variable '" + variable.name + "' begin within the header");
    }
    const unsigned long before = variable.hasRecords ? boundedProduct(records - 1, distance) : 0;
    const unsigned long end = boundedSum(variable.begin, boundedSum(before, variable.bytes));
    if (end > fileBytes) {
      throw Damage("it is cut short or damaged: the values of variable '" + variable.name +
                   "' should end at byte " + std::to_string(end) + " and the file has " +
                   std::to_string(fileBytes));
    }
  }
}

void requireSound(Fields& fields, unsigned long fileBytes) {
  const unsigned long unknown = fields.version() == 5 ? UINT64_MAX : UINT32_MAX;
  const unsigned long records = fields.size();
  const std::vector<unsigned long> dimensions = readDimensions(fields);
  skipAttributes(fields);
  const std::vector<ClassicVariable> variables = readVariables(fields, dimensions);
  if (records == unknown) {
    throw Damage("it does not say how many records it has: its writer did not finish");
  }
  requireValues(variables, records, fields.position(), fileBytes);
}

}  // namespace

bool isClassicFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return classicVersion(in) != 0;
}

std::string findClassicDamage(const std::string& path, unsigned long fileBytes) {
  std::ifstream in(path, std::ios::binary);
  const char version = classicVersion(in);
  try {
    Fields fields(in, MAGIC_BYTES, fileBytes, version);
    requireSound(fields, fileBytes);
  } catch (const Damage& damage) {
    return damage.what();
  }
  return {};
}

}  // namespace quillon::netcdf
