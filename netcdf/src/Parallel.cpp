#include "Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace quillon::netcdf {
namespace {

// Below, a thread takes about as long to start as to do its part.
constexpr unsigned long BYTES_WORTH_A_THREAD = 1UL << 18U;

/// Work whose pieces several threads take one after the other.
class SharedWork {
 public:
  SharedWork(unsigned long pieces, const std::function<void(unsigned, unsigned long)>& work)
      : m_pieces(pieces), m_work(work) {}

  void takePart(unsigned worker) {
    try {
      for (unsigned long piece = m_next++; piece < m_pieces; piece = m_next++) {
        m_work(worker, piece);
      }
    } catch (...) {
      m_next = m_pieces;
      const std::lock_guard<std::mutex> guard(m_mutex);
      m_thrown = std::current_exception();
    }
  }

  void rethrow() const {
    if (m_thrown) {
      std::rethrow_exception(m_thrown);
    }
  }

 private:
  unsigned long m_pieces;
  const std::function<void(unsigned, unsigned long)>& m_work;
  std::atomic<unsigned long> m_next{0};
  std::mutex m_mutex;
  std::exception_ptr m_thrown;
};

/// Threads that are waited for.
class Helpers {
 public:
  Helpers() = default;
  Helpers(const Helpers&) = delete;
  Helpers& operator=(const Helpers&) = delete;
  ~Helpers() {
    for (std::thread& thread : m_threads) {
      thread.join();
    }
  }

  void start(unsigned count, SharedWork& work) {
    try {
      m_threads.reserve(count);
      for (unsigned k = 0; k < count; ++k) {
        m_threads.emplace_back([&work, k] { work.takePart(k + 1); });
      }
    } catch (const std::system_error&) {  // fewer then
    } catch (const std::bad_alloc&) {     // never run: only where memory is short
    }
  }

 private:
  std::vector<std::thread> m_threads;
};

}  // namespace

unsigned threadsFor(unsigned long pieces, unsigned long bytes) {
  const unsigned long most = std::min(pieces, bytes / BYTES_WORTH_A_THREAD);
  const unsigned machine = std::max(1U, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::clamp(most, 1UL, static_cast<unsigned long>(machine)));
}

void inParallel(unsigned threads, unsigned long pieces,
                const std::function<void(unsigned, unsigned long)>& work) {
  SharedWork shared(pieces, work);
  {
    Helpers helpers;
    helpers.start(threads - 1, shared);
    shared.takePart(0);
  }
  shared.rethrow();
}

}  // namespace quillon::netcdf
