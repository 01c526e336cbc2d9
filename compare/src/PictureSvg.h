#pragma once

#include <quillon/compare/Picture.h>

#include <string>

namespace quillon::compare {

/// The picture as a small SVG drawing that others on the page can use by `id`.
std::string drawingOf(const Picture& picture, const std::string& id);

/// The drawing `id` once more, large.
std::string drawingAgain(const Picture& picture, const std::string& id);

/// What its colours stand for.
std::string legendOf(const Picture& picture);

}  // namespace quillon::compare
