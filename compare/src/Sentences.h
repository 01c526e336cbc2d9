#pragma once

#include <quillon/compare/Report.h>

#include <string>

namespace quillon::compare {

/// What a line says behind the path.
std::string reasonInWords(const Difference& row);

}  // namespace quillon::compare
