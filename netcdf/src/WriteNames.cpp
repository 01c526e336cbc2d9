#include "WriteNames.h"

#include <quillon/memory/Utf8.h>
#include <quillon/memory/Wording.h>

#include <algorithm>
#include <string_view>

#include "LongNames.h"
#include "WriteRefusal.h"

namespace quillon::netcdf {
namespace {

// What libnetcdf puts before the name of a variable that is called as a dimension without being its
// coordinates, and takes off each name.
constexpr std::string_view HIDDEN_PREFIX = "_nc4_non_coord_";

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool isControl(char c) { return (isAscii(c) && c < ' ') || c == '\x7F'; }

// Not std::isalnum, which follows the caller's locale.
bool mayBegin(char c) {
  return !isAscii(c) || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
         (c >= 'A' && c <= 'Z');
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = memory::firstCharacter(text).length;
    if (length == 0) {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

/// What is wrong with a name; empty for a good one.
std::string faultOf(const std::string& name) {
  if (name.empty()) {
    return "it is empty";
  }
  if (name.find('/') != std::string::npos) {
    return "it has a slash";
  }
  if (std::any_of(name.begin(), name.end(), isControl)) {
    return "it has a control character";
  }
  if (!isUtf8(name)) {
    return "it is not UTF-8";
  }
  if (!mayBegin(name.front())) {
    return "it begins with '" + name.substr(0, 1) + "'";
  }
  if (name.back() == ' ') {
    return "it ends with a blank";
  }
  if (name.rfind(HIDDEN_PREFIX, 0) == 0) {
    return "it begins with '" + std::string(HIDDEN_PREFIX) + "'";
  }
  if (name.size() > LONGEST_NAME) {
    return "it has more than " + std::to_string(LONGEST_NAME) + " bytes";
  }
  return {};
}

}  // namespace

void requireName(const std::string& name, const std::string& subject) {
  const std::string fault = faultOf(name);
  if (!fault.empty()) {
    throw Refusal(subject + " has a name that netCDF files do not take: " + fault);
  }
}

void requireKeptName(const std::string& name, const std::string& kept, const std::string& subject) {
  if (name != kept) {
    throw Refusal(subject + " has a name that netCDF files do not take: its accents stand beside " +
                  "their letters, as in " + memory::inQuotes(kept) + " they do not");
  }
}

}  // namespace quillon::netcdf
