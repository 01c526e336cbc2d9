// The law: whatever a dictionary holds, what libnetcdf is told to write is that and nothing else:
// the groups, dimensions, variables and attributes, each value once, of chunks whole ones. It is
// told nothing that it would refuse but for texts with null characters, and closes what it began.
// Where it fails, so does the writer.
//
// How libnetcdf makes a file of that is up to it: here its functions are this program's, which keep
// what they are told.

#include <netcdf.h>
#include <object_model/TupleX.h>
#include <quillon/memory/TimeUnits.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "AnyDictionary.h"
#include "Input.h"
#include "Law.h"
#include "WriteFile.h"
#include "WritePlan.h"
#include "WriteRefusal.h"

namespace quillon::fuzz {
namespace {

using memory::Dictionary;

/// A type, and values of it as bytes.
struct Told {
  nc_type type = NC_NAT;
  std::vector<std::string> values;

  bool operator==(const Told& other) const { return type == other.type && values == other.values; }
};

using ToldAttributes = std::map<std::string, Told>;

struct ToldDimension {
  std::string name;
  std::size_t size = 0;
  int group = 0;
};

struct ToldVariable {
  std::string name;
  nc_type type = NC_NAT;
  std::vector<int> dimensions;      // slowest first
  std::vector<std::size_t> chunks;  // as many; none for one piece
  std::vector<std::string> values;
  std::vector<int> timesPut;  // of each value
  ToldAttributes attributes;
  bool isDeflated = false;
};

struct ToldGroup {
  std::string name;
  int parent = -1;
  std::vector<ToldVariable> variables;
  ToldAttributes attributes;
};

/// What libnetcdf was told.
struct ToldFile {
  std::vector<ToldGroup> groups;
  std::vector<ToldDimension> dimensions;
  Input choices{nullptr, 0};            // of what is up to the library
  unsigned long callsUntilFailure = 0;  // 0 where none fails
  bool hasFailed = false;
  bool isDefined = false;
  int timesOpened = 0;
  int timesClosed = 0;
};

ToldFile told;

/// For each call that the library may fail in. @return its status.
int statusOfCall() {
  if (told.callsUntilFailure > 0 && --told.callsUntilFailure == 0) {
    told.hasFailed = true;
    return NC_EHDFERR;
  }
  return NC_NOERR;
}

ToldGroup& groupAt(int id) { return told.groups.at(static_cast<std::size_t>(id)); }
ToldDimension& dimensionAt(int id) { return told.dimensions.at(static_cast<std::size_t>(id)); }
ToldVariable& variableAt(int group, int id) {
  return groupAt(group).variables.at(static_cast<std::size_t>(id));
}
ToldAttributes& attributesAt(int group, int variable) {
  return variable == NC_GLOBAL ? groupAt(group).attributes : variableAt(group, variable).attributes;
}

/// Whether a group or variable in the group is called so, of which there can be only one.
bool isTaken(int group, const std::string& name) {
  const std::vector<ToldVariable>& variables = groupAt(group).variables;
  return std::any_of(variables.begin(), variables.end(),
                     [&](const ToldVariable& each) { return each.name == name; }) ||
         std::any_of(told.groups.begin(), told.groups.end(), [&](const ToldGroup& each) {
           return each.parent == group && each.name == name;
         });
}

bool isDimension(int group, const std::string& name) {
  return std::any_of(
      told.dimensions.begin(), told.dimensions.end(),
      [&](const ToldDimension& each) { return each.group == group && each.name == name; });
}

std::size_t sizeOf(const ToldVariable& variable) {
  std::size_t size = 1;
  for (const int id : variable.dimensions) {
    size *= dimensionAt(id).size;
  }
  return size;
}

std::size_t bytesOf(nc_type type) {
  switch (type) {
    case NC_BYTE:
    case NC_UBYTE:
    case NC_CHAR:
      return 1;
    case NC_SHORT:
    case NC_USHORT:
      return 2;
    case NC_INT:
    case NC_UINT:
    case NC_FLOAT:
      return 4;
    default:
      return 8;
  }
}

/// Values of libnetcdf's as bytes.
std::vector<std::string> valuesAt(const void* values, std::size_t count, nc_type type) {
  std::vector<std::string> result;
  for (std::size_t k = 0; k < count; ++k) {
    result.push_back(
        type == NC_STRING
            ? std::string(static_cast<const char* const*>(values)[k])
            : std::string(static_cast<const char*>(values) + k * bytesOf(type), bytesOf(type)));
  }
  return result;
}

void requireWholeChunks(const ToldVariable& variable, const std::size_t* start,
                        const std::size_t* counts) {
  for (std::size_t k = 0; k < variable.chunks.size(); ++k) {
    const std::size_t end = start[k] + counts[k];
    if (start[k] % variable.chunks[k] != 0 ||
        (end % variable.chunks[k] != 0 && end != dimensionAt(variable.dimensions[k]).size)) {
      reportBreach("a chunk is written in pieces");
    }
  }
}

void put(ToldVariable& variable, const std::size_t* start, const std::size_t* counts,
         const void* values) {
  const std::size_t rank = variable.dimensions.size();
  std::size_t count = 1;
  for (std::size_t k = 0; k < rank; ++k) {
    count *= counts[k];
  }
  const std::vector<std::string> all = valuesAt(values, count, variable.type);
  for (std::size_t number = 0; number < count; ++number) {
    std::size_t place = 0;
    std::size_t rest = number;
    std::size_t step = 1;
    for (std::size_t k = rank; k > 0; --k) {
      const std::size_t size = dimensionAt(variable.dimensions[k - 1]).size;
      const std::size_t index = start[k - 1] + rest % counts[k - 1];
      if (index >= size) {
        reportBreach("a value is put where there is no place");
      }
      place += index * step;
      rest /= counts[k - 1];
      step *= size;
    }
    variable.values[place] = all[number];
    ++variable.timesPut[place];
  }
}

// What it is to be told.

template <class T>
constexpr nc_type typeOf() {
  if constexpr (std::is_same_v<T, signed char> || std::is_same_v<T, bool>) {
    return NC_BYTE;
  } else if constexpr (std::is_same_v<T, unsigned char>) {
    return NC_UBYTE;
  } else if constexpr (std::is_same_v<T, short>) {
    return NC_SHORT;
  } else if constexpr (std::is_same_v<T, unsigned short>) {
    return NC_USHORT;
  } else if constexpr (std::is_same_v<T, int>) {
    return NC_INT;
  } else if constexpr (std::is_same_v<T, unsigned int>) {
    return NC_UINT;
  } else if constexpr (std::is_same_v<T, long>) {
    return NC_INT64;
  } else if constexpr (std::is_same_v<T, unsigned long>) {
    return NC_UINT64;
  } else if constexpr (std::is_same_v<T, float>) {
    return NC_FLOAT;
  } else {
    return NC_DOUBLE;
  }
}

template <class T>
std::string rawBytes(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof(value));
}

Told toldOf(const memory::AttributeValue& value) {
  return std::visit(
      [](const auto& values) -> Told {
        using Values = std::decay_t<decltype(values)>;
        if constexpr (std::is_same_v<Values, std::string>) {
          return {NC_CHAR, {values}};
        } else if constexpr (std::is_same_v<Values, std::vector<std::string>>) {
          return {NC_STRING, values};
        } else {
          Told result{typeOf<typename Values::value_type>(), {}};
          for (const auto& each : values) {
            result.values.push_back(rawBytes(each));
          }
          return result;
        }
      },
      value);
}

/// Attributes that the object has beside those that follow from what it is.
void addOwn(const memory::HasAttributes& object, nc_type type, ToldAttributes& attributes) {
  for (const memory::Attribute& own : object.attributes()) {
    const bool isChoice = own.name == "_FillValue" || own.name == "calendar";
    if (isChoice || attributes.count(own.name) == 0) {
      attributes[own.name] = toldOf(own.value);
      if (type == NC_STRING && own.name == "_FillValue") {
        attributes[own.name].type = NC_STRING;
      }
    }
  }
}

void addText(const std::string& name, const std::string& text, ToldAttributes& attributes) {
  if (!text.empty()) {
    attributes[name] = {NC_CHAR, {text}};
  }
}

void requireSame(const ToldAttributes& found, const ToldAttributes& expected) {
  if (found != expected) {
    reportBreach("the attributes are others");
  }
}

/// One after the other, the fastest dimension first.
class Indices {
 public:
  explicit Indices(const object_model::Array& array) : m_array(array), m_index(rank(array)) {}

  const object_model::Tuple& at(std::size_t number) {
    for (unsigned long k = 0; k < m_index.size(); ++k) {
      m_index[k] = number % m_array.size()[k];
      number /= m_array.size()[k];
    }
    return m_index;
  }

 private:
  static unsigned long rank(const object_model::Array& array) { return array.size().size(); }

  const object_model::Array& m_array;
  object_model::TupleX m_index;
};

/// Whether stored numbers are the same; any NaN is as good as another.
template <class T>
bool areSameBytes(const std::string& found, T expected) {
  T value{};
  std::memcpy(&value, found.data(), sizeof(value));
  return found == rawBytes(expected) || (value != value && expected != expected);
}

template <class T>
bool isSameValue(const std::string& found, const object_model::Array& array,
                 const object_model::Tuple& index) {
  if constexpr (std::is_same_v<T, std::string>) {
    return found == array.getValueAsString(index);
  } else if constexpr (std::is_same_v<T, bool>) {
    return found == std::string(1, array.getValueAsBoolean(index) ? '\1' : '\0');
  } else if constexpr (std::is_floating_point_v<T>) {
    return areSameBytes(found, static_cast<T>(array.getValueAsDouble(index)));
  } else if constexpr (std::is_signed_v<T>) {
    return areSameBytes(found, static_cast<T>(array.getValueAsInt(index)));
  } else {
    return areSameBytes(found, static_cast<T>(array.getValueAsUInt(index)));
  }
}

template <class T>
void requireValues(const ToldVariable& found, const object_model::Array& array) {
  Indices indices(array);
  for (std::size_t k = 0; k < found.values.size(); ++k) {
    if (!isSameValue<T>(found.values[k], array, indices.at(k))) {
      reportBreach("a value is another one");
    }
  }
}

template <class T>
bool requireTyped(const ToldVariable& found, const memory::ArrayBase& array) {
  if (dynamic_cast<const memory::TypedArray<T>*>(&array) == nullptr) {
    return false;
  }
  ToldAttributes expected;
  nc_type type = NC_STRING;
  if constexpr (!std::is_same_v<T, std::string>) {
    type = typeOf<T>();
  }
  if constexpr (std::is_floating_point_v<T>) {
    expected["_FillValue"] = {type, {rawBytes(std::numeric_limits<T>::quiet_NaN())}};
  }
  addText("dtype", std::is_same_v<T, bool> ? "bool" : "", expected);
  addOwn(array, type, expected);
  requireEqual(found.type, type);
  requireSame(found.attributes, expected);
  requireValues<T>(found, array);
  return true;
}

/// A time that is missing is written as the number that says so.
bool requireTimes(const ToldVariable& found, const memory::ArrayBase& array) {
  const auto* const times = dynamic_cast<const memory::TimeArray*>(&array);
  if (times == nullptr) {
    return false;
  }
  const auto fill = found.attributes.find("_FillValue");
  ToldAttributes expected;
  addText("units", array.getUnit(), expected);
  addText("calendar", memory::nameOf(times->calendar()), expected);
  addOwn(array, NC_INT64, expected);
  if (fill != found.attributes.end()) {
    expected["_FillValue"] = fill->second;
  }
  requireEqual(found.type, NC_INT64);
  requireSame(found.attributes, expected);
  Indices indices(array);
  for (std::size_t k = 0; k < found.values.size(); ++k) {
    const long time = array.getValueAsInt(indices.at(k));
    const bool isFill =
        fill != found.attributes.end() && fill->second == Told{NC_INT64, {found.values[k]}};
    if (time == memory::MISSING_TIME ? !isFill : isFill || found.values[k] != rawBytes(time)) {
      reportBreach("a time is another one");
    }
  }
  return true;
}

/// Whether what is in one group can be had by another one in it.
bool isSeenFrom(int group, int outer) {
  while (group != outer && group >= 0) {
    group = groupAt(group).parent;
  }
  return group == outer;
}

void requireDimensions(const ToldVariable& found, int group, const memory::ArrayBase& array) {
  const memory::ArrayDescriptor* const facts = array.getInformation();
  const unsigned long rank = array.size().size();
  requireEqual<unsigned long>(found.dimensions.size(), rank);
  for (unsigned long k = 0; k < rank; ++k) {
    const ToldDimension& dimension = dimensionAt(found.dimensions[rank - 1 - k]);
    requireEqual(dimension.name, facts->getAxisInfo(k)->getAxisName());
    requireEqual<unsigned long>(dimension.size, array.size()[k]);
    if (!isSeenFrom(group, dimension.group)) {
      reportBreach("a dimension stands in another group");
    }
  }
}

void requireArray(const ToldVariable& found, int group, const memory::ArrayBase& array,
                  const netcdf::WriteOptions& options) {
  requireDimensions(found, group, array);
  const bool isKnown =
      requireTyped<double>(found, array) || requireTyped<float>(found, array) ||
      requireTyped<short>(found, array) || requireTyped<unsigned short>(found, array) ||
      requireTyped<unsigned char>(found, array) || requireTyped<long>(found, array) ||
      requireTyped<unsigned long>(found, array) || requireTyped<bool>(found, array) ||
      requireTyped<std::string>(found, array) || requireTimes(found, array);
  if (!isKnown) {
    reportBreach("values are written that no file can hold");
  }
  if (std::any_of(found.timesPut.begin(), found.timesPut.end(), [](int n) { return n != 1; })) {
    reportBreach("a value is not written once");
  }
  requireEqual(found.isDeflated,
               options.deflate > 0 && found.type != NC_STRING && !found.dimensions.empty());
}

void requireGroup(int group, const Dictionary& dictionary, const netcdf::WriteOptions& options) {
  ToldAttributes expected;
  addText("title", dictionary.getDescription(), expected);
  addOwn(dictionary, NC_NAT, expected);
  requireSame(groupAt(group).attributes, expected);
  std::size_t variables = 0;
  std::size_t groups = 0;
  for (int k = 0; static_cast<unsigned long>(k) < dictionary.getNumOfData(); ++k) {
    const object_model::Data& entry = *dictionary.data(k);
    const std::string name = entry.getName();
    if (const auto* const inner = dynamic_cast<const Dictionary*>(&entry)) {
      const auto found = std::find_if(
          told.groups.begin(), told.groups.end(),
          [&](const ToldGroup& each) { return each.parent == group && each.name == name; });
      if (found == told.groups.end()) {
        reportBreach("a dictionary is missing");
      }
      ++groups;
      requireGroup(static_cast<int>(found - told.groups.begin()), *inner, options);
      continue;
    }
    const std::vector<ToldVariable>& all = groupAt(group).variables;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const ToldVariable& each) { return each.name == name; });
    if (found == all.end()) {
      reportBreach("an array is missing");
    }
    ++variables;
    requireArray(*found, group, dynamic_cast<const memory::ArrayBase&>(entry), options);
  }
  requireEqual(groupAt(group).variables.size(), variables);
  requireEqual<long>(std::count_if(told.groups.begin(), told.groups.end(),
                                   [&](const ToldGroup& each) { return each.parent == group; }),
                     static_cast<long>(groups));
}

/// Whether a text has a null character, which ends it.
bool hasNull(const std::string& text) { return text.find('\0') != std::string::npos; }

bool hasNull(const memory::HasAttributes& object) {
  const std::vector<memory::Attribute> attributes = object.attributes();
  return std::any_of(attributes.begin(), attributes.end(), [](const memory::Attribute& each) {
    const Told value = toldOf(each.value);
    return (value.type == NC_CHAR || value.type == NC_STRING) &&
           std::any_of(value.values.begin(), value.values.end(),
                       [](const std::string& text) { return hasNull(text); });
  });
}

bool hasNullInside(const Dictionary& dictionary) {
  bool found = hasNull(dictionary);
  for (int k = 0; static_cast<unsigned long>(k) < dictionary.getNumOfData(); ++k) {
    const object_model::Data& entry = *dictionary.data(k);
    if (const auto* const inner = dynamic_cast<const Dictionary*>(&entry)) {
      found = found || hasNullInside(*inner);
      continue;
    }
    const auto& array = dynamic_cast<const memory::ArrayBase&>(entry);
    found = found || hasNull(array);
    if (array.getElementType() == object_model::ElementType::String) {
      Indices indices(array);
      for (std::size_t n = 0; n < array.numberOfElements(); ++n) {
        found = found || hasNull(array.getValueAsString(indices.at(n)));
      }
    }
  }
  return found;
}

/// @return whether the writer said that it was done.
bool write(const netcdf::Plan& plan, const netcdf::WriteOptions& options) {
  static const int descriptor = memfd_create("file", MFD_CLOEXEC);
  try {
    netcdf::NewFile file("", descriptor, plan);
    file.define(options);
    file.putValues();
    file.close();
    return true;
  } catch (const netcdf::Refusal&) {
    return false;
  }
}

void check(Input input) {
  told = {};
  const netcdf::WriteOptions options{static_cast<int>(input.below(3)), input.oneIn(2)};
  told.callsUntilFailure = input.oneIn(8) ? input.byte() : 0;
  const Dictionary dictionary = AnyDictionary(input).make("root", 2);
  told.choices = Input(input.rest());
  netcdf::Plan plan;
  try {
    plan = netcdf::planOf(dictionary);
  } catch (const netcdf::Refusal&) {
    return;
  }
  const bool isWritten = write(plan, options);
  requireEqual(told.timesClosed, told.timesOpened);
  if (isWritten && told.hasFailed) {
    reportBreach("a failure is not told");
  }
  if (isWritten) {
    requireGroup(0, dictionary, options);
  } else if (!told.hasFailed && !hasNullInside(dictionary)) {
    reportBreach("what was planned is not written");
  }
  told = {};  // what is kept looks like a leak
}

}  // namespace
}  // namespace quillon::fuzz

using namespace quillon::fuzz;

extern "C" {

int nc_create(const char* /*path*/, int /*mode*/, int* id) {
  *id = 0;
  const int status = statusOfCall();
  if (status == NC_NOERR) {
    ++told.timesOpened;
    told.groups.emplace_back();
  }
  return status;
}

int nc_set_fill(int /*file*/, int /*mode*/, int* /*before*/) { return NC_NOERR; }

int nc_def_grp(int parent, const char* name, int* id) {
  if (isTaken(parent, name)) {
    return NC_ENAMEINUSE;
  }
  *id = static_cast<int>(told.groups.size());
  ToldGroup group;
  group.name = name;
  group.parent = parent;
  told.groups.push_back(group);
  return statusOfCall();
}

int nc_inq_grpname(int id, char* name) {
  std::strcpy(name, groupAt(id).name.c_str());
  return NC_NOERR;
}

int nc_def_dim(int group, const char* name, std::size_t size, int* id) {
  if (isDimension(group, name)) {
    return NC_ENAMEINUSE;
  }
  *id = static_cast<int>(told.dimensions.size());
  told.dimensions.push_back({name, size, group});
  return statusOfCall();
}

int nc_inq_dimname(int /*group*/, int id, char* name) {
  std::strcpy(name, dimensionAt(id).name.c_str());
  return NC_NOERR;
}

int nc_def_var(int group, const char* name, nc_type type, int rank, const int* dimensions,
               int* id) {
  if (isTaken(group, name)) {
    return NC_ENAMEINUSE;
  }
  ToldVariable variable;
  variable.name = name;
  variable.type = type;
  variable.dimensions.assign(dimensions, dimensions + rank);
  variable.values.resize(sizeOf(variable));
  variable.timesPut.resize(variable.values.size());
  const unsigned long isChunked = told.choices.below(2);
  for (int k = 0; isChunked != 0 && k < rank; ++k) {
    variable.chunks.push_back(1 + told.choices.below(4));
  }
  *id = static_cast<int>(groupAt(group).variables.size());
  groupAt(group).variables.push_back(variable);
  return statusOfCall();
}

int nc_inq_varname(int group, int id, char* name) {
  std::strcpy(name, variableAt(group, id).name.c_str());
  return NC_NOERR;
}

int nc_def_var_deflate(int group, int id, int /*isShuffled*/, int isDeflated, int /*level*/) {
  variableAt(group, id).isDeflated = isDeflated != 0;
  return statusOfCall();
}

int nc_inq_var_chunking(int group, int id, int* storage, std::size_t* chunks) {
  const ToldVariable& variable = variableAt(group, id);
  *storage = variable.chunks.empty() ? NC_CONTIGUOUS : NC_CHUNKED;
  std::copy(variable.chunks.begin(), variable.chunks.end(), chunks);
  return NC_NOERR;
}

int nc_put_att(int group, int variable, const char* name, nc_type type, std::size_t count,
               const void* values) {
  attributesAt(group, variable)[name] = {type, valuesAt(values, count, type)};
  return statusOfCall();
}

int nc_put_att_text(int group, int variable, const char* name, std::size_t size, const char* text) {
  attributesAt(group, variable)[name] = {NC_CHAR, {std::string(text, size)}};
  return statusOfCall();
}

int nc_put_att_string(int group, int variable, const char* name, std::size_t count,
                      const char** texts) {
  return nc_put_att(group, variable, name, NC_STRING, count, texts);
}

int nc_inq_attid(int group, int variable, const char* name, int* id) {
  const ToldAttributes& attributes = attributesAt(group, variable);
  const auto found = attributes.find(name);
  *id = static_cast<int>(std::distance(attributes.begin(), found));
  return found == attributes.end() ? NC_ENOTATT : NC_NOERR;
}

int nc_inq_attname(int group, int variable, int id, char* name) {
  std::strcpy(name, std::next(attributesAt(group, variable).begin(), id)->first.c_str());
  return NC_NOERR;
}

int nc_enddef(int /*file*/) {
  told.isDefined = true;
  return statusOfCall();
}

int nc_put_vara(int group, int id, const std::size_t* start, const std::size_t* counts,
                const void* values) {
  if (!told.isDefined) {
    reportBreach("values are put before they are defined");
  }
  ToldVariable& variable = variableAt(group, id);
  requireWholeChunks(variable, start, counts);
  put(variable, start, counts, values);
  return statusOfCall();
}

int nc_sync(int /*file*/) { return statusOfCall(); }

int nc_close(int /*file*/) {
  ++told.timesClosed;
  return statusOfCall();
}

int nc_abort(int /*file*/) {
  ++told.timesClosed;
  return NC_NOERR;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  check(Input(bytes, size));
  return 0;
}

}  // extern "C"
