#pragma once

#include <stdexcept>
#include <string>

namespace quillon::tools {

/// What ends the tool with EXIT_TROUBLE: one sentence for the person who called it.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The exit status for everything that went wrong; 1 stays free for "the comparison found a
/// difference".
inline constexpr int EXIT_TROUBLE = 2;

/// Says on standard error what went wrong. @return EXIT_TROUBLE.
int reportTrouble(const std::string& sentence);

/// Says on standard error what else there is to know.
void reportNote(const std::string& sentence);

}  // namespace quillon::tools
