#include "PictureSvg.h"

#include <quillon/memory/NumberText.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace quillon::compare {
namespace {

/// How many colours deltas have; the one with the number 0 is that of no difference.
constexpr int LEVELS = 8;
/// The colour of differences that have no delta.
constexpr int NO_DELTA = LEVELS + 1;

constexpr unsigned long LONG_SIDE = 384;  // pixels
constexpr unsigned long SHORTEST_SIDE = 24;

double largestFinite(const Picture& picture) {
  double largest = 0;
  for (const double delta : picture.cells) {
    largest = std::isfinite(delta) ? std::max(largest, delta) : largest;
  }
  return largest;
}

int levelOf(double delta, double largest) {
  if (std::isnan(delta)) {
    return NO_DELTA;
  }
  if (delta == 0.0) {
    return 0;
  }
  return std::isfinite(delta)
             ? std::clamp(static_cast<int>(std::ceil(delta / largest * LEVELS)), 1, LEVELS)
             : LEVELS;
}

std::string classOf(int level) {
  return "d" + (level == NO_DELTA ? std::string("n") : std::to_string(level));
}

/// For each level the runs of cells of it, as the strokes of a path.
std::array<std::string, NO_DELTA + 1> strokesOf(const Picture& picture) {
  std::array<std::string, NO_DELTA + 1> strokes;
  const double largest = largestFinite(picture);
  const unsigned long width = picture.across.cells;
  for (unsigned long y = 0; y < picture.down.cells; ++y) {
    const double* const row = &picture.cells[y * width];
    for (unsigned long x = 0, end = 0; x < width; x = end) {
      const int level = levelOf(row[x], largest);
      for (end = x + 1; end < width && levelOf(row[end], largest) == level; ++end) {
      }
      strokes.at(static_cast<std::size_t>(level)) +=
          "M" + std::to_string(x) + " " + std::to_string(y) + ".5h" + std::to_string(end - x);
    }
  }
  return strokes;
}

std::string viewBoxOf(const Picture& picture) {
  return R"(viewBox="0 0 )" + std::to_string(picture.across.cells) + " " +
         std::to_string(picture.down.cells) + R"(" preserveAspectRatio="none")";
}

std::string pixels(unsigned long cells, unsigned long most) {
  return std::to_string(std::max(SHORTEST_SIDE, LONG_SIDE * cells / most));
}

std::string swatch(int level) {
  return R"(<svg width="12" height="12" viewBox="0 0 1 1"><path class=")" + classOf(level) +
         R"(" d="M0 .5h1"/></svg>)";
}

}  // namespace

std::string drawingOf(const Picture& picture, const std::string& id) {
  std::string text = "<svg " + viewBoxOf(picture) + R"(><g id=")" + id +
                     R"("><rect class="d0" width="100%" height="100%"/>)";
  const auto strokes = strokesOf(picture);
  for (int level = 1; level <= NO_DELTA; ++level) {
    const std::string& path = strokes.at(static_cast<std::size_t>(level));
    if (!path.empty()) {
      text += R"(<path class=")" + classOf(level) + R"(" d=")" + path + R"("/>)";
    }
  }
  return text + "</g></svg>";
}

std::string drawingAgain(const Picture& picture, const std::string& id) {
  const unsigned long most = std::max(picture.across.cells, picture.down.cells);
  return R"(<svg width=")" + pixels(picture.across.cells, most) + R"(" height=")" +
         pixels(picture.down.cells, most) + R"(" )" + viewBoxOf(picture) +
         R"( role="img" aria-label="where values differ"><use href="#)" + id + R"("/></svg>)";
}

std::string legendOf(const Picture& picture) {
  std::string text;
  if (const double largest = largestFinite(picture); largest > 0) {
    for (int level = 1; level <= LEVELS; ++level) {
      text += swatch(level);
    }
    text += " up to " + memory::textInDigits(largest, memory::SHOWN_DIGITS);
  }
  if (std::any_of(picture.cells.begin(), picture.cells.end(),
                  [](double delta) { return std::isnan(delta); })) {
    text += (text.empty() ? "" : ", ") + swatch(NO_DELTA) + " without a delta";
  }
  return text;
}

}  // namespace quillon::compare
