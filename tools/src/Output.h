#pragma once

#include <string>

namespace quillon::tools {

/// To be called once, before anything is opened. Makes sure that the descriptors 0 to 2 are taken,
/// so that no file that is opened later becomes standard output or standard error by accident, and
/// that a limit on the size of files shows as a failed write, not as the signal that ends a
/// process.
void prepareOutput();

/// Writes all of `text` to standard output. @throws Failure when it cannot be written.
void writeToStandardOutput(const std::string& text);

/// Puts `text` into the file at `path`, whole or not at all: a regular file keeps its previous
/// content when this fails. Devices and pipes are written to directly.
/// @throws Failure that names the file and the reason.
void writeToFile(const std::string& text, const std::string& path);

/// @throws Failure when `output` is the file `input` itself.
void requireOtherFile(const std::string& output, const std::string& input);

}  // namespace quillon::tools
