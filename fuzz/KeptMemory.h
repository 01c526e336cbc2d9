#pragma once

#include <hdf5.h>

namespace quillon::fuzz {

/// Has libhdf5 keep memory that it has done with. Otherwise it gives back half a megabyte for each
/// file that it closes and takes it anew for the next, which is most of what a small file costs.
inline bool keepMemoryOfFiles() { return H5set_free_list_limits(-1, -1, -1, -1, -1, -1) >= 0; }

}  // namespace quillon::fuzz
