#include "ClassicHeader.h"

#include <quillon/memory/Bounded.h>

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "BufferedBytes.h"
#include "ClassicFields.h"

namespace quillon::netcdf {
namespace {

constexpr unsigned long RECORD_DIMENSION = 0;  // the length by which a header marks it

constexpr unsigned long MAGIC_BYTES = 4;

/// The version number that the file begins with, 1, 2 or 5; 0 for another format.
char classicVersion(BufferedBytes& file) {
  std::array<char, MAGIC_BYTES> magic{};
  const bool isRead = file.read(0, magic.data(), magic.size());
  const char version = magic[3];
  const bool isClassic = isRead && std::string(magic.data(), 3) == "CDF" &&
                         (version == 1 || version == 2 || version == 5);
  return isClassic ? version : '\0';
}

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
    variable.extents.push_back(dimensions[dimension]);
    if (dimensions[dimension] != RECORD_DIMENSION) {
      variable.bytes = memory::boundedProduct(variable.bytes, dimensions[dimension]);
    } else if (k == 0) {
      variable.hasRecords = true;
    } else {
      throw Damage("the records of variable '" + variable.name + "' are not its first dimension");
    }
  }
  skipAttributes(fields);
  variable.valueBytes = fields.valueBytes();
  variable.bytes = memory::boundedProduct(variable.bytes, variable.valueBytes);
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
      sum = memory::boundedSum(sum, padded(variable.bytes));
      last = variable.bytes;
      ++count;
    }
  }
  return count == 1 ? last : sum;
}

void setRecords(std::vector<ClassicVariable>& variables, unsigned long records) {
  const unsigned long distance = recordBytes(variables);
  for (ClassicVariable& variable : variables) {
    if (variable.hasRecords) {
      variable.extents[0] = records;
      variable.recordStep = distance;
    }
  }
}

void requireValues(const std::vector<ClassicVariable>& variables, unsigned long records,
                   unsigned long headerBytes, unsigned long fileBytes) {
  for (const ClassicVariable& variable : variables) {
    if (variable.hasRecords && records == 0) {
      continue;
    }
    if (variable.begin < headerBytes) {
      throw Damage("the values of variable '" + variable.name + "' begin within the header");
    }
    const unsigned long before =
        variable.hasRecords ? memory::boundedProduct(records - 1, variable.recordStep) : 0;
    const unsigned long end =
        memory::boundedSum(variable.begin, memory::boundedSum(before, variable.bytes));
    if (end > fileBytes) {
      throw Damage("it is cut short or damaged: the values of variable '" + variable.name +
                   "' should end at byte " + std::to_string(end) + " and the file has " +
                   std::to_string(fileBytes));
    }
  }
}

std::vector<ClassicVariable> readSound(Fields& fields, unsigned long fileBytes) {
  const unsigned long unknown = fields.version() == 5 ? UINT64_MAX : UINT32_MAX;
  const unsigned long records = fields.size();
  const std::vector<unsigned long> dimensions = readDimensions(fields);
  skipAttributes(fields);
  std::vector<ClassicVariable> variables = readVariables(fields, dimensions);
  if (records == unknown) {
    throw Damage("it does not say how many records it has: its writer did not finish");
  }
  setRecords(variables, records);
  requireValues(variables, records, fields.position(), fileBytes);
  return variables;
}

}  // namespace

bool isClassicFile(int descriptor) {
  BufferedBytes file(descriptor);
  return classicVersion(file) != 0;
}

std::string findClassicDamage(int descriptor, unsigned long fileBytes,
                              std::vector<ClassicVariable>* variables) {
  BufferedBytes file(descriptor);
  const char version = classicVersion(file);
  if (version == 0) {
    return {};
  }
  try {
    Fields fields(file, MAGIC_BYTES, fileBytes, version);
    std::vector<ClassicVariable> sound = readSound(fields, fileBytes);
    if (variables != nullptr) {
      *variables = std::move(sound);
    }
  } catch (const Damage& damage) {
    return damage.what();
  }
  return {};
}

}  // namespace quillon::netcdf
