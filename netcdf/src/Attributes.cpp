#include "Attributes.h"

#include <netcdf.h>

#include <cstddef>

#include "Padding.h"

namespace quillon::netcdf {
namespace {

struct Attribute {
  nc_type type = NC_NAT;
  std::size_t length = 0;
};

Attribute inquire(const Source& source, int group, int variable, const char* name) {
  Attribute attribute;
  const int status = nc_inq_att(group, variable, name, &attribute.type, &attribute.length);
  if (status == NC_ENOTATT) {
    return {};
  }
  source.require(status, std::string("attribute '") + name + "'");
  return attribute;
}

std::string firstString(const Source& source, int group, int variable, const char* name,
                        std::size_t count) {
  std::vector<char*> texts(count, nullptr);
  const int status = nc_get_att_string(group, variable, name, texts.data());
  source.require(status, std::string("attribute '") + name + "'");
  std::string first = texts.front() == nullptr ? "" : texts.front();
  nc_free_string(count, texts.data());
  return first;
}

std::string characters(const Source& source, int group, int variable, const char* name,
                       std::size_t length) {
  std::string text(length, '\0');
  source.require(nc_get_att_text(group, variable, name, text.data()),
                 std::string("attribute '") + name + "'");
  cutPadding(text);
  return text;
}

bool isNumeric(nc_type type) { return type >= NC_BYTE && type <= NC_UINT64 && type != NC_CHAR; }

int getNumbers(int group, int variable, const char* name, float* numbers) {
  return nc_get_att_float(group, variable, name, numbers);
}

int getNumbers(int group, int variable, const char* name, double* numbers) {
  return nc_get_att_double(group, variable, name, numbers);
}

}  // namespace

std::string textAttribute(const Source& source, int group, int variable, const char* name) {
  const Attribute attribute = inquire(source, group, variable, name);
  if (attribute.length == 0) {
    return {};
  }
  if (attribute.type == NC_STRING) {
    return firstString(source, group, variable, name, attribute.length);
  }
  if (attribute.type == NC_CHAR) {
    return characters(source, group, variable, name, attribute.length);
  }
  return {};
}

bool hasAttribute(int group, int variable, const char* name) {
  return nc_inq_attid(group, variable, name, nullptr) == NC_NOERR;
}

template <class Number>
std::vector<Number> numericAttribute(const Source& source, int group, int variable,
                                     const char* name) {
  const Attribute attribute = inquire(source, group, variable, name);
  if (!isNumeric(attribute.type) || attribute.length == 0) {
    return {};
  }
  std::vector<Number> numbers(attribute.length);
  const int status = getNumbers(group, variable, name, numbers.data());
  if (status == NC_ERANGE) {
    return {};
  }
  source.require(status, std::string("attribute '") + name + "'");
  return numbers;
}

template std::vector<float> numericAttribute(const Source&, int, int, const char*);
template std::vector<double> numericAttribute(const Source&, int, int, const char*);

}  // namespace quillon::netcdf
