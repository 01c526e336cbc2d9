#pragma once

#include <string>
#include <vector>

namespace quillon::tools::test {

using Cells = std::vector<std::string>;

/// What a browser made of a page: its own document, not the markup.
struct SeenPage {
  std::string title;
  std::string caption;
  std::vector<Cells> head;  ///< the texts of the cells of each head row that takes up space
  std::vector<Cells> body;  ///< the same of the body
  Cells elements;           ///< the names of all elements, each once, sorted
};

/// Opens a page in headless Chromium and looks at it once it has loaded and its scripts, if any,
/// have run. @throws std::runtime_error when the browser fails or takes too long.
SeenPage openPage(const std::string& markup);

/// Keeps a picture of the page as `name` among what the build makes. @return its path.
std::string photograph(const std::string& markup, const std::string& name);

}  // namespace quillon::tools::test
