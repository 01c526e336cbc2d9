#pragma once

namespace quillon::tools {

/// Does what the command line asks for; `arguments` begin with the program's name. What goes wrong
/// becomes one sentence on standard error.
/// @return the exit status: 0, 1 when a comparison found a difference, or EXIT_TROUBLE.
int runCommandLine(int count, const char* const* arguments);

}  // namespace quillon::tools
