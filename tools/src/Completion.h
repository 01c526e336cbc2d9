#pragma once

#include <string>
#include <vector>

#include "Verb.h"

namespace quillon::tools {

/// The script by which a shell completes the tool's verbs, options and what options take.
/// @param shell "bash", "zsh" or "fish".
std::string completionFor(const std::string& shell, const std::vector<Verb>& verbs);

}  // namespace quillon::tools
