#pragma once

#include <functional>

namespace quillon::netcdf {

/// How many threads work is worth that is in `pieces` of `bytes` in all: at most as many as the
/// machine runs at a time, at least one.
unsigned threadsFor(unsigned long pieces, unsigned long bytes);

/// Calls `work(worker, piece)` for all pieces from 0 on, each once, in so many threads, of which
/// the caller's is one; `worker` is the number of the thread. Where threads cannot be started,
/// those that there are do it all. None is left when it returns.
///
/// What a call throws ends the work of all and is thrown from here.
void inParallel(unsigned threads, unsigned long pieces,
                const std::function<void(unsigned worker, unsigned long piece)>& work);

}  // namespace quillon::netcdf
