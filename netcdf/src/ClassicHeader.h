#pragma once

#include <string>

namespace quillon::netcdf {

/// Whether a file begins like one in the classic formats: CDF-1, CDF-2 and CDF-5.
bool isClassicFile(const std::string& path);

/// What is wrong with a classic file, judged by its header and its length; empty for a sound one.
///
/// libnetcdf trusts such a header: past the end of the file it reads zeros, and it makes room for
/// as many entries as the header claims. So every count and every extent is held here against the
/// `fileBytes` that the file really has, before the library sees it.
std::string findClassicDamage(const std::string& path, unsigned long fileBytes);

}  // namespace quillon::netcdf
