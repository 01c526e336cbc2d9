#include "WorkNotes.h"

#include <quillon/memory/Wording.h>
#include <sys/mman.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <system_error>

#include "Failure.h"

namespace quillon::tools {

namespace {

WorkNotes*& currentNotes() {
  static WorkNotes own{};
  static WorkNotes* current = &own;
  return current;
}

unsigned long lengthOf(const std::vector<std::string>& paths) {
  unsigned long bytes = 0;
  for (const std::string& path : paths) {
    std::error_code error;
    const auto length = std::filesystem::file_size(path, error);
    bytes += error ? 0 : length;
  }
  return bytes;
}

}  // namespace

void NotedText::set(std::string_view text) {
  m_length = 0;
  m_length = text.copy(m_characters.data(), m_characters.size());
}

std::string NotedText::get() const { return {m_characters.data(), m_length}; }

WorkNotes& workNotes() { return *currentNotes(); }

WorkNotes& shareWorkNotes() {
  void* const memory =
      ::mmap(nullptr, sizeof(WorkNotes), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw Failure("Not enough memory");
  }
  currentNotes() = new (memory) WorkNotes{};
  return workNotes();
}

void noteReading(const std::vector<std::string>& paths) {
  WorkNotes& notes = workNotes();
  std::string names;
  for (const std::string& path : paths) {
    names += (names.empty() ? "" : " and ") + memory::inQuotes(path);
  }
  notes.filesRead = 0;
  notes.files.set(names);
  notes.bytes = lengthOf(paths);
  notes.filesRead = static_cast<unsigned>(paths.size());
  noteProgress();
}

void noteProgress() { workNotes().progress.fetch_add(1, std::memory_order_relaxed); }

void noteTemporaryFile(const std::string& path) { workNotes().temporaryFile.set(path); }

}  // namespace quillon::tools
