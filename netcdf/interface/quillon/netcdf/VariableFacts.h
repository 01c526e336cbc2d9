/// @file
/// What a netCDF file says about its variables, as data for whoever shows it.
#pragma once

#include <quillon/memory/Facets.h>

#include <optional>
#include <string>
#include <vector>

namespace quillon::netcdf {

/// A dimension of a variable.
struct DimensionFacts {
  std::string name;          ///< as in the file
  unsigned long size = 0;    ///< how many indices it has now
  bool isUnlimited = false;  ///< whether it may grow
};

/// How stored numbers become values: `stored * scaleFactor + addOffset`.
struct Packing {
  std::optional<double> scaleFactor;  ///< none where the file has none
  std::optional<double> addOffset;    ///< none where the file has none
};

/// A filter that chunks of values pass through, other than deflate and shuffle.
struct FilterFacts {
  unsigned int id = 0;                   ///< as registered with HDF5
  std::string name;                      ///< "zstd" for one that is well known, else "filter 32099"
  std::vector<unsigned int> parameters;  ///< as they are stored
};

/// How the chunks of a variable are compressed.
struct Compression {
  bool isShuffled = false;           ///< whether bytes are sorted by significance first
  int deflateLevel = 0;              ///< 1 to 9, 0 where they are not deflated
  std::vector<FilterFacts> filters;  ///< all others, in their order
};

/// What is known of a variable without reading its values.
struct VariableFacts {
  std::string path;                            ///< where it stands, such as "/climate/SST"
  bool isReadable = true;                      ///< whether there is an array of it
  std::string reason;                          ///< why there is none
  std::string type;                            ///< as netCDF calls it: `float`, `short`, `char`, a
                                               ///< type's own name; empty where it is not known
  std::vector<DimensionFacts> dimensions;      ///< in the file's order, the slowest first
  std::vector<memory::Attribute> attributes;   ///< all, in the file's order
  Packing packing;                             ///< as `scale_factor` and `add_offset` give it
  std::optional<memory::AttributeValue> fill;  ///< `_FillValue`
  std::vector<unsigned long> chunks;           ///< the extents of a chunk, in the order of
                                               ///< `dimensions`; empty when stored in one piece
  Compression compression;                     ///< of its chunks
  std::string unit;                            ///< `units`, empty where absent
  std::string description;                     ///< `long_name`, empty where absent
};

/// What is known of a group.
struct GroupFacts {
  std::string path;                           ///< such as "/cells/otsu"; "/" for the root
  std::string title;                          ///< `title`, empty where absent
  std::vector<memory::Attribute> attributes;  ///< all, in the file's order
  std::vector<VariableFacts> variables;       ///< of the group itself, in the file's order
};

}  // namespace quillon::netcdf
