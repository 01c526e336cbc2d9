#pragma once

#include <string>

namespace quillon::netcdf {

/// What is wrong with the open file where it is in one of the classic formats, CDF-1, CDF-2 and
/// CDF-5, judged by its header and its length; empty for a sound one and for other formats.
///
/// libnetcdf trusts such a header: past the end of the file it reads zeros, and it makes room for
/// as many entries as the header claims. So every count and every extent is held here against the
/// `fileBytes` that the file really has, before the library sees it.
std::string findClassicDamage(int descriptor, unsigned long fileBytes);

}  // namespace quillon::netcdf
