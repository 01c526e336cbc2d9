/// @file
/// The visibility macro of the table library.
#pragma once

/// Marks what belongs to the binary interface of libtabra.so. The mark is the same when building
/// and when using the library, so that type information matches on both sides.
#define TABRA_EXPORT __attribute__((visibility("default")))
