#pragma once

#include <string>

namespace quillon::netcdf {

/// What is wrong with a file in one of the classic formats (CDF-1, CDF-2, CDF-5), judged by its
/// header and its length; empty for a sound file and for any other format.
///
/// libnetcdf trusts such a header: past the end of the file it reads zeros, and it makes room for
/// as many entries as the header claims. So every count and every extent is held here against the
/// `fileBytes` that the file really has, before the library sees it.
std::string findClassicDamage(const std::string& path, unsigned long fileBytes);

}  // namespace quillon::netcdf
