#pragma once

#include <quillon/compare/Report.h>

#include <string>

namespace quillon::compare {

/// The value where it needs no quotes; not escaped.
std::string plainText(const Value& value);

/// What a line says behind the path.
std::string reasonInWords(const Difference& row);

}  // namespace quillon::compare
