#pragma once

#include <quillon/netcdf/VariableFacts.h>

#include <string>
#include <utility>
#include <vector>

namespace quillon::netcdf {

/// The variable's name, the end of its path.
std::string nameOf(const VariableFacts& variable);

/// "time=12 (unlimited) lat=35 lon=40"; "single value" without dimensions.
std::string dimensionsInWords(const VariableFacts& variable);

/// "shuffle, deflate 4", with other filters behind; empty for values that are not compressed.
std::string inWords(const Compression& compression);

/// The value: texts in double quotes, numbers with the name of their type unless it is int or
/// double. Nothing in it is escaped.
std::string inWords(const memory::AttributeValue& value);

/// What there is to say of how the values are stored, and why they cannot be read: names and texts.
std::vector<std::pair<std::string, std::string>> detailsOf(const VariableFacts& variable);

}  // namespace quillon::netcdf
