#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace test {

/// Runs `work(k)` for k = 0 ... threads - 1, each in a thread of its own. All begin at the same
/// moment, as far as that goes.
template <class Work>
void concurrently(int threads, const Work& work) {
  std::atomic<int> missing(threads);
  std::vector<std::thread> runners;
  for (int k = 0; k < threads; ++k) {
    runners.emplace_back([&missing, &work, k] {
      // Relaxed, so that meeting here orders nothing that the sanitizer should find unordered.
      missing.fetch_sub(1, std::memory_order_relaxed);
      while (missing.load(std::memory_order_relaxed) > 0) {
        std::this_thread::yield();
      }
      work(k);
    });
  }
  for (std::thread& runner : runners) {
    runner.join();
  }
}

}  // namespace test
