#pragma once

#include <functional>

#include "Worker.h"

namespace quillon::tools {

/// Does `work` in a child process and waits for its end. A crash of the child, processor time
/// without progress and a want of memory become one sentence on standard error; see WorkNotes.h for
/// what the work tells about itself. Signals that ask for an end go to the child, and when it ends
/// by one, so does this process. The file that is noted as temporary is removed in any case.
///
/// To be called once, before anything is opened and while there is one thread.
/// @return the status that `work` returned, or EXIT_TROUBLE; that, too, when there can be no child.
int doBehindWall(const std::function<int()>& work, const WorkLimits& limits);

}  // namespace quillon::tools
