#include "StoredForm.h"

#include <netcdf.h>

#include <array>
#include <cstring>

namespace quillon::netcdf {
namespace {

using Name = std::array<char, NC_MAX_NAME + 1>;

template <class Integer>
long integerAt(const char* bytes) {
  Integer value{};
  std::memcpy(&value, bytes, sizeof(value));
  return static_cast<long>(value);
}

long integerOf(int type, const char* bytes) {
  switch (type) {
    case NC_BYTE:
      return integerAt<signed char>(bytes);
    case NC_UBYTE:
      return integerAt<unsigned char>(bytes);
    case NC_SHORT:
      return integerAt<short>(bytes);
    case NC_USHORT:
      return integerAt<unsigned short>(bytes);
    case NC_INT:
      return integerAt<int>(bytes);
    case NC_UINT:
      return integerAt<unsigned int>(bytes);
    default:
      return integerAt<long>(bytes);
  }
}

void readMembers(const Source& source, int group, int id, std::size_t count, StoredForm& form) {
  for (int k = 0; static_cast<std::size_t>(k) < count; ++k) {
    Name name{};
    std::array<char, sizeof(long)> value{};
    source.require(nc_inq_enum_member(group, id, k, name.data(), value.data()),
                   "type '" + form.name + "'");
    form.members.emplace_back(name.data(), integerOf(form.base, value.data()));
  }
}

std::string kindOf(int kind) {
  switch (kind) {
    case NC_COMPOUND:
      return "compound";
    case NC_VLEN:
      return "variable-length";
    case NC_OPAQUE:
      return "opaque";
    default:  // never true, never run: of other kinds libnetcdf makes no variables
      return "unknown";
  }
}

}  // namespace

bool isNumber(int type) { return type >= NC_BYTE && type <= NC_UINT64 && type != NC_CHAR; }

StoredForm formOf(const Source& source, int group, int id, const std::string& subject) {
  Name name{};
  StoredForm form;
  if (id <= NC_MAX_ATOMIC_TYPE) {
    source.require(nc_inq_type(group, id, name.data(), &form.bytes), subject);
    form.base = id;
    form.name = name.data();
    return form;
  }
  int kind = 0;
  std::size_t members = 0;
  source.require(nc_inq_user_type(group, id, name.data(), &form.bytes, &form.base, &members, &kind),
                 subject);
  form.name = name.data();
  if (kind == NC_ENUM) {
    readMembers(source, group, id, members, form);
  } else {
    form.base = NC_NAT;
    form.unreadable = kindOf(kind) + " type '" + form.name + "'";
  }
  return form;
}

}  // namespace quillon::netcdf
