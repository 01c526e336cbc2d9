#pragma once

namespace quillon::tools {

/// How many places a line has where the descriptor leads; 0 where that is no terminal, as a pipe
/// has no width.
unsigned long widthOf(int descriptor);

/// Whether text may have colours there: at a terminal that shows them, unless the environment has
/// NO_COLOR.
bool takesColors(int descriptor);

}  // namespace quillon::tools
