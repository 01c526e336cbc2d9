/// @file
/// The structures of the C data interface and of the C stream interface of Apache Arrow, as its
/// documentation defines them. Nothing else of Arrow is needed to make or to take one.
///
/// Whoever has filled in a structure sets `release`; whoever is done with it calls `release` once.
/// A structure whose `release` is null has been released, or moved elsewhere by copying its bytes
/// and setting `release` to null in the original. See `Owned` for what does so by itself.
#pragma once

#include <cstdint>

// The macros keep these definitions and those of other libraries apart, as the documentation asks.
// NOLINTBEGIN(cppcoreguidelines-macro-usage,modernize-use-using): spelt as it spells them
/// @cond

#ifndef ARROW_C_DATA_INTERFACE
#define ARROW_C_DATA_INTERFACE

#define ARROW_FLAG_DICTIONARY_ORDERED 1
#define ARROW_FLAG_NULLABLE 2
#define ARROW_FLAG_MAP_KEYS_SORTED 4

extern "C" {

struct ArrowSchema {
  const char* format;
  const char* name;
  const char* metadata;
  int64_t flags;
  int64_t n_children;
  struct ArrowSchema** children;
  struct ArrowSchema* dictionary;
  void (*release)(struct ArrowSchema*);
  void* private_data;
};

struct ArrowArray {
  int64_t length;
  int64_t null_count;
  int64_t offset;
  int64_t n_buffers;
  int64_t n_children;
  const void** buffers;
  struct ArrowArray** children;
  struct ArrowArray* dictionary;
  void (*release)(struct ArrowArray*);
  void* private_data;
};

}  // extern "C"

#endif  // ARROW_C_DATA_INTERFACE

#ifndef ARROW_C_STREAM_INTERFACE
#define ARROW_C_STREAM_INTERFACE

extern "C" {

struct ArrowArrayStream {
  int (*get_schema)(struct ArrowArrayStream*, struct ArrowSchema* out);
  int (*get_next)(struct ArrowArrayStream*, struct ArrowArray* out);
  const char* (*get_last_error)(struct ArrowArrayStream*);
  void (*release)(struct ArrowArrayStream*);
  void* private_data;
};

}  // extern "C"

#endif  // ARROW_C_STREAM_INTERFACE

/// @endcond
// NOLINTEND(cppcoreguidelines-macro-usage,modernize-use-using)
