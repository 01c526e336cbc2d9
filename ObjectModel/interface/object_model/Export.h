/// @file
/// The visibility macro of the object model.
#pragma once

/// Marks what belongs to the binary interface of libquillon_object_model.so.
///
/// The library is built with hidden visibility, so an operation without this mark cannot be called
/// from outside. The mark is the same when building and when using the library: type information
/// must be visible on both sides, or exceptions and checked casts would not match across the two.
#define OBJECT_MODEL_EXPORT __attribute__((visibility("default")))
